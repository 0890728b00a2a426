#pragma once
// Looking up a child by name without touching the element's child cursor, so
// lookups may nest inside any walk.
#include <string_view>

#include "xml/xml_element.h"

// The first child of parent whose name equals name ignoring case, or null.
const CXmlElement* FirstChildNamed(const CXmlElement& parent, std::string_view name);
