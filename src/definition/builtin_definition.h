#pragma once
// The built-in Slidewave definition: the bytes of extension.xml, packed from
// resources/slidewave at build time. The same bytes are the plug-in's
// "extension.xml" resource.
#include <string_view>

std::string_view BuiltinDefinition();
