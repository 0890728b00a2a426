#pragma once
// Runs one of our dialog templates modally for an owner object that handles
// its messages: owner->OnMessage(dialog, message, wParam, lParam) answers as a
// dialog procedure does. The owner is found again from the dialog's user data,
// and the test hook learns of the dialog once it is initialised. The dialog
// opens centred over the window that owns it (disabled while it runs).
#include <windows.h>

#include "ui/common_controls.h"
#include "ui/dialog_shown_hook.h"
#include "platform/own_module.h"

// Centres the dialog over its owner (the screen's work area without one),
// kept inside the work area of the owner's monitor.
void CenterOverOwner(HWND dialog, HWND owner);

template <class Owner>
INT_PTR CALLBACK ModalDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(dialog, DWLP_USER, lParam);
        CenterOverOwner(dialog, GetWindow(dialog, GW_OWNER));
    }
    auto* owner = reinterpret_cast<Owner*>(GetWindowLongPtrA(dialog, DWLP_USER));
    if (!owner) return FALSE;
    if (HandleDialogShown(dialog, message)) return TRUE;
    INT_PTR result = owner->OnMessage(dialog, message, wParam, lParam);
    if (message == WM_INITDIALOG) AnnounceDialogShown(dialog);
    return result;
}

// The dialog's result (IDOK, IDCANCEL, ...), or -1 when it could not be made.
template <class Owner>
INT_PTR RunModalDialog(HWND parent, LPCSTR templateName, Owner* owner) {
    EnsureCommonControls();
    return DialogBoxParamA(OwnModule(), templateName, parent, &ModalDialogProc<Owner>,
                           reinterpret_cast<LPARAM>(owner));
}
