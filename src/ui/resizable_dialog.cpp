#include "ui/resizable_dialog.h"

namespace {

bool IsSizeGrip(HWND child) {
    char className[16] = {};
    GetClassNameA(child, className, sizeof className);
    return lstrcmpiA(className, "ScrollBar") == 0 && (GetWindowLongA(child, GWL_STYLE) & SBS_SIZEGRIP) != 0;
}

HWND FindSizeGrip(HWND dialog) {
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if (IsSizeGrip(child)) return child;
    return nullptr;
}

RECT ChildRect(HWND dialog, HWND child) {
    RECT rect = {};
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

}  // namespace

void ResizableDialog::SetUp(HWND dialog, std::initializer_list<ResizeRule> rules) {
    dialog_ = dialog;
    LONG style = GetWindowLongA(dialog, GWL_STYLE);
    if ((style & (WS_THICKFRAME | WS_CLIPCHILDREN)) != (WS_THICKFRAME | WS_CLIPCHILDREN)) {
        // A wider frame keeps the client area as it was laid out.
        RECT client = {};
        GetClientRect(dialog, &client);
        SetWindowLongA(dialog, GWL_STYLE, style | WS_THICKFRAME | WS_CLIPCHILDREN);
        RECT frame = client;
        AdjustWindowRectEx(&frame, static_cast<DWORD>(style | WS_THICKFRAME | WS_CLIPCHILDREN), FALSE,
                           static_cast<DWORD>(GetWindowLongA(dialog, GWL_EXSTYLE)));
        SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    }

    RECT window = {};
    GetWindowRect(dialog, &window);
    minimum_ = {window.right - window.left, window.bottom - window.top};
    RECT client = {};
    GetClientRect(dialog, &client);
    initialClient_ = {client.right, client.bottom};

    grip_ = FindSizeGrip(dialog);
    if (!grip_) {
        int size = GetSystemMetrics(SM_CXVSCROLL);
        grip_ = CreateWindowExA(0, "ScrollBar", "",
                                WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SBS_SIZEGRIP | SBS_SIZEBOXBOTTOMRIGHTALIGN,
                                client.right - size, client.bottom - size, size, size, dialog, nullptr,
                                GetModuleHandleA(nullptr), nullptr);
    }

    placements_.clear();
    for (const ResizeRule& rule : rules) {
        HWND control = GetDlgItem(dialog, rule.controlId);
        if (control) placements_.push_back({rule.controlId, rule.anchors, ChildRect(dialog, control)});
    }
}

bool ResizableDialog::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!dialog_) return false;
    if (message == WM_GETMINMAXINFO) {
        auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
        info->ptMinTrackSize.x = minimum_.cx;
        info->ptMinTrackSize.y = minimum_.cy;
        return true;
    }
    if (message != WM_SIZE) return false;
    if (grip_) {
        if (wParam == SIZE_MAXIMIZED) ShowWindow(grip_, SW_HIDE);
        else if (wParam == SIZE_RESTORED) ShowWindow(grip_, SW_SHOW);
    }
    if (wParam != SIZE_MINIMIZED) Layout(LOWORD(lParam), HIWORD(lParam));
    return true;
}

void ResizableDialog::Layout(int width, int height) {
    int dx = width - initialClient_.cx;
    int dy = height - initialClient_.cy;
    const UINT flags = SWP_NOZORDER | SWP_NOACTIVATE;
    HDWP batch = BeginDeferWindowPos(static_cast<int>(placements_.size()) + 1);
    for (const Placement& p : placements_) {
        HWND control = GetDlgItem(dialog_, p.controlId);
        if (!control) continue;
        RECT r = p.initial;
        if (p.anchors & kAnchorLeftEdge) {
            r.left += dx;
            r.right += dx;
        } else if (p.anchors & kAnchorRightEdge) {
            r.right += dx;
        }
        if (p.anchors & kAnchorTopEdge) {
            r.top += dy;
            r.bottom += dy;
        } else if (p.anchors & kAnchorBottomEdge) {
            r.bottom += dy;
        }
        if (batch) batch = DeferWindowPos(batch, control, nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top, flags);
        else SetWindowPos(control, nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top, flags);
    }
    if (grip_) {
        RECT g = {};
        GetWindowRect(grip_, &g);
        int w = g.right - g.left, h = g.bottom - g.top;
        if (batch) batch = DeferWindowPos(batch, grip_, nullptr, width - w, height - h, w, h, flags);
        else SetWindowPos(grip_, nullptr, width - w, height - h, w, h, flags);
    }
    if (batch) EndDeferWindowPos(batch);
    for (const Placement& p : placements_)
        if (p.anchors & kAnchorRepaint) InvalidateRect(GetDlgItem(dialog_, p.controlId), nullptr, TRUE);
}
