#include "xml/xml_element.h"

#include "xml/ascii.h"
#include "xml/xml_document.h"

CXmlElement::~CXmlElement() {
    // Tear the subtree down with an explicit stack: a deep tree must not
    // recurse once per level.
    std::vector<std::unique_ptr<CXmlElement>> pending = std::move(children_);
    while (!pending.empty()) {
        std::unique_ptr<CXmlElement> e = std::move(pending.back());
        pending.pop_back();
        for (auto& child : e->children_) pending.push_back(std::move(child));
        e->children_.clear();
    }
}

std::string CXmlElement::GetValue() const { return CXmlDocument::Unescape(value_.View()); }

CXmlElement* CXmlElement::AppendChild(std::unique_ptr<CXmlElement> child) {
    // Room for a few at once: elements with children mostly have several.
    if (children_.capacity() == 0) children_.reserve(4);
    children_.push_back(std::move(child));
    return children_.back().get();
}

void CXmlElement::DeleteChildren() {
    std::vector<std::unique_ptr<CXmlElement>> doomed = std::move(children_);
    children_.clear();
    cursor_ = kNoCursor;
    // doomed's elements are destroyed here; each tears down its own subtree
    // iteratively, and these are siblings, so nothing recurses.
}

CXmlElement* CXmlElement::GetFirstChild() {
    if (children_.empty()) {
        cursor_ = kNoCursor;
        return nullptr;
    }
    cursor_ = children_.size() > 1 ? 1 : kNoCursor;
    return children_[0].get();
}

CXmlElement* CXmlElement::GetNextChild() {
    if (cursor_ == kNoCursor || cursor_ >= children_.size()) {
        cursor_ = kNoCursor;
        return nullptr;
    }
    CXmlElement* child = children_[cursor_].get();
    cursor_ = cursor_ + 1 < children_.size() ? cursor_ + 1 : kNoCursor;
    return child;
}

CXmlElement* CXmlElement::FindChild(std::string_view name) {
    searchName_.assign(name.data(), name.size());
    cursor_ = kNoCursor;
    for (std::size_t i = 0; i < children_.size(); ++i) {
        if (ascii::EqualsNoCase(children_[i]->name_, name)) {
            cursor_ = i + 1 < children_.size() ? i + 1 : kNoCursor;
            return children_[i].get();
        }
    }
    return nullptr;
}

const CHashedStringMap& CXmlElement::GetAttributes() const {
    ParsePendingAttributes();
    static const CHashedStringMap empty;
    return attributes_ ? *attributes_ : empty;
}

CHashedStringMap& CXmlElement::GetAttributes() {
    ParsePendingAttributes();
    if (!attributes_) attributes_ = std::make_unique<CHashedStringMap>();
    return *attributes_;
}

std::string CXmlElement::GetAttribute(std::string_view name) const { return std::string(GetAttributeView(name)); }

std::string_view CXmlElement::GetAttributeView(std::string_view name) const {
    ParsePendingAttributes();
    const std::string* value = attributes_ ? attributes_->Find(name) : nullptr;
    return value ? std::string_view(*value) : std::string_view();
}

namespace {

// Adds the name="value" pairs found in text to map, which is made when the
// first pair is found.
void AddAttributes(std::string_view text, std::unique_ptr<CHashedStringMap>& map) {
    auto set = [&map](std::string_view key, std::string_view value) {
        if (!map) map = std::make_unique<CHashedStringMap>();
        map->Set(key, value);
    };
    const std::size_t n = text.size();
    std::size_t pos = 0;
    while (pos < n) {
        // key: everything up to the next '=', trimmed
        std::size_t eq = text.find('=', pos);
        if (eq == std::string_view::npos) break;  // a fragment without '=' is dropped
        std::string_view key = ascii::Trim(text.substr(pos, eq - pos));

        // value: from the next double quote after '=' to the one after it
        std::size_t open = text.find('"', eq + 1);
        if (open == std::string_view::npos) {
            set(key, std::string_view());
            break;
        }
        std::size_t close = text.find('"', open + 1);
        std::size_t end = close == std::string_view::npos ? n : close + 1;
        std::string_view span = text.substr(open, end - open);
        std::size_t b = 0, e = span.size();
        while (b < e && span[b] == '"') ++b;
        while (e > b && span[e - 1] == '"') --e;
        set(key, span.substr(b, e - b));
        if (close == std::string_view::npos) break;
        pos = close + 1;
    }
}

}  // namespace

void CXmlElement::ParseAttributes(std::string_view text) {
    ParsePendingAttributes();
    AddAttributes(text, attributes_);
}

void CXmlElement::SetParsedRawValue(std::string_view value, bool inSource) {
    if (inSource)
        value_.Refer(value);
    else
        value_.Set(value);
}

void CXmlElement::SetParsedAttributeText(std::string_view text, bool inSource) {
    ParsePendingAttributes();
    if (inSource)
        attributeText_.Refer(text);
    else
        attributeText_.Set(text);
    attributesPending_ = !text.empty();
}

void CXmlElement::ParsePendingAttributes() const {
    if (!attributesPending_) return;
    attributesPending_ = false;
    AddAttributes(attributeText_.View(), attributes_);
}

void CXmlElement::RebuildAttributeText() {
    ParsePendingAttributes();
    std::string& text = attributeText_.Rewrite();
    if (!attributes_) return;
    attributes_->ForEach([&text](const std::string& key, const std::string& value) {
        text += key;
        text += "=\"";
        text += value;
        text += "\" ";
    });
}

void CXmlElement::ClearTextsKeepAttributes() {
    ParsePendingAttributes();
    name_.clear();
    value_.clear();
    attributeText_.clear();
    searchName_.clear();
    cursor_ = kNoCursor;
}
