#pragma once
// The extension definition's root attributes, read the way an extension
// object and the toolbar functions read them: numbers with atoi (absent or
// non-numeric gives 0), usediv true only for the exact text "1", texts raw.
#include <string>
#include <string_view>

#include "html/attribute_number.h"  // AttributeToInt

class CXmlElement;

struct DefinitionRootAttributes {
    std::string title;      // toolbar title; empty when absent
    std::string text;       // toolbar text kept by the object
    std::string developer;  // shown in the Properties dialog
    std::string website;    // shown in the Properties dialog
    int minWidth = 0;
    int minHeight = 0;
    bool useDiv = false;
    int renderMethod = 0;
};

DefinitionRootAttributes ReadDefinitionRootAttributes(const CXmlElement& root);

// The same, from definition text (parsed with the document parser).
DefinitionRootAttributes ReadDefinitionRootAttributes(std::string_view definitionText);
