#include "ui/dialog_shown_hook.h"

namespace {

constexpr UINT kDialogShownMessage = WM_APP + 0x3a1;

DialogShownHandler& Handler() {
    static DialogShownHandler handler;
    return handler;
}

}  // namespace

void SetDialogShownHandler(DialogShownHandler handler) { Handler() = std::move(handler); }

void AnnounceDialogShown(HWND dialog) {
    if (Handler()) PostMessageA(dialog, kDialogShownMessage, 0, 0);
}

bool HandleDialogShown(HWND dialog, UINT message) {
    if (message != kDialogShownMessage) return false;
    // A copy: the handler may open a nested dialog, which runs the handler
    // again, or replace itself.
    DialogShownHandler handler = Handler();
    if (handler) handler(dialog);
    return true;
}
