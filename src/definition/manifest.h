#pragma once
// The manifest of a definition source folder: the element tree of an
// extension definition written as indented text, with the long contents
// (templates, payload files, pictures) kept in files beside it.
//
//     # a comment
//     [EXTENSION]
//         title = Slidewave
//         [PROPERTIES]
//             [CATEGORY]
//                 name = General
//                 [PROPERTY]
//                     gallerytemplate < gallery.xsl
//         [HTML_HEAD] < head.html
//
// A line "[NAME]" starts an element; the lines indented below it are its
// attributes and child elements. A line "name ..." is an attribute of the
// element above it. Both take a value in one of three forms:
//
//     = text     the rest of the line after one blank, exactly as it is to be
//                stored (entity references stay as written, e.g. &amp;)
//     < path     the bytes of the file at path (relative to the folder),
//                Base64-encoded in lines of 76 characters, each ending in CR LF
//     << path    the text of the file at path, stored as it is
//
// An element line without a value makes an element without one. Indentation
// is by blanks; blank lines and lines starting with '#' are ignored. The first
// attribute listed is written first among attributes that the writer's hash
// order does not already place (see PackManifest).
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "xml/xml_document.h"

namespace definition {

// Definitions are a few levels deep; nesting deeper than the XML model takes
// is refused, which also keeps the recursive walks over the tree far from
// the stack's limit.
inline constexpr int kMaxNesting = CXmlDocument::kMaxDepth;

// A manifest or definition that cannot be used; what() is one line.
struct DefinitionError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class ValueSource {
    kNone,        // no value (element lines only)
    kText,        // "= text"
    kBase64File,  // "< path"
    kTextFile,    // "<< path"
};

struct ManifestValue {
    ValueSource source = ValueSource::kNone;
    std::string text;  // the literal text or the file's path
};

struct ManifestAttribute {
    std::string name;
    ManifestValue value;
};

struct ManifestElement {
    std::string name;
    ManifestValue value;
    std::vector<ManifestAttribute> attributes;  // in manifest order
    std::vector<ManifestElement> children;
    int line = 0;  // where it starts, for messages
};

// Reads manifest text. Throws DefinitionError naming the line at fault.
ManifestElement ParseManifest(std::string_view text);

// Writes a manifest that ParseManifest reads back as the same tree, with a
// header comment that explains the format.
std::string FormatManifest(const ManifestElement& root);

}  // namespace definition
