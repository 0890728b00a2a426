#include "grid/property_grid_combo_bar.h"

#include "grid/property_store.h"

bool CExtPropertyGridComboBoxBar::Create(HWND parent, int id, HFONT font) {
    m_hwnd = CreateWindowExA(0, "COMBOBOX", "", WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWNLIST, 0,
                             0, 100, 200, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                             GetModuleHandleA(nullptr), nullptr);
    if (m_hwnd) SendMessageA(m_hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return m_hwnd != nullptr;
}

int CExtPropertyGridComboBoxBar::PropertyStoreInsert(CExtPropertyStore* store) {
    if (!m_hwnd || !store) return -1;
    int index =
        static_cast<int>(SendMessageA(m_hwnd, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(store->NameGet().c_str())));
    if (index >= 0) SendMessageA(m_hwnd, CB_SETITEMDATA, index, reinterpret_cast<LPARAM>(store));
    return index;
}

int CExtPropertyGridComboBoxBar::PropertyStoreGetCount() const {
    return m_hwnd ? static_cast<int>(SendMessageA(m_hwnd, CB_GETCOUNT, 0, 0)) : 0;
}

CExtPropertyStore* CExtPropertyGridComboBoxBar::PropertyStoreGetAt(int index) const {
    if (!m_hwnd || index < 0 || index >= PropertyStoreGetCount()) return nullptr;
    LRESULT data = SendMessageA(m_hwnd, CB_GETITEMDATA, index, 0);
    return data == CB_ERR ? nullptr : reinterpret_cast<CExtPropertyStore*>(data);
}

CExtPropertyStore* CExtPropertyGridComboBoxBar::PropertyStoreGetSelected() const {
    return m_hwnd ? PropertyStoreGetAt(static_cast<int>(SendMessageA(m_hwnd, CB_GETCURSEL, 0, 0))) : nullptr;
}

void CExtPropertyGridComboBoxBar::PropertyStoreRemoveAll() {
    if (m_hwnd) SendMessageA(m_hwnd, CB_RESETCONTENT, 0, 0);
}

void CExtPropertyGridComboBoxBar::Show(bool show) {
    if (m_hwnd) ShowWindow(m_hwnd, show ? SW_SHOW : SW_HIDE);
}

bool CExtPropertyGridComboBoxBar::IsShown() const { return m_hwnd && (GetWindowLongA(m_hwnd, GWL_STYLE) & WS_VISIBLE); }
