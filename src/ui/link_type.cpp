#include "ui/link_type.h"

#include "html/site_structure.h"
#include "platform/window_text.h"
#include "ui/link_dialog_resources.h"
#include "ui/page_picker.h"
#include "xml/ascii.h"
#include "xml/xml_document.h"

const char kChoosePageHint[] = "Click 'Select' to choose a page";

std::string GetControlText(HWND dialog, int id) { return WindowText(GetDlgItem(dialog, id)); }

void ShowControl(HWND dialog, int id, bool show) {
    if (HWND control = GetDlgItem(dialog, id)) ShowWindow(control, show ? SW_SHOW : SW_HIDE);
}

void EnableControl(HWND dialog, int id, bool enable) {
    if (HWND control = GetDlgItem(dialog, id)) EnableWindow(control, enable);
}

void FillLinkTypeList(HWND dialog) {
    for (const char* entry : {"Web Site", "Internal Web Page", "Email Address"})
        SendDlgItemMessageA(dialog, IDC_LINK_TYPE, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry));
}

void ReadLinkFields(HWND dialog, LinkFields& fields) {
    fields.link = GetControlText(dialog, IDC_LINK);
    fields.target = GetControlText(dialog, IDC_TARGET);
    fields.pageDisplay = GetControlText(dialog, IDC_PAGE_DISPLAY);
    LRESULT selected = SendDlgItemMessageA(dialog, IDC_LINK_TYPE, CB_GETCURSEL, 0, 0);
    fields.type = selected == CB_ERR ? kLinkWebSite : static_cast<int>(selected);
}

void WriteLinkFields(HWND dialog, const LinkFields& fields) {
    SetDlgItemTextA(dialog, IDC_LINK, fields.link.c_str());
    if (GetDlgItem(dialog, IDC_TARGET)) SetDlgItemTextA(dialog, IDC_TARGET, fields.target.c_str());
    SetDlgItemTextA(dialog, IDC_PAGE_DISPLAY, fields.pageDisplay.c_str());
    SendDlgItemMessageA(dialog, IDC_LINK_TYPE, CB_SETCURSEL, static_cast<WPARAM>(fields.type), 0);
}

void ApplyLinkType(HWND dialog, LinkFields& fields, int type) {
    const char* label = nullptr;
    switch (type) {
        case kLinkWebSite:
            if (fields.link.empty()) fields.link = "http://";
            EnableControl(dialog, IDC_TARGET_LABEL, true);
            EnableControl(dialog, IDC_TARGET, true);
            EnableControl(dialog, IDC_FAVORITES, true);
            ShowControl(dialog, IDC_FAVORITES, true);
            ShowControl(dialog, IDC_SELECT_PAGE, false);
            ShowControl(dialog, IDC_PAGE_DISPLAY, false);
            ShowControl(dialog, IDC_LINK, true);
            label = "&URL:";
            break;
        case kLinkInternalPage:
            if (fields.pageDisplay.empty()) fields.pageDisplay = kChoosePageHint;
            EnableControl(dialog, IDC_TARGET_LABEL, true);
            EnableControl(dialog, IDC_TARGET, true);
            EnableControl(dialog, IDC_FAVORITES, false);
            ShowControl(dialog, IDC_FAVORITES, false);
            ShowControl(dialog, IDC_SELECT_PAGE, true);
            ShowControl(dialog, IDC_PAGE_DISPLAY, true);
            ShowControl(dialog, IDC_LINK, false);
            label = "&Page:";
            break;
        case kLinkEmailAddress:
            if (fields.link.find("mailto:") == std::string::npos) fields.link = "mailto:";
            fields.target.clear();
            EnableControl(dialog, IDC_TARGET_LABEL, false);
            EnableControl(dialog, IDC_TARGET, false);
            // Disabled but left in view, as the dialog always has.
            EnableControl(dialog, IDC_FAVORITES, false);
            ShowControl(dialog, IDC_SELECT_PAGE, false);
            ShowControl(dialog, IDC_PAGE_DISPLAY, false);
            ShowControl(dialog, IDC_LINK, true);
            label = "T&o:";
            break;
        default: return;
    }
    fields.type = type;
    SetDlgItemTextA(dialog, IDC_LINK_LABEL, label);
}

LinkTypeDecision DecideLinkType(std::string_view link, CXmlDocument* site) {
    LinkTypeDecision decision;
    std::size_t colon = link.find(':');
    if (colon == std::string_view::npos) {
        if (link.find("./") != std::string_view::npos && site) {
            std::string_view name = link.substr(link.rfind('/') + 1);
            std::size_t dot = name.rfind('.');
            if (dot != std::string_view::npos) name = name.substr(0, dot);
            decision.page = FindPageByNameBelow(*site->GetRoot(), name);
            if (decision.page) decision.type = kLinkInternalPage;
        }
        return decision;
    }
    decision.hasScheme = true;
    if (ascii::Lower(link.substr(0, colon)) == "mailto") decision.type = kLinkEmailAddress;
    return decision;
}

bool ChoosePageForLink(HWND dialog, CXmlDocument* site, LinkFields& fields) {
    PagePickerRequest request;
    request.site = site;
    request.currentPage = fields.pageDisplay;
    CXmlElement* page = nullptr;
    if (!RunPagePicker(dialog, request, page)) return false;
    if (page) {
        fields.pageDisplay = page->GetAttribute("name");
        fields.link = page->GetAttribute("url");
    }
    fields.type = kLinkInternalPage;
    return true;
}
