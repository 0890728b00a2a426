#include "ui/hyperlink_static.h"

#include <shellapi.h>

#include "platform/own_module.h"

CHyperlinkStatic::~CHyperlinkStatic() {
    if (m_hwnd && IsWindow(m_hwnd)) UnsubclassControl(m_hwnd, this);
    if (m_underlined) DeleteObject(m_underlined);
}

bool CHyperlinkStatic::Attach(HWND dialog, int controlId) {
    m_hwnd = GetDlgItem(dialog, controlId);
    if (!m_hwnd) return false;
    m_cursor = LoadCursorA(OwnModule(), MAKEINTRESOURCEA(kHandCursorId));
    // An underlined copy of the control's font.
    HFONT font = reinterpret_cast<HFONT>(SendMessageA(m_hwnd, WM_GETFONT, 0, 0));
    LOGFONTA lf{};
    if (GetObjectA(font ? static_cast<HGDIOBJ>(font) : GetStockObject(DEFAULT_GUI_FONT), sizeof lf, &lf)) {
        lf.lfUnderline = TRUE;
        m_underlined = CreateFontIndirectA(&lf);
        if (m_underlined) SendMessageA(m_hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(m_underlined), FALSE);
    }
    return SubclassControl(m_hwnd, this);
}

HBRUSH CHyperlinkStatic::OnCtlColor(HDC dc) const {
    SetTextColor(dc, m_linkColor);
    SetBkMode(dc, TRANSPARENT);
    return static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
}

void CHyperlinkStatic::Open() const {
    if (!m_target.empty()) ShellExecuteA(nullptr, "open", m_target.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

LRESULT CHyperlinkStatic::SubclassProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    CHyperlinkStatic* self = this;
    switch (message) {
        case WM_NCHITTEST:
            // Static controls are transparent to the mouse unless they say otherwise.
            return HTCLIENT;
        case WM_SETCURSOR:
            if (self->m_cursor) {
                SetCursor(self->m_cursor);
                return TRUE;
            }
            break;
        case WM_LBUTTONDOWN: self->Open(); break;
        default: break;
    }
    return CallOriginalProc(hwnd, message, wParam, lParam);
}
