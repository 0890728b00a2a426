#pragma once
// The frame of the two pickers (Select Page, Select Link from Favorites): a
// resizable modal dialog holding one tree view above OK and Cancel. OK and a
// double click ask the picker to choose (it ends the dialog when the
// selection is a choice); Cancel ends it.
#include <windows.h>

#include <commctrl.h>

#include "ui/resizable_dialog.h"

class CTreePickerDialog {
public:
    virtual ~CTreePickerDialog();

    // Runs the dialog template modally; true when the picker ended it with OK.
    bool Run(HWND parent, LPCSTR templateName);

    // The dialog procedure, called through RunModalDialog.
    INT_PTR OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

protected:
    explicit CTreePickerDialog(int treeId) : m_treeId(treeId) {}

    // Fills the tree; m_dialog, m_tree and the layout are set up.
    virtual void OnInitDialog() = 0;
    // OK or a double click: ends the dialog with IDOK when the selection is a choice.
    virtual void OnOK() = 0;
    // Notifications of the tree other than the double click.
    virtual void OnTreeNotify(NMHDR*) {}

    const int m_treeId;
    HWND m_dialog = nullptr;
    HWND m_tree = nullptr;
    HIMAGELIST m_images = nullptr;  // the tree's icons, destroyed with the picker

private:
    CResizableDialog m_layout;
};
