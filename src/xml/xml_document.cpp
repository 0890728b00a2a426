#include "xml/xml_document.h"

#include <cstdint>
#include <utility>
#include <vector>

#include "xml/ascii.h"
#include "xml/xml_layout.h"
#include "xml/xml_scanner.h"

CXmlDocument::CXmlDocument() : current_(&root_) {}

void CXmlDocument::Clear() {
    root_.DeleteChildren();
    current_ = &root_;
    root_.SetParent(nullptr);
    root_.ClearTextsKeepAttributes();
}

int CXmlDocument::ClassifyTag(std::string_view tag, std::string& inner) {
    if (xml_scan::IsPlainTag(tag)) {
        std::string_view body;
        int kind = xml_scan::ClassifyPlainTag(tag, body);
        inner.assign(body.data(), body.size());
        return kind;
    }

    // Anything else, character by character: brackets are dropped wherever
    // they are, a '/' after a '<' makes an end tag, one before a '>' an
    // empty-element tag.
    inner.clear();
    if (tag.empty()) return -1;
    inner.reserve(tag.size());
    char p = '0';
    int r = 0;
    for (char c : tag) {
        if (p == '<') {
            if (c == '!' || c == '?') return -1;
            if (c == '/') r = 1;
        } else if (p == '/' && c == '>') {
            r = 2;
            if (!inner.empty()) inner.pop_back();
        }
        bool skip = c == '<' || c == '>' || (p == '<' && c == '/') || (p == '/' && c == '>');
        if (!skip) inner.push_back(c);
        p = c;
    }
    return r;
}

// Builds the tree of the elements the scanner reports; each element's value
// is the last text before a tag while it is the current one.
struct CXmlDocument::TreeSink {
    CXmlDocument& document;
    void OnValue(std::string_view text, bool inSource) { document.current_->SetParsedRawValue(text, inSource); }
    bool OnRoot(std::string_view name, std::string_view attributes, bool plain) {
        // Merged into the root's map, which a new parse keeps.
        document.root_.SetName(name);
        document.root_.SetParsedAttributeText(attributes, plain);
        return true;
    }
    bool OnOpen(std::string_view name, std::string_view attributes, bool plain) {
        auto element = std::make_unique<CXmlElement>();
        element->SetParent(document.current_);
        element->SetName(name);
        element->SetParsedAttributeText(attributes, plain);
        document.current_ = document.current_->AppendChild(std::move(element));
        return true;
    }
    void OnClose() { document.current_ = document.current_->GetParent(); }
};

int CXmlDocument::Parse(std::string_view text) {
    Clear();
    source_.assign(text.data(), text.size());
    TreeSink sink{*this};
    truncated_ = !xml_scan::ScanElements(source_, sink);
    return 1;
}

bool CXmlDocument::NestsTooDeep(std::string_view text) {
    struct Nothing {
        void OnValue(std::string_view, bool) {}
        bool OnRoot(std::string_view, std::string_view, bool) { return true; }
        bool OnOpen(std::string_view, std::string_view, bool) { return true; }
        void OnClose() {}
    } nothing;
    return !xml_scan::ScanElements(text, nothing);
}

std::string CXmlDocument::GetXml() {
    std::string out(xml_layout::kDeclaration);
    writerDepth_ = -1;
    WriteElement(&root_, out);
    return out;
}

int CXmlDocument::WriteElement(CXmlElement* element, std::string& out) {
    // Depth-first with an explicit stack, so any depth is safe. Each frame is
    // an element whose start tag and value are written and the index of the
    // next child to write.
    struct Frame {
        CXmlElement* element;
        std::size_t next;
    };
    xml_layout::StringOut text{out};
    auto open = [&](CXmlElement* e) {
        ++writerDepth_;
        e->RebuildAttributeText();
        xml_layout::Open(text, static_cast<std::size_t>(writerDepth_), e->GetName(), e->GetAttributeText(),
                         e->GetRawValueView());
    };
    auto close = [&](CXmlElement* e) {
        xml_layout::Close(text, static_cast<std::size_t>(writerDepth_), e->GetName(), !e->GetRawValueView().empty());
        --writerDepth_;
    };

    std::vector<Frame> stack;
    open(element);
    stack.push_back({element, 0});
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.next < top.element->GetChildCount()) {
            CXmlElement* child = top.element->GetChild(top.next++);
            open(child);
            stack.push_back({child, 0});
        } else {
            close(top.element);
            stack.pop_back();
        }
    }
    return 1;
}

