#pragma once
// One node of the small XML tree: a name, an attribute map with the raw
// attribute text it came from, an ordered list of owned children and one text
// value kept in escaped form (entity references as in the file).
//
// Child names are matched ignoring case, attribute names exactly. The element
// keeps one child cursor that FindChild, GetFirstChild and GetNextChild share:
// it belongs to the element, not to whoever walks it.
//
// Destroying an element destroys its whole subtree without recursion, so trees
// of any depth are safe.
#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/hashed_string_map.h"
#include "xml/source_text.h"

class CXmlElement {
public:
    CXmlElement() = default;
    ~CXmlElement();
    CXmlElement(const CXmlElement&) = delete;
    CXmlElement& operator=(const CXmlElement&) = delete;

    // --- name, parent, value -------------------------------------------------
    const std::string& GetName() const { return name_; }
    void SetName(std::string_view name) { name_.assign(name.data(), name.size()); }

    CXmlElement* GetParent() const { return parent_; }
    void SetParent(CXmlElement* parent) { parent_ = parent; }

    // The value as stored (escaped).
    const std::string& GetRawValue() const { return value_.Get(); }
    // The same without making it a string of its own (see source_text.h).
    std::string_view GetRawValueView() const { return value_.View(); }
    void SetRawValue(std::string_view value) { value_.Set(value); }
    // The value with entity references decoded.
    std::string GetValue() const;

    // --- children --------------------------------------------------------------
    std::size_t GetChildCount() const { return children_.size(); }
    CXmlElement* GetChild(std::size_t index) const { return children_[index].get(); }
    // Appends an owned child and returns it. The child's parent is not changed.
    CXmlElement* AppendChild(std::unique_ptr<CXmlElement> child);
    // Destroys every child and resets the cursor.
    void DeleteChildren();
    // Destroys every child for which drop(child) is true, keeping the order of
    // the others, in one pass; resets the cursor.
    template <class Predicate>
    void RemoveChildrenIf(Predicate drop) {
        children_.erase(std::remove_if(children_.begin(), children_.end(),
                                       [&drop](const std::unique_ptr<CXmlElement>& child) { return drop(*child); }),
                        children_.end());
        cursor_ = kNoCursor;
    }

    // The first child (or null); the cursor moves behind it.
    CXmlElement* GetFirstChild();
    // The child at the cursor (or null), advancing the cursor.
    CXmlElement* GetNextChild();
    // The first child whose name equals name ignoring case, or null. Records
    // name as the search name; the cursor moves behind the found child, or
    // ends when none is found.
    CXmlElement* FindChild(std::string_view name);
    const std::string& GetSearchName() const { return searchName_; }
    void ResetCursor() { cursor_ = kNoCursor; }

    // --- attributes ------------------------------------------------------------
    // The raw value of an attribute, or the empty text when absent.
    std::string GetAttribute(std::string_view name) const;
    // The same without a copy, valid until the attributes change.
    std::string_view GetAttributeView(std::string_view name) const;
    const CHashedStringMap& GetAttributes() const;
    CHashedStringMap& GetAttributes();

    const std::string& GetAttributeText() const { return attributeText_.Get(); }
    void SetAttributeText(std::string_view text) {
        ParsePendingAttributes();
        attributeText_.Set(text);
    }

    // Adds the name="value" pairs found in text to the map (see the parser).
    void ParseAttributes(std::string_view text);
    // The parser's way in: the value, and SetAttributeText and
    // ParseAttributes of the same text, with the parsing put off until the
    // map is first used (most elements of a large tree are never asked for
    // an attribute). Texts that lie in the document's source are referred
    // to until first read (see source_text.h). So a const element may fill
    // its map or its texts when read: elements are not to be read from two
    // threads at once.
    void SetParsedRawValue(std::string_view value, bool inSource);
    void SetParsedAttributeText(std::string_view text, bool inSource);
    // Regenerates the attribute text from the map, in the map's order.
    void RebuildAttributeText();

    // Empties name, value, attribute text and search name and ends the
    // cursor; the attribute map is deliberately left alone.
    void ClearTextsKeepAttributes();

private:
    static constexpr std::size_t kNoCursor = static_cast<std::size_t>(-1);

    std::string name_;
    CSourceText attributeText_;
    std::vector<std::unique_ptr<CXmlElement>> children_;
    // Made on first use: most elements of a large tree carry no attributes.
    mutable std::unique_ptr<CHashedStringMap> attributes_;
    // The attribute text is still to be parsed into the map; done before
    // the map is read or either of them changes.
    mutable bool attributesPending_ = false;
    void ParsePendingAttributes() const;
    CXmlElement* parent_ = nullptr;
    std::size_t cursor_ = kNoCursor;
    std::string searchName_;
    CSourceText value_;
};
