#pragma once
// Walking the definition's properties: every PROPERTY child of every CATEGORY
// child of the root's PROPERTIES element, in document order, names compared
// ignoring case. Other elements (a PROPERTY directly under PROPERTIES, for
// one) are skipped.
//
// The walks go by index and never touch the elements' child cursors, so they
// may nest inside each other and inside any other walk.
#include <string>
#include <string_view>

#include "xml/ascii.h"
#include "xml/xml_element.h"

// The first child of parent whose name equals name ignoring case, or null.
const CXmlElement* FirstChildNamed(const CXmlElement& parent, std::string_view name);

// The attributes of a PROPERTY as substitution reads them.
struct PropertyRule {
    std::string variable;  // entity-decoded variable attribute
    int type = 0;          // type attribute as a leading decimal number
};
PropertyRule ReadPropertyRule(const CXmlElement& property);

// Calls f(category, property) for every property in document order.
template <class F>
void ForEachCategoryProperty(const CXmlElement& root, F&& f) {
    const CXmlElement* properties = FirstChildNamed(root, "PROPERTIES");
    if (!properties) return;
    for (std::size_t c = 0; c < properties->GetChildCount(); ++c) {
        const CXmlElement& category = *properties->GetChild(c);
        if (!ascii::EqualsNoCase(category.GetName(), "CATEGORY")) continue;
        for (std::size_t p = 0; p < category.GetChildCount(); ++p) {
            const CXmlElement& property = *category.GetChild(p);
            if (ascii::EqualsNoCase(property.GetName(), "PROPERTY")) f(category, property);
        }
    }
}

// Calls f(property) for every property in document order.
template <class F>
void ForEachProperty(const CXmlElement& root, F&& f) {
    ForEachCategoryProperty(root, [&f](const CXmlElement&, const CXmlElement& property) { f(property); });
}
