#pragma once
// Reading inputs and writing outputs for pwext commands, binary-safe.
#include <string>
#include <string_view>

#include "command.h"
#include "xml/xml_document.h"

namespace pwext {

// The whole file, or standard input for "-" or an empty name. Throws Failure
// with a one-line message when the file cannot be read.
std::string ReadInput(const std::string& path);
// Writes bytes to standard output unchanged.
void WriteOutput(std::string_view bytes);
// Writes a file whole and safely (platform/safe_file.h). Throws Failure
// saying why it failed.
void WriteFileAtomically(const std::string& path, std::string_view bytes);

// The failure of a document (named by what) whose elements nest deeper
// than the XML model reads; thrown when document's parse stopped there.
Failure TooDeep(const std::string& what);
void RequireWholeDocument(const CXmlDocument& document, const std::string& what);

// JSON string literal in which every byte becomes the code point of the same
// number (Latin-1), so any byte survives.
std::string JsonLatin1(std::string_view bytes);

}  // namespace pwext
