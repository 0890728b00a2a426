#pragma once
// The popup colour menu of colour cells: an optional "Automatic" entry, a
// palette of 40 colours and a command that leads to the colour dialog. It runs
// its own message loop, like a popup menu, and returns what the user chose.
// Keys pressed while it is open steer it: arrows, Enter or Space, Esc.
#include <windows.h>

#include "grid/window_binding.h"
#include <string>
#include <vector>

class CExtGridPaintManager;

class CExtColorPopup {
public:
    enum class Result { kCancelled, kPicked, kCustomCommand };

    CExtColorPopup();
    ~CExtColorPopup();

    void SetAutomatic(bool show, COLORREF automaticColor);
    void SetCustomCaption(const std::string& caption) { m_customCaption = caption; }
    void SetPaintManager(const CExtGridPaintManager* pm) { m_pm = pm; }

    // Shows the popup below the screen point `at` (or above it when there is
    // no room), with its right edge at most at anchorRight, and waits.
    Result Track(HWND owner, POINT at, int anchorRight, COLORREF current, COLORREF* picked);

    // The popup window while Track runs (for tests and screenshots).
    static HWND ActiveWindow();
    // The 40 palette colours, row by row.
    static const std::vector<COLORREF>& Palette();

private:
    enum class Kind { kAutomatic, kSwatch, kCustom };
    struct Entry {
        Kind kind;
        COLORREF color;
        RECT rect;
    };

    void Layout();
    void Paint(HDC dc);
    int HitTest(POINT client) const;
    void MoveFocus(int dx, int dy);
    void Finish(int entry);
    void SetHot(int entry);
    bool HandleKey(WPARAM key);
    template <class T>
    friend LRESULT CALLBACK BoundWindowProc(HWND, UINT, WPARAM, LPARAM);
    void OnBindWindow(HWND hwnd);
    void OnUnbindWindow() {}
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);

    const CExtGridPaintManager* m_pm;
    bool m_showAutomatic = false;
    COLORREF m_automaticColor = static_cast<COLORREF>(-1);
    std::string m_customCaption = "More colors...";
    COLORREF m_current = static_cast<COLORREF>(-1);
    std::vector<Entry> m_entries;
    SIZE m_size{};
    int m_hot = -1;
    HWND m_hwnd = nullptr;
    bool m_done = false;
    Result m_result = Result::kCancelled;
    COLORREF m_picked = static_cast<COLORREF>(-1);
};
