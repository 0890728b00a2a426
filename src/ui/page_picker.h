#pragma once
// The page picker ("Select Page"): the host's site structure as a tree of
// folders and pages under "Web Site", for choosing a page as a link.
#include <windows.h>

#include <string>

class CXmlDocument;
class CXmlElement;

struct PagePickerRequest {
    CXmlDocument* site = nullptr;  // not owned; may be null (only "Web Site")
    std::string currentPage;       // the page display text: selected when it names an item
    bool allowFolders = false;
};

// Runs the picker modally. On OK the result is true and chosen is the chosen
// page element (or folder, when folders are allowed). Element names of the
// site structure are lower-cased in place as the tree is built.
bool RunPagePicker(HWND parent, const PagePickerRequest& request, CXmlElement*& chosen);
