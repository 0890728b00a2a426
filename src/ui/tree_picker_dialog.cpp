#include "ui/tree_picker_dialog.h"

#include "ui/modal_dialog.h"

CTreePickerDialog::~CTreePickerDialog() {
    if (m_images) ImageList_Destroy(m_images);
}

bool CTreePickerDialog::Run(HWND parent, LPCSTR templateName) {
    return RunModalDialog(parent, templateName, this) == IDOK;
}

INT_PTR CTreePickerDialog::OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (m_layout.HandleMessage(message, wParam, lParam)) return FALSE;
    switch (message) {
        case WM_INITDIALOG:
            m_dialog = dialog;
            m_tree = GetDlgItem(dialog, m_treeId);
            m_layout.SetUp(dialog, {{m_treeId, kAnchorRightEdge | kAnchorBottomEdge},
                                    {IDOK, kAnchorLeftEdge | kAnchorTopEdge},
                                    {IDCANCEL, kAnchorLeftEdge | kAnchorTopEdge}});
            OnInitDialog();
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == IDOK)
                OnOK();
            else if (LOWORD(wParam) == IDCANCEL)
                EndDialog(dialog, IDCANCEL);
            return TRUE;
        case WM_NOTIFY: {
            auto* header = reinterpret_cast<NMHDR*>(lParam);
            if (header->idFrom != static_cast<UINT_PTR>(m_treeId)) return FALSE;
            if (header->code == NM_DBLCLK)
                OnOK();
            else
                OnTreeNotify(header);
            return FALSE;
        }
    }
    return FALSE;
}
