#pragma once
// The transformer for systems without the Windows XML component: libxml2 and
// libxslt, with every file and network access forbidden and their error
// printing silenced.
//
// The 8-bit input is converted from a single-byte code page (Windows-1252
// unless told otherwise; any name iconv knows) to UTF-8 for the libraries,
// and the result back again; characters the code page cannot hold become '?'.
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "platform/xslt_transformer.h"

// A list of at least writeAheadFrom bytes has the finished parts of its
// result written out while libxslt builds it (see libxslt_result_writer.h):
// with 10,000 pictures that saves 8 MB, where with a few hundred it would
// cost more time than the memory is worth. SIZE_MAX transforms as libxslt
// alone does.
constexpr std::size_t kWriteAheadFrom = 256 << 10;

// Null when the code page is unknown to the system.
std::unique_ptr<CXsltTransformer> CreateLibxsltTransformer(const std::string& codePage = "WINDOWS-1252",
                                                           std::size_t writeAheadFrom = kWriteAheadFrom);

// Whether a style sheet in that code page compiles, with the same settings
// (no file or network access) the transformer uses.
bool LibxsltCompiles(std::string_view stylesheet, const std::string& codePage = "WINDOWS-1252");
