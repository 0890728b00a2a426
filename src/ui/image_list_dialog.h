#pragma once
// The image list ("Files") dialog: edits an image-list property's value, the
// GALLERY document with one IMAGE per picture.
#include <windows.h>

#include <string>

class CXmlDocument;

// Runs the dialog modally over parent (may be null). imageListText is the
// value to start from; on OK it receives the new image-list text and the
// result is true. siteStructure (not owned, may be null) feeds the page
// picker of the images' links.
bool RunImageListDialog(HWND parent, std::string& imageListText, CXmlDocument* siteStructure);
