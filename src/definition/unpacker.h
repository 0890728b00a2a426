#pragma once
// Turning an extension definition back into a source folder: a manifest and
// the files that hold its templates, payload files and pictures, so that an
// author can edit them and pack them again.
#include <string>
#include <string_view>
#include <vector>

#include "definition/manifest.h"  // DefinitionError

namespace definition {

struct UnpackedFile {
    std::string path;  // relative, '/' between folders
    std::string bytes;
};

struct UnpackedDefinition {
    std::string manifest;             // the text of manifest.txt
    std::vector<UnpackedFile> files;  // the files the manifest names
    // Whether packing the folder again gives the definition byte for byte.
    // True for every definition the packer wrote; a hand-made one may use a
    // layout the writer does not produce (other indentation, attribute order).
    bool exact = false;
    // Why packing the folder fails, when it does (names the manifest cannot
    // hold, such as element names with blanks); empty otherwise.
    std::string repackProblem;
};

// Values that are Base64 in the packer's layout ("< file") come out decoded;
// multi-line text that is not ("<< file") comes out as it is stored; short
// text stays in the manifest. Throws DefinitionError for text whose root is
// not EXTENSION.
UnpackedDefinition UnpackDefinition(std::string_view xml);

// The names in an element's attribute text in the order they appear, found
// with the document reader's scan (a repeated name counts once).
std::vector<std::string> AttributeNamesInOrder(std::string_view attributeText);

}  // namespace definition
