#include "ui/link_dialog.h"

#include "html/site_structure.h"
#include "ui/favorites_picker.h"
#include "ui/host_settings.h"
#include "ui/link_dialog_resources.h"
#include "ui/modal_dialog.h"
#include "ui/link_history.h"
#include "ui/link_type.h"
#include "xml/xml_document.h"

namespace {

class CLinkDialog {
public:
    CLinkDialog(std::string link, CXmlDocument* site) : m_site(site) { m_fields.link = std::move(link); }

    bool Run(HWND parent, std::string& link) {
        INT_PTR result = RunModalDialog(parent, PW_DIALOG_URL, this);
        if (result != IDOK) return false;
        link = m_fields.link;
        return true;
    }

    // The dialog procedure, called through RunModalDialog.
    INT_PTR OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
        switch (message) {
            case WM_INITDIALOG: OnInitDialog(dialog); return TRUE;
            case WM_COMMAND: OnCommand(LOWORD(wParam), HIWORD(wParam)); return TRUE;
        }
        return FALSE;
    }

private:
    void OnInitDialog(HWND dialog) {
        m_dialog = dialog;
        FillLinkTypeList(dialog);
        m_history.LoadHistory(GetDlgItem(dialog, IDC_LINK), CurrentHostSettings(), "URL_History");
        if (m_site) m_currentPage = FindCurrentPageBelow(*m_site->GetRoot());

        LinkTypeDecision decision = DecideLinkType(m_fields.link, m_site);
        m_fields.type = decision.type;
        if (!decision.hasScheme) {
            SetDlgItemTextA(dialog, IDC_LINK_LABEL, "&Page:");
            m_fields.pageDisplay = kChoosePageHint;
            if (decision.page) {
                m_fields.pageDisplay = decision.page->GetAttribute("name");
                ShowPageControls(true);
            }
        } else if (decision.type == kLinkEmailAddress) {
            EnableControl(dialog, IDC_FAVORITES, false);
            ShowControl(dialog, IDC_FAVORITES, false);
        } else {
            EnableControl(dialog, IDC_FAVORITES, true);
            ShowControl(dialog, IDC_FAVORITES, true);
            SetDlgItemTextA(dialog, IDC_LINK_LABEL, "&URL:");
        }
        WriteLinkFields(dialog, m_fields);
    }

    // A page of the site: Select and the page's name instead of the link box.
    void ShowPageControls(bool show) {
        EnableControl(m_dialog, IDC_FAVORITES, !show);
        ShowControl(m_dialog, IDC_FAVORITES, !show);
        ShowControl(m_dialog, IDC_SELECT_PAGE, show);
        ShowControl(m_dialog, IDC_PAGE_DISPLAY, show);
        ShowControl(m_dialog, IDC_LINK, !show);
    }

    void OnCommand(int id, int code) {
        switch (id) {
            case IDC_LINK_TYPE:
                if (code == CBN_SELCHANGE) {
                    ReadLinkFields(m_dialog, m_fields);
                    ApplyLinkType(m_dialog, m_fields, m_fields.type);
                    WriteLinkFields(m_dialog, m_fields);
                }
                break;
            case IDC_FAVORITES:
                if (code == BN_CLICKED) {
                    std::string url;
                    if (RunFavoritesPicker(m_dialog, url)) {
                        ReadLinkFields(m_dialog, m_fields);
                        m_fields.link = url;
                        WriteLinkFields(m_dialog, m_fields);
                    }
                }
                break;
            case IDC_SELECT_PAGE:
                if (code == BN_CLICKED) OnSelectPage();
                break;
            case IDOK:
                ReadLinkFields(m_dialog, m_fields);
                EndDialog(m_dialog, IDOK);
                break;
            case IDCANCEL: EndDialog(m_dialog, IDCANCEL); break;
        }
    }

    void OnSelectPage() {
        ReadLinkFields(m_dialog, m_fields);
        if (!ChoosePageForLink(m_dialog, m_site, m_fields)) return;
        WriteLinkFields(m_dialog, m_fields);
        // A page is chosen: Enter now confirms rather than opening the picker again.
        SendMessageA(m_dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(m_dialog, IDOK)), TRUE);
    }

    HWND m_dialog = nullptr;
    CXmlDocument* m_site;
    CXmlElement* m_currentPage = nullptr;  // the page being edited, as the host marked it
    CLinkHistoryCombo m_history;
    LinkFields m_fields;
};

}  // namespace

bool RunLinkDialog(HWND parent, std::string& link, CXmlDocument* siteStructure) {
    CLinkDialog dialog(link, siteStructure);
    return dialog.Run(parent, link);
}
