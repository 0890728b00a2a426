#pragma once
// A static control that behaves as a web link: blue underlined text, a hand
// cursor, and a click opens its target with the shell's "open" verb.
#include <windows.h>

#include <string>

#include "grid/window_binding.h"

class CHyperlinkStatic {
public:
    static constexpr COLORREF kLinkColor = RGB(0, 0, 0xFF);
    static constexpr int kHandCursorId = 145;

    CHyperlinkStatic() = default;
    CHyperlinkStatic(const CHyperlinkStatic&) = delete;
    CHyperlinkStatic& operator=(const CHyperlinkStatic&) = delete;
    ~CHyperlinkStatic();

    // Takes over the dialog's static control: its clicks, cursor and font.
    bool Attach(HWND dialog, int controlId);
    HWND GetHwnd() const { return m_hwnd; }

    const std::string& GetTarget() const { return m_target; }
    void SetTarget(const std::string& target) { m_target = target; }
    COLORREF GetLinkColor() const { return m_linkColor; }
    HCURSOR GetCursor() const { return m_cursor; }
    HFONT GetUnderlinedFont() const { return m_underlined; }

    // The parent's WM_CTLCOLORSTATIC for this control: blue text on a
    // transparent background, and the null brush.
    HBRUSH OnCtlColor(HDC dc) const;
    // Opens the target when it is not empty; what a left click does.
    void Open() const;

private:
    template <class T>
    friend LRESULT CALLBACK window_binding::Thunk(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);
    LRESULT SubclassProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_hwnd = nullptr;
    COLORREF m_linkColor = kLinkColor;
    HCURSOR m_cursor = nullptr;
    std::string m_target;
    HFONT m_underlined = nullptr;
};
