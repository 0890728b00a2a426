#pragma once
// Fonts, colours, metrics and the small pictures of the property grid, drawn
// with the system's visual styles when they are active and with classic
// drawing otherwise. Every size is given at 96 DPI and scaled to the grid's DPI.
#include <windows.h>

#include <functional>

#include "grid/grid_cell.h"

// The screen's DPI (96 when it cannot be read).
int ScreenDpi();

class CExtGridPaintManager {
public:
    // dpi 0 uses the screen's.
    explicit CExtGridPaintManager(int dpi = 0);
    ~CExtGridPaintManager();
    CExtGridPaintManager(const CExtGridPaintManager&) = delete;
    CExtGridPaintManager& operator=(const CExtGridPaintManager&) = delete;

    int Dpi() const { return m_dpi; }
    void SetDpi(int dpi);
    int Scale(int pixelsAt96) const { return MulDiv(pixelsAt96, m_dpi, 96); }

    // The normal user-interface font and its bold twin.
    HFONT NormalFont() const { return m_normalFont; }
    HFONT BoldFont() const { return m_boldFont; }
    int TextHeight() const { return m_textHeight; }
    int RowHeight() const { return m_textHeight + Scale(5); }
    int ButtonWidth() const { return RowHeight() - 1; }

    // Re-reads fonts and themes after a settings or theme change.
    void Refresh();
    bool IsThemed() const;

    static COLORREF Sys(int index) { return GetSysColor(index); }
    // The colour of category rows and the gutter left of the names.
    static COLORREF GutterColor() { return GetSysColor(COLOR_3DFACE); }
    // Lines between rows and columns.
    static COLORREF LineColor() { return GetSysColor(COLOR_3DFACE); }

    static void FillSolid(HDC dc, const RECT& rect, COLORREF color);
    // Answers WM_PAINT without flicker: paint draws into an off-screen bitmap
    // of the client area's size (dirty is the part that must be redrawn),
    // which is then copied to the window in one step.
    static void PaintBuffered(HWND hwnd, const std::function<void(HDC dc, const RECT& dirty)>& paint);
    void DrawCheckBox(HDC dc, const RECT& rect, bool checked, bool enabled) const;
    // The plus/minus box or the themed triangle that opens a category.
    void DrawExpander(HDC dc, const RECT& rect, bool expanded) const;
    // One of the buttons at the right of the focus row's value.
    void DrawCellButton(HDC dc, const RECT& rect, CExtGridCell::ButtonKind kind, bool pressed, bool enabled,
                        bool hot = false) const;
    // A colour sample with a frame; a colour of -1 draws an empty crossed box.
    void DrawColorSwatch(HDC dc, const RECT& rect, COLORREF color) const;
    // A flat toolbar button face: hot, pressed or checked.
    void DrawToolbarButtonFace(HDC dc, const RECT& rect, bool hot, bool pressed, bool checked) const;

private:
    void CreateFonts();
    void DeleteFonts();
    void OpenThemes();
    void CloseThemes();

    int m_dpi;
    HFONT m_normalFont = nullptr;
    HFONT m_boldFont = nullptr;
    int m_textHeight = 13;
    void* m_buttonTheme = nullptr;
    void* m_treeTheme = nullptr;
    void* m_comboTheme = nullptr;
    void* m_spinTheme = nullptr;
    void* m_toolbarTheme = nullptr;
};

// The paint manager used outside a grid (for example for the normal font of
// design-time drawing), at the screen's DPI.
CExtGridPaintManager& GridPaintManager();
