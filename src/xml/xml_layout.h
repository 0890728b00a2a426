#pragma once
// How CXmlDocument::GetXml lays a document out, for every writer that must
// give the same text without a tree (the image lists' writers). After the
// declaration, each element's start tag stands on a line of its own after
// one tab per level below the root, followed by its value, or by a line
// break when it has none; its end tag follows the value, or stands on a line
// of its own, indented as the start tag, after the children.
//
// Out is anything with Text(std::string_view) and Tabs(std::size_t).
#include <cstddef>
#include <string>
#include <string_view>

namespace xml_layout {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

// attributes is the attribute text, written after a blank when not empty.
template <class Out>
void Open(Out& out, std::size_t depth, std::string_view name, std::string_view attributes, std::string_view value) {
    out.Tabs(depth);
    out.Text("<");
    out.Text(name);
    if (!attributes.empty()) {
        out.Text(" ");
        out.Text(attributes);
    }
    out.Text(">");
    out.Text(value.empty() ? std::string_view("\r\n") : value);
}

template <class Out>
void Close(Out& out, std::size_t depth, std::string_view name, bool hasValue) {
    if (!hasValue) out.Tabs(depth);
    out.Text("</");
    out.Text(name);
    out.Text(">\r\n");
}

// Out for writing into a string.
struct StringOut {
    std::string& text;
    void Text(std::string_view piece) { text.append(piece.data(), piece.size()); }
    void Tabs(std::size_t count) { text.append(count, '\t'); }
};

}  // namespace xml_layout