std::string CXmlDocument::GetChildValue(CXmlElement* parent, std::string_view name) {
    CXmlElement* child = parent->FindChild(name);
    return child ? child->GetValue() : std::string();
}

CXmlElement* CXmlDocument::AddChild(CXmlElement* parent, std::string_view name, std::optional<std::string_view> value,
                                    std::optional<std::string_view> attributes) {
    auto element = std::make_unique<CXmlElement>();
    element->SetName(ascii::Trim(name));
    if (value) element->SetRawValue(Escape(*value, false));
    if (attributes) {
        element->SetAttributeText(*attributes);
        element->ParseAttributes(*attributes);
    }
    return parent->AppendChild(std::move(element));
}

void CXmlDocument::SetChildValue(CXmlElement* parent, std::string_view name, std::string_view value,
                                 std::optional<std::string_view> attributes) {
    CXmlElement* child = parent->FindChild(name);
    if (!child) {
        AddChild(parent, name, value, attributes);
        return;
    }
    child->SetRawValue(Escape(value, false));
    if (attributes) {
        child->SetAttributeText(*attributes);
        child->ParseAttributes(*attributes);
    }
}

std::string CXmlDocument::Escape(std::string_view text, bool escapeQuotes) {
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    for (char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"':
                if (escapeQuotes)
                    out += "&quot;";
                else
                    out += c;
                break;
            case '\'':
                if (escapeQuotes)
                    out += "&apos;";
                else
                    out += c;
                break;
            default: out += c;
        }
    }
    return out;
}

namespace {

bool StartsWithNoCase(std::string_view text, std::size_t at, std::string_view word) {
    return text.size() - at >= word.size() && ascii::EqualsNoCase(text.substr(at, word.size()), word);
}

// Reads a number as sscanf's "%lu" does: leading white space, an optional
// sign, decimal digits; arithmetic wraps as in 32-bit unsigned long.
bool ScanUnsignedLong(std::string_view text, std::size_t at, std::uint32_t& number) {
    std::size_t i = at;
    while (i < text.size() && ascii::IsSpace(static_cast<unsigned char>(text[i]))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    std::uint32_t value = 0;
    bool digits = false;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
        value = value * 10u + std::uint32_t(text[i] - '0');
        digits = true;
        ++i;
    }
    if (!digits) return false;
    number = negative ? 0u - value : value;
    return true;
}

}  // namespace

std::string CXmlDocument::Unescape(std::string_view text) {
    static const struct {
        std::string_view word;
        char replacement;
    } kEntities[] = {{"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}, {"nbsp;", ' '}};

    std::string out;
    out.reserve(text.size());
    const std::size_t n = text.size();
    std::size_t i = 0;
    while (i < n) {
        std::size_t amp = text.find('&', i);
        if (amp == std::string_view::npos) {
            out.append(text.data() + i, n - i);
            break;
        }
        out.append(text.data() + i, amp - i);
        i = amp + 1;
        if (i >= n) break;  // a final '&' is dropped

        bool matched = false;
        for (const auto& entity : kEntities) {
            if (StartsWithNoCase(text, i, entity.word)) {
                out += entity.replacement;
                i += entity.word.size();
                matched = true;
                break;
            }
        }
        if (matched) continue;

        if (text[i] == '#') {
            std::uint32_t number;
            if (ScanUnsignedLong(text, i + 1, number)) out += static_cast<char>(number & 0xFF);
            std::size_t semicolon = text.find(';', i + 1);
            if (semicolon == std::string_view::npos) break;
            i = semicolon + 1;
            continue;
        }
        // Unknown reference: keep the '&', swallow the character after it.
        out += '&';
        ++i;
    }
    return out;
}
