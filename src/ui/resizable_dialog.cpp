#include "ui/resizable_dialog.h"

namespace {

bool IsOfClass(HWND window, const char* name) {
    char className[16] = {};
    GetClassNameA(window, className, sizeof className);
    return lstrcmpiA(className, name) == 0;
}

bool IsSizeGrip(HWND child) {
    return IsOfClass(child, "ScrollBar") && (GetWindowLongA(child, GWL_STYLE) & SBS_SIZEGRIP) != 0;
}

bool IsGroupBox(HWND child) {
    return IsOfClass(child, "Button") && (GetWindowLongA(child, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

// A group box paints only its frame and caption. With WS_CLIPCHILDREN the
// dialog would leave the inside unpainted too; a transparent child is not
// clipped out, so the dialog's background shows through it.
void LetGroupBoxesShowTheBackground(HWND dialog) {
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if (IsGroupBox(child))
            SetWindowLongA(child, GWL_EXSTYLE, GetWindowLongA(child, GWL_EXSTYLE) | WS_EX_TRANSPARENT);
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

void CResizableDialog::SetUp(HWND dialog, std::initializer_list<ResizeRule> rules) {
    m_dialog = dialog;
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

    LetGroupBoxesShowTheBackground(dialog);

    RECT window = {};
    GetWindowRect(dialog, &window);
    m_minimum = {window.right - window.left, window.bottom - window.top};
    RECT client = {};
    GetClientRect(dialog, &client);
    m_initialClient = {client.right, client.bottom};

    m_grip = FindSizeGrip(dialog);
    if (!m_grip) {
        int size = GetSystemMetrics(SM_CXVSCROLL);
        m_grip = CreateWindowExA(
            0, "ScrollBar", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SBS_SIZEGRIP | SBS_SIZEBOXBOTTOMRIGHTALIGN,
            client.right - size, client.bottom - size, size, size, dialog, nullptr, GetModuleHandleA(nullptr), nullptr);
    }

    m_placements.clear();
    for (const ResizeRule& rule : rules) {
        HWND control = GetDlgItem(dialog, rule.controlId);
        if (control) m_placements.push_back({rule.controlId, rule.anchors, ChildRect(dialog, control)});
    }
}

bool CResizableDialog::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!m_dialog) return false;
    if (message == WM_GETMINMAXINFO) {
        auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
        info->ptMinTrackSize.x = m_minimum.cx;
        info->ptMinTrackSize.y = m_minimum.cy;
        return true;
    }
    if (message != WM_SIZE) return false;
    if (m_grip) {
        if (wParam == SIZE_MAXIMIZED)
            ShowWindow(m_grip, SW_HIDE);
        else if (wParam == SIZE_RESTORED)
            ShowWindow(m_grip, SW_SHOW);
    }
    if (wParam != SIZE_MINIMIZED) Layout(LOWORD(lParam), HIWORD(lParam));
    return true;
}

void CResizableDialog::Layout(int width, int height) {
    int dx = width - m_initialClient.cx;
    int dy = height - m_initialClient.cy;
    const UINT flags = SWP_NOZORDER | SWP_NOACTIVATE;
    HDWP batch = BeginDeferWindowPos(static_cast<int>(m_placements.size()) + 1);
    for (const Placement& p : m_placements) {
        HWND control = GetDlgItem(m_dialog, p.controlId);
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
        if (batch)
            batch = DeferWindowPos(batch, control, nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top, flags);
        else
            SetWindowPos(control, nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top, flags);
    }
    if (m_grip) {
        RECT g = {};
        GetWindowRect(m_grip, &g);
        int w = g.right - g.left, h = g.bottom - g.top;
        if (batch)
            batch = DeferWindowPos(batch, m_grip, nullptr, width - w, height - h, w, h, flags);
        else
            SetWindowPos(m_grip, nullptr, width - w, height - h, w, h, flags);
    }
    if (batch) EndDeferWindowPos(batch);
    for (const Placement& p : m_placements)
        if (p.anchors & kAnchorRepaint) InvalidateRect(GetDlgItem(m_dialog, p.controlId), nullptr, TRUE);
}
