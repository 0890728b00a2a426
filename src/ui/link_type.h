#pragma once
// The three kinds of link and how the Files and URL dialogs switch their
// controls between them. Both dialogs use the same control ids; the URL
// dialog has no target controls, which are then simply left out.
#include <windows.h>

#include <string>
#include <string_view>

class CXmlDocument;
class CXmlElement;

// Indices in the link-type drop-down list.
enum LinkType { kLinkWebSite = 0, kLinkInternalPage = 1, kLinkEmailAddress = 2 };

// The texts of the link controls, as the dialogs exchange them.
struct LinkFields {
    std::string link;
    std::string target;
    std::string pageDisplay;
    int type = kLinkWebSite;
};

extern const char kChoosePageHint[];  // "Click 'Select' to choose a page"

// Fills the link-type drop-down list with its three entries.
void FillLinkTypeList(HWND dialog);

// The link fields from the controls, and back.
void ReadLinkFields(HWND dialog, LinkFields& fields);
void WriteLinkFields(HWND dialog, const LinkFields& fields);

// Switches the controls to type and adjusts the texts: type 0 puts "http://"
// into an empty link, type 1 the hint into an empty page display, type 2
// "mailto:" into a link without it and empties the target. Other types
// change nothing.
void ApplyLinkType(HWND dialog, LinkFields& fields, int type);

// The Select button of both dialogs: runs the page picker over the site
// from the current page display. On OK a chosen page gives the page display
// its name and the link its url, and the type becomes Internal Web Page in
// any case; returns false when the picker was cancelled.
bool ChoosePageForLink(HWND dialog, CXmlDocument* site, LinkFields& fields);

// What a link text says about itself. A text without ":" names a page of
// the site when it holds "./": the part after the last "/", without its
// extension, looked up by name in site. With ":", "mailto" before it means
// an e-mail address, anything else a web address.
struct LinkTypeDecision {
    int type = kLinkWebSite;
    bool hasScheme = false;       // the text has a ":"
    CXmlElement* page = nullptr;  // the site's page, for type 1
};
LinkTypeDecision DecideLinkType(std::string_view link, CXmlDocument* site);

// Helpers for the dialogs' controls.
std::string GetControlText(HWND dialog, int id);
void ShowControl(HWND dialog, int id, bool show);
void EnableControl(HWND dialog, int id, bool enable);
