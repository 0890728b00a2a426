#pragma once
// The extension definition stored in the plug-in as resource "extension.xml"
// of type "XML": exactly the resource's bytes (no terminator is expected and
// none is added), or the empty text when the resource is missing.
#include <string>

std::string LoadDefinitionText();
