#include "ui/properties_dialog.h"

#include "ui/cell_font_combo.h"
#include "ui/cell_images.h"
#include "ui/cell_updown_range.h"
#include "ui/cell_url.h"
#include "ui/font_list.h"
#include "platform/own_module.h"
#include "ui/modal_dialog.h"

namespace {
const char kTemplateName[] = "Properties";
const char kCaptionSuffix[] = " Properties";

// The cells of this dialog, registered by name like the toolkit's own (the
// bounded spin cell has no row type but can be created by name).
void RegisterPropertyCells() {
    for (const CExtGridCellClass* c : {&CExtGridCellURL::kClass, &CExtGridCellImages::kClass,
                                       &CExtGridCellFontComboBox::kClass, &CExtGridCellUpDownRange::kClass})
        CExtGridCellClass::Register(*c);
}

}  // namespace

bool CExtensionPropertyGridCtrl::PreTranslateMessage(MSG* msg) {
    if (msg->message == WM_KEYDOWN && msg->wParam == VK_DELETE) return GetHwnd() && IsDialogMessageA(GetHwnd(), msg);
    return CExtPropertyGridCtrl::PreTranslateMessage(msg);
}

CPropertiesDialog::CPropertiesDialog(CXmlDocument* definition, CXmlDocument* siteStructure)
    : m_definition(definition), m_siteStructure(siteStructure) {
    RegisterPropertyCells();
}

CPropertiesDialog::~CPropertiesDialog() {
    if (m_hwnd && IsWindow(m_hwnd)) DestroyWindow(m_hwnd);
}

HWND CPropertiesDialog::Create(HWND parent) {
    m_ended = false;
    m_result = IDCANCEL;
    m_hwnd = CreateDialogParamA(OwnModule(), kTemplateName, parent, BoundDialogProc<CPropertiesDialog>,
                                reinterpret_cast<LPARAM>(this));
    return m_hwnd;
}

int CPropertiesDialog::DoModal(HWND parent) {
    // Modal over the top-level window, as a dialog box would be.
    HWND owner = parent ? GetAncestor(parent, GA_ROOT) : nullptr;
    if (!Create(owner)) return -1;
    bool disableOwner = owner && IsWindowEnabled(owner);
    if (disableOwner) EnableWindow(owner, FALSE);
    CenterOverOwner(m_hwnd, owner);
    ShowWindow(m_hwnd, SW_SHOW);
    // Our own loop rather than the system's, so the grid sees every message
    // before the dialog manager does.
    MSG msg;
    while (!m_ended) {
        BOOL got = GetMessageA(&msg, nullptr, 0, 0);
        if (got == 0) {
            PostQuitMessage(static_cast<int>(msg.wParam));  // for the host's loop
            break;
        }
        if (got < 0) break;
        if (!PreTranslate(msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
    if (disableOwner) EnableWindow(owner, TRUE);
    if (owner && GetActiveWindow() == m_hwnd) SetActiveWindow(owner);
    DestroyWindow(m_hwnd);
    m_hwnd = nullptr;
    return m_result;
}

bool CPropertiesDialog::PreTranslate(MSG& msg) {
    HWND grid = m_grid.GetHwnd();
    if (grid && (msg.hwnd == grid || IsChild(grid, msg.hwnd)) && m_grid.PreTranslateMessage(&msg)) return true;
    return IsDialogMessageA(m_hwnd, &msg) != FALSE;
}

void CPropertiesDialog::End(int result) {
    m_result = result;
    m_ended = true;
}

INT_PTR CPropertiesDialog::DialogProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        m_hwnd = hwnd;
        return OnInitDialog();
    }
    return HandleMessage(message, wParam, lParam);
}

INT_PTR CPropertiesDialog::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            if (LOWORD(wParam) == IDOK) {
                // A value still being typed counts, as if Enter had been pressed.
                if (m_grid.GetHwnd() && m_grid.GetGrid().IsEditing()) m_grid.GetGrid().CommitEdit();
                End(IDOK);
                return TRUE;
            }
            if (LOWORD(wParam) == IDCANCEL) {
                End(IDCANCEL);
                return TRUE;
            }
            break;
        case WM_NOTIFY: {
            const auto* nm = reinterpret_cast<const NMPROPERTYGRID*>(lParam);
            if (nm->hdr.idFrom == static_cast<UINT_PTR>(kGridId) &&
                (nm->hdr.code == PGN_INPUTCOMPLETE || nm->hdr.code == PGN_VALUEAPPLIED) && nm->item) {
                OnValueChanged(*nm->item);
                return TRUE;
            }
            break;
        }
        case WM_CTLCOLORSTATIC:
            if (reinterpret_cast<HWND>(lParam) == m_website.GetHwnd() && m_website.GetHwnd())
                return reinterpret_cast<INT_PTR>(m_website.OnCtlColor(reinterpret_cast<HDC>(wParam)));
            break;
        default: break;
    }
    return FALSE;
}

BOOL CPropertiesDialog::OnInitDialog() {
    m_website.Attach(m_hwnd, kWebsiteId);
    if (m_grid.CreateInPlaceOf(m_hwnd, kGridId)) {
        CExtPropertyGridComboBoxBar& bar = m_grid.GetComboBar();
        bar.PropertyStoreInsert(BuildPropertyStore());
        SendMessageA(bar.GetHwnd(), CB_SETCURSEL, 0, 0);
        bar.Show(false);
        m_grid.PropertyStoreSynchronize();
        m_grid.EnableToolTips(false);
    }
    CXmlElement* root = m_definition ? m_definition->GetRoot() : nullptr;
    std::string title = root ? CXmlDocument::Unescape(root->GetAttribute("title")) : std::string();
    if (!title.empty()) SetWindowTextA(m_hwnd, (title + kCaptionSuffix).c_str());
    std::string developer = root ? CXmlDocument::Unescape(root->GetAttribute("developer")) : std::string();
    std::string website = root ? CXmlDocument::Unescape(root->GetAttribute("website")) : std::string();
    SetDlgItemTextA(m_hwnd, kDeveloperId, developer.c_str());
    SetDlgItemTextA(m_hwnd, kWebsiteId, website.c_str());
    m_website.SetTarget(website);
    // The keyboard starts on the first property, so the first arrow key moves.
    if (HWND grid = m_grid.GetHwnd() ? m_grid.GetGrid().GetHwnd() : nullptr) {
        CExtPropertyGridWnd& rows = m_grid.GetGrid();
        for (int row = 0; row < rows.RowCount(); ++row) {
            if (rows.RowItem(row) && rows.RowItem(row)->IsValue()) {
                rows.FocusSet(row);
                break;
            }
        }
        SetFocus(grid);
        return FALSE;  // the focus is set
    }
    return TRUE;
}

const std::vector<std::string>& CPropertiesDialog::FaceNames() {
    if (!m_facesListed) {
        m_faces = EnumerateFaceNames(m_hwnd);
        m_facesListed = true;
    }
    return m_faces;
}

void CPropertiesDialog::OnValueChanged(CExtPropertyValue& item) {
    for (CExtPropertyItem* offered = &item; offered && offered->IsValue(); offered = offered->ItemParentGet())
        if (StorePropertyValue(*static_cast<CExtPropertyValue*>(offered))) break;
}
