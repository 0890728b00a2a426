#pragma once
// A way into our modal dialogs for tests and screenshots: each dialog, once
// initialised, hands its window to the installed handler from inside its own
// message loop (which may not have shown the window yet), so the handler can
// press buttons, set texts, read controls and end the dialog. Without a
// handler nothing happens.
#include <windows.h>

#include <functional>

using DialogShownHandler = std::function<void(HWND dialog)>;

// Replaces the handler (an empty function removes it).
void SetDialogShownHandler(DialogShownHandler handler);

// For the dialogs: call at the end of WM_INITDIALOG; it posts a message that
// HandleDialogShown recognises once the modal loop runs.
void AnnounceDialogShown(HWND dialog);
// True when message was that announcement (then the handler has run).
bool HandleDialogShown(HWND dialog, UINT message);
