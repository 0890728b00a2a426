#pragma once
// The transformer for systems without the Windows XML component: libxml2 and
// libxslt, with every file and network access forbidden and their error
// printing silenced.
//
// The 8-bit input is converted from a single-byte code page (Windows-1252
// unless told otherwise; any name iconv knows) to UTF-8 for the libraries,
// and the result back again; characters the code page cannot hold become '?'.
#include <memory>
#include <string>
#include <string_view>

#include "platform/xslt_transformer.h"

// Null when the code page is unknown to the system.
std::unique_ptr<CXsltTransformer> CreateLibxsltTransformer(const std::string& codePage = "WINDOWS-1252");

// Whether a style sheet in that code page compiles, with the same settings
// (no file or network access) the transformer uses.
bool LibxsltCompiles(std::string_view stylesheet, const std::string& codePage = "WINDOWS-1252");
