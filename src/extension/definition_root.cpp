#include "extension/definition_root.h"

#include "xml/xml_document.h"

DefinitionRootAttributes ReadDefinitionRootAttributes(const CXmlElement& root) {
    DefinitionRootAttributes a;
    a.title = root.GetAttribute("title");
    a.text = root.GetAttribute("text");
    a.developer = root.GetAttribute("developer");
    a.website = root.GetAttribute("website");
    a.minWidth = AttributeToInt(root.GetAttribute("minwidth"));
    a.minHeight = AttributeToInt(root.GetAttribute("minheight"));
    a.useDiv = root.GetAttribute("usediv") == "1";
    a.renderMethod = AttributeToInt(root.GetAttribute("rendermethod"));
    return a;
}

DefinitionRootAttributes ReadDefinitionRootAttributes(std::string_view definitionText) {
    CXmlDocument definition;
    definition.Parse(definitionText);
    return ReadDefinitionRootAttributes(*definition.GetRoot());
}
