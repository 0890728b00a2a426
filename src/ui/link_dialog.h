#pragma once
// The link dialog: edits one link (a web address, a page of the user's site or
// an e-mail address) with its page and favourites pickers.
#include <windows.h>

#include <string>

class CXmlDocument;

// Runs the dialog modally over parent (may be null). link is the text to
// start from; on OK it receives the edited link and the result is true.
// siteStructure (not owned, may be null) feeds the page picker.
bool RunLinkDialog(HWND parent, std::string& link, CXmlDocument* siteStructure);
