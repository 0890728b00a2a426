#pragma once
// The bar above a property grid that selects one of several stores. The
// grid control shows the store selected here after PropertyStoreSynchronize.
// Owners that show only one store hide the bar.
#include <windows.h>

class CExtPropertyStore;

class CExtPropertyGridComboBoxBar {
public:
    bool Create(HWND parent, int id, HFONT font);
    // The bar's window is a drop-down list: CB_SETCURSEL and friends work on it.
    HWND GetHwnd() const { return m_hwnd; }

    // Adds a store (not owned) as the last entry; returns its index.
    int PropertyStoreInsert(CExtPropertyStore* store);
    int PropertyStoreGetCount() const;
    CExtPropertyStore* PropertyStoreGetAt(int index) const;
    // The store of the selected entry, or null.
    CExtPropertyStore* PropertyStoreGetSelected() const;
    void PropertyStoreRemoveAll();

    void Show(bool show);
    bool IsShown() const;

private:
    HWND m_hwnd = nullptr;
};
