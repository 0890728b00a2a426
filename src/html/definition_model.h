#pragma once
// The vocabulary of an extension definition in one place: its element names,
// the property type codes and render methods, how a PROPERTY's rule is read,
// and the walk over CATEGORY and PROPERTY elements.
//
// Element names are compared ignoring case, attribute names exactly. The
// walks go by index and never touch the elements' child cursors, so they may
// nest inside each other and inside any other walk.
#include <string>
#include <string_view>
#include <type_traits>

#include "xml/ascii.h"
#include "xml/child_lookup.h"
#include "xml/xml_element.h"

namespace definition {
inline constexpr std::string_view kProperties = "PROPERTIES";
inline constexpr std::string_view kCategory = "CATEGORY";
inline constexpr std::string_view kProperty = "PROPERTY";
inline constexpr std::string_view kFiles = "FILES";
inline constexpr std::string_view kFile = "FILE";
inline constexpr std::string_view kFolder = "FOLDER";
inline constexpr std::string_view kBitmap = "BITMAP";
inline constexpr std::string_view kImage = "IMAGE";
inline constexpr std::string_view kHtmlHead = "HTML_HEAD";
inline constexpr std::string_view kHtmlBody = "HTML_BODY";
inline constexpr std::string_view kHtmlTail = "HTML_TAIL";
}  // namespace definition

// A PROPERTY's type attribute. Other numbers may appear in a definition;
// such properties take part in substitution as text but get no row.
enum class PropertyType : int {
    kBoolean = 0,  // "true" / "false", a check box
    kColor = 1,    // #RRGGBB, shaped by colortype
    kText = 2,
    kFile = 3,  // a local file, published beside the page
    kFontName = 4,
    kFontSize = 5,
    kImageList = 6,  // a list of pictures, turned into markup by gallerytemplate
    kChoice = 7,     // one of the options
    kLink = 8,       // a hyperlink the host manages
};
bool IsKnownPropertyType(PropertyType type);
// "colour", "image list", ...; "unknown type" for other numbers.
const char* PropertyTypeName(PropertyType type);

// The root's rendermethod attribute: how the design view draws the object.
enum class RenderMethod : int {
    kPlaceholder = 0,     // the toolbar text in a frame
    kPreviewPicture = 1,  // the definition's IMAGE
    kHtmlSnapshot = 2,    // the design HTML, rendered live
};
// A readable name; other numbers are drawn as nothing.
const char* RenderMethodName(RenderMethod method);

// The attributes of a PROPERTY as substitution reads them.
struct PropertyRule {
    std::string variable;                        // entity-decoded variable attribute
    PropertyType type = PropertyType::kBoolean;  // type attribute as a leading decimal number
};
PropertyRule ReadPropertyRule(const CXmlElement& property);

// Calls f(category) for every CATEGORY child of the root's PROPERTIES, in
// document order. When f returns bool, false ends the walk.
template <class F>
void ForEachCategory(const CXmlElement& root, F&& f) {
    const CXmlElement* properties = FirstChildNamed(root, definition::kProperties);
    if (!properties) return;
    for (std::size_t c = 0; c < properties->GetChildCount(); ++c) {
        const CXmlElement& category = *properties->GetChild(c);
        if (!ascii::EqualsNoCase(category.GetName(), definition::kCategory)) continue;
        if constexpr (std::is_same_v<std::invoke_result_t<F, const CXmlElement&>, bool>) {
            if (!f(category)) return;
        } else {
            f(category);
        }
    }
}

// Calls f(property) for every PROPERTY child of category, in document order.
// When f returns bool, false ends the walk of this category.
template <class F>
void ForEachPropertyIn(const CXmlElement& category, F&& f) {
    for (std::size_t p = 0; p < category.GetChildCount(); ++p) {
        const CXmlElement& property = *category.GetChild(p);
        if (!ascii::EqualsNoCase(property.GetName(), definition::kProperty)) continue;
        if constexpr (std::is_same_v<std::invoke_result_t<F, const CXmlElement&>, bool>) {
            if (!f(property)) return;
        } else {
            f(property);
        }
    }
}

// Calls f(category, property) for every property in document order. Other
// elements (a PROPERTY directly under PROPERTIES, for one) are skipped.
template <class F>
void ForEachCategoryProperty(const CXmlElement& root, F&& f) {
    ForEachCategory(root, [&f](const CXmlElement& category) {
        ForEachPropertyIn(category, [&](const CXmlElement& property) { f(category, property); });
    });
}

// Calls f(property) for every property in document order.
template <class F>
void ForEachProperty(const CXmlElement& root, F&& f) {
    ForEachCategoryProperty(root, [&f](const CXmlElement&, const CXmlElement& property) { f(property); });
}
