#include "html/property_walk.h"

#include "html/attribute_number.h"
#include "xml/xml_document.h"

const CXmlElement* FirstChildNamed(const CXmlElement& parent, std::string_view name) {
    for (std::size_t i = 0; i < parent.GetChildCount(); ++i) {
        const CXmlElement* child = parent.GetChild(i);
        if (ascii::EqualsNoCase(child->GetName(), name)) return child;
    }
    return nullptr;
}

PropertyRule ReadPropertyRule(const CXmlElement& property) {
    PropertyRule rule;
    rule.variable = CXmlDocument::Unescape(property.GetAttribute("variable"));
    rule.type = AttributeToInt(property.GetAttribute("type"));
    return rule;
}
