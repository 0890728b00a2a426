#pragma once
// Packing a definition source folder (a manifest plus the files it names)
// into the extension definition XML, as the plug-in stores it: written by
// the document writer (CXmlDocument::GetXml), so with its declaration, tab
// layout, inline values and attribute order.
#include <functional>
#include <string>
#include <string_view>

#include "definition/manifest.h"

namespace definition {

// The name of the manifest inside a definition source folder.
inline constexpr const char kManifestName[] = "manifest.txt";

// Base64 as definitions store it: lines of 76 characters, each followed by
// CR LF. The empty content is one empty line, a CR LF alone.
std::string EncodeBase64Lines(std::string_view bytes);

// Reads a file named in the manifest (a relative path); throws
// DefinitionError when it cannot.
using FileReader = std::function<std::string(const std::string& path)>;

// The definition for a parsed manifest. Attributes are given to each
// element's map in reverse manifest order, so that within one hash bucket
// (where the newest key comes first) the manifest's order is kept.
// Throws DefinitionError for content the document reader would misread.
std::string PackManifest(const ManifestElement& root, const FileReader& readFile);

// The definition for the folder's manifest.txt and files.
std::string PackFolder(const std::string& folder);

}  // namespace definition
