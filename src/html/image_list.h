#pragma once
// The image-list text: an XML document written by the document writer (with
// its declaration), root GALLERY, one IMAGE per image in list order, each with
// the children FILENAME, URL, TARGET, TITLE and DESCRIPTION in this order,
// each only when its text is not empty. This is how the Files dialog stores an
// image-list property's value.
#include <string>
#include <string_view>
#include <vector>

struct ImageListEntry {
    std::string fileName;  // full path of the picture
    std::string title = {};
    std::string description = {};
    std::string link = {};
    std::string target = {};
};

std::string WriteImageList(const std::vector<ImageListEntry>& images);

// Parses an image list with its names as the gallery style sheet's XML parser
// reads them: up to the first blank, tab, line break or NUL (the document
// parser keeps "IMAGE\n" whole), without the white space the root's name
// starts with. Elements left without an XML name are dropped with their
// content. A FILENAME keeps only its own text: child elements inside it are
// dropped, so the picture published, the page's FILENAME and the Files
// dialog's row agree.
// Returns false when the list nests deeper than the XML model takes (list
// then holds what came before).
class CXmlDocument;
bool ParseImageList(CXmlDocument& list, std::string_view text);
// Whether ParseImageList keeps an element of this name as it is.
bool IsXmlName(std::string_view name);

// The IMAGEs of an image list, in order (what the Files dialog lists).
std::vector<ImageListEntry> ReadImageList(std::string_view text);
