#include "html/image_list.h"

#include "xml/ascii.h"
#include "xml/xml_document.h"
#include "xml/xml_layout.h"

namespace {

bool IsNameChar(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == ':' || c >= 0x80;
}

// Cuts the name at the first blank, tab, line break or NUL, after the white
// space in front (the root's name comes with the line break after the
// declaration). Returns whether what is left is an XML name.
bool CutName(CXmlElement& element) {
    std::string_view name = element.GetName();
    std::size_t start = 0;
    while (start < name.size() && ascii::IsSpace(static_cast<unsigned char>(name[start]))) ++start;
    std::size_t end = start;
    while (end < name.size() && name[end] != '\0' && !ascii::IsSpace(static_cast<unsigned char>(name[end]))) ++end;
    name = name.substr(start, end - start);
    const bool valid = IsXmlName(name);
    if (valid && name.size() != element.GetName().size()) element.SetName(std::string(name));
    return valid;
}

}  // namespace

bool IsXmlName(std::string_view name) {
    bool valid = !name.empty() && std::string_view("-.0123456789").find(name[0]) == std::string_view::npos;
    for (char c : name) valid = valid && IsNameChar(static_cast<unsigned char>(c));
    return valid;
}

bool ParseImageList(CXmlDocument& list, std::string_view text) {
    list.Parse(text);
    CXmlElement* root = list.GetRoot();
    CutName(*root);
    // Depth first with an explicit stack; elements whose names no XML parser
    // reads (and this one cannot write back) are dropped with their content.
    std::vector<CXmlElement*> stack{root};
    while (!stack.empty()) {
        CXmlElement* element = stack.back();
        stack.pop_back();
        element->RemoveChildrenIf([](CXmlElement& child) { return !CutName(child); });
        for (std::size_t i = 0; i < element->GetChildCount(); ++i) stack.push_back(element->GetChild(i));
    }
    for (std::size_t i = 0; i < root->GetChildCount(); ++i) {
        CXmlElement* image = root->GetChild(i);
        for (std::size_t j = 0; j < image->GetChildCount(); ++j) {
            CXmlElement* field = image->GetChild(j);
            if (ascii::EqualsNoCase(field->GetName(), "FILENAME")) field->DeleteChildren();
        }
    }
    return !list.IsTruncated();
}

std::vector<ImageListEntry> ReadImageList(std::string_view text) {
    CXmlDocument list;
    ParseImageList(list, text);
    std::vector<ImageListEntry> images;
    CXmlElement* root = list.GetRoot();
    for (std::size_t i = 0; i < root->GetChildCount(); ++i) {
        CXmlElement* image = root->GetChild(i);
        if (!ascii::EqualsNoCase(image->GetName(), "IMAGE")) continue;
        ImageListEntry e;
        e.fileName = list.GetChildValue(image, "FILENAME");
        e.title = list.GetChildValue(image, "TITLE");
        e.description = list.GetChildValue(image, "DESCRIPTION");
        e.link = list.GetChildValue(image, "URL");
        e.target = list.GetChildValue(image, "TARGET");
        images.push_back(std::move(e));
    }
    return images;
}

std::string WriteImageList(const std::vector<ImageListEntry>& images) {
    // GetXml's text for the tree of these elements, written without the
    // tree: a list of 10,000 pictures takes 7 MB as a tree.
    std::string out(xml_layout::kDeclaration);
    xml_layout::StringOut text{out};
    auto addIfSet = [&text](std::string_view name, const std::string& value) {
        if (value.empty()) return;
        xml_layout::Open(text, 2, name, {}, CXmlDocument::Escape(value, false));
        xml_layout::Close(text, 2, name, true);
    };
    xml_layout::Open(text, 0, "GALLERY", {}, {});
    for (const ImageListEntry& entry : images) {
        xml_layout::Open(text, 1, "IMAGE", {}, {});
        addIfSet("FILENAME", entry.fileName);
        addIfSet("URL", entry.link);
        addIfSet("TARGET", entry.target);
        addIfSet("TITLE", entry.title);
        addIfSet("DESCRIPTION", entry.description);
        xml_layout::Close(text, 1, "IMAGE", false);
    }
    xml_layout::Close(text, 0, "GALLERY", false);
    return out;
}
