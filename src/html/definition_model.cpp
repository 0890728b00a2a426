#include "html/definition_model.h"

#include "html/attribute_number.h"
#include "xml/xml_document.h"

bool IsKnownPropertyType(PropertyType type) { return type >= PropertyType::kBoolean && type <= PropertyType::kLink; }

const char* PropertyTypeName(PropertyType type) {
    static const char* const kNames[] = {"Boolean",   "colour",     "text",   "file", "font name",
                                         "font size", "image list", "choice", "link"};
    return IsKnownPropertyType(type) ? kNames[static_cast<int>(type)] : "unknown type";
}

const char* RenderMethodName(RenderMethod method) {
    switch (method) {
        case RenderMethod::kPlaceholder: return "placeholder with the toolbar text";
        case RenderMethod::kPreviewPicture: return "preview picture";
        case RenderMethod::kHtmlSnapshot: return "HTML snapshot";
    }
    return "unknown; drawn as nothing";
}

PropertyRule ReadPropertyRule(const CXmlElement& property) {
    PropertyRule rule;
    rule.variable = CXmlDocument::Unescape(property.GetAttributeView("variable"));
    rule.type = static_cast<PropertyType>(AttributeToInt(property.GetAttributeView("type")));
    return rule;
}
