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

class LinkDialog {
public:
    LinkDialog(std::string link, CXmlDocument* site) : site_(site) { fields_.link = std::move(link); }

    bool Run(HWND parent, std::string& link) {
        INT_PTR result = RunModalDialog(parent, PW_DIALOG_URL, this);
        if (result != IDOK) return false;
        link = fields_.link;
        return true;
    }

    // The dialog procedure, called through RunModalDialog.
    INT_PTR OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
        switch (message) {
            case WM_INITDIALOG:
                OnInitDialog(dialog);
                return TRUE;
            case WM_COMMAND:
                OnCommand(LOWORD(wParam), HIWORD(wParam));
                return TRUE;
        }
        return FALSE;
    }

private:

    void OnInitDialog(HWND dialog) {
        dialog_ = dialog;
        FillLinkTypeList(dialog);
        history_.LoadHistory(GetDlgItem(dialog, IDC_LINK), CurrentHostSettings(), "URL_History");
        if (site_) currentPage_ = FindCurrentPageBelow(*site_->GetRoot());

        LinkTypeDecision decision = DecideLinkType(fields_.link, site_);
        fields_.type = decision.type;
        if (!decision.hasScheme) {
            SetDlgItemTextA(dialog, IDC_LINK_LABEL, "&Page:");
            fields_.pageDisplay = kChoosePageHint;
            if (decision.page) {
                fields_.pageDisplay = decision.page->GetAttribute("name");
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
        WriteLinkFields(dialog, fields_);
    }

    // A page of the site: Select and the page's name instead of the link box.
    void ShowPageControls(bool show) {
        EnableControl(dialog_, IDC_FAVORITES, !show);
        ShowControl(dialog_, IDC_FAVORITES, !show);
        ShowControl(dialog_, IDC_SELECT_PAGE, show);
        ShowControl(dialog_, IDC_PAGE_DISPLAY, show);
        ShowControl(dialog_, IDC_LINK, !show);
    }

    void OnCommand(int id, int code) {
        switch (id) {
            case IDC_LINK_TYPE:
                if (code == CBN_SELCHANGE) {
                    ReadLinkFields(dialog_, fields_);
                    ApplyLinkType(dialog_, fields_, fields_.type);
                    WriteLinkFields(dialog_, fields_);
                }
                break;
            case IDC_FAVORITES:
                if (code == BN_CLICKED) {
                    std::string url;
                    if (RunFavoritesPicker(dialog_, url)) {
                        ReadLinkFields(dialog_, fields_);
                        fields_.link = url;
                        WriteLinkFields(dialog_, fields_);
                    }
                }
                break;
            case IDC_SELECT_PAGE:
                if (code == BN_CLICKED) OnSelectPage();
                break;
            case IDOK:
                ReadLinkFields(dialog_, fields_);
                EndDialog(dialog_, IDOK);
                break;
            case IDCANCEL:
                EndDialog(dialog_, IDCANCEL);
                break;
        }
    }

    void OnSelectPage() {
        ReadLinkFields(dialog_, fields_);
        if (!ChoosePageForLink(dialog_, site_, fields_)) return;
        WriteLinkFields(dialog_, fields_);
        // A page is chosen: Enter now confirms rather than opening the picker again.
        SendMessageA(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog_, IDOK)), TRUE);
    }

    HWND dialog_ = nullptr;
    CXmlDocument* site_;
    CXmlElement* currentPage_ = nullptr;  // the page being edited, as the host marked it
    LinkHistoryCombo history_;
    LinkFields fields_;
};

}  // namespace

bool RunLinkDialog(HWND parent, std::string& link, CXmlDocument* siteStructure) {
    LinkDialog dialog(link, siteStructure);
    return dialog.Run(parent, link);
}
