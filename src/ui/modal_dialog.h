#pragma once
// Runs one of our dialog templates modally for an owner object that handles
// its messages: owner->OnMessage(dialog, message, wParam, lParam) answers as a
// dialog procedure does. The owner is found again from the dialog's user data,
// and the test hook learns of the dialog once it is initialised. The dialog
// opens centred over the window that owns it (disabled while it runs).
#include <windows.h>

#include "grid/window_binding.h"
#include "ui/common_controls.h"
#include "ui/dialog_shown_hook.h"
#include "platform/own_module.h"

// Centres the dialog over its owner (the screen's work area without one),
// kept inside the work area of the owner's monitor.
void CenterOverOwner(HWND dialog, HWND owner);

// What every modal dialog of ours does around its owner's handling.
template <class Owner>
struct ModalDialog {
    Owner* owner;
    INT_PTR DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_INITDIALOG) CenterOverOwner(dialog, GetWindow(dialog, GW_OWNER));
        if (HandleDialogShown(dialog, message)) return TRUE;
        INT_PTR result = owner->OnMessage(dialog, message, wParam, lParam);
        if (message == WM_INITDIALOG) AnnounceDialogShown(dialog);
        return result;
    }
};

// The dialog's result (IDOK, IDCANCEL, ...), or -1 when it could not be made.
template <class Owner>
INT_PTR RunModalDialog(HWND parent, LPCSTR templateName, Owner* owner) {
    EnsureCommonControls();
    ModalDialog<Owner> dialog{owner};
    return DialogBoxParamA(OwnModule(), templateName, parent, &BoundDialogProc<ModalDialog<Owner>>,
                           reinterpret_cast<LPARAM>(&dialog));
}
