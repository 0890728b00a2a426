#include "grid/paint_manager.h"

#include <algorithm>

#include <uxtheme.h>
#include <vssym32.h>

#include "grid/theme_api.h"

int ScreenDpi() {
    HDC screen = GetDC(nullptr);
    int dpi = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 0;
    if (screen) ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : 96;
}

namespace {

void FillPolygon(HDC dc, const POINT* points, int count, COLORREF color) {
    HBRUSH brush = CreateSolidBrush(color);
    HPEN pen = CreatePen(PS_SOLID, 1, color);
    HGDIOBJ oldBrush = SelectObject(dc, brush);
    HGDIOBJ oldPen = SelectObject(dc, pen);
    Polygon(dc, points, count);
    SelectObject(dc, oldPen);
    SelectObject(dc, oldBrush);
    DeleteObject(pen);
    DeleteObject(brush);
}
}  // namespace

CExtGridPaintManager::CExtGridPaintManager(int dpi) : m_dpi(dpi > 0 ? dpi : ScreenDpi()) {
    CreateFonts();
    OpenThemes();
}

CExtGridPaintManager::~CExtGridPaintManager() {
    CloseThemes();
    DeleteFonts();
}

void CExtGridPaintManager::SetDpi(int dpi) {
    m_dpi = dpi > 0 ? dpi : ScreenDpi();
    Refresh();
}

void CExtGridPaintManager::Refresh() {
    DeleteFonts();
    CreateFonts();
    CloseThemes();
    OpenThemes();
}

void CExtGridPaintManager::CreateFonts() {
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof(metrics);
    LOGFONTA font{};
    if (SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0)) {
        font = metrics.lfMessageFont;
        // The system font is sized for the screen; rescale it for our DPI.
        font.lfHeight = MulDiv(font.lfHeight, m_dpi, ScreenDpi());
    } else {
        font.lfHeight = -MulDiv(8, m_dpi, 72);
        font.lfWeight = FW_NORMAL;
        lstrcpyA(font.lfFaceName, "MS Shell Dlg");
    }
    font.lfQuality = CLEARTYPE_QUALITY;
    m_normalFont = CreateFontIndirectA(&font);
    font.lfWeight = FW_BOLD;
    m_boldFont = CreateFontIndirectA(&font);

    HDC screen = GetDC(nullptr);
    HGDIOBJ old = SelectObject(screen, m_normalFont);
    TEXTMETRICA tm{};
    GetTextMetricsA(screen, &tm);
    SelectObject(screen, old);
    ReleaseDC(nullptr, screen);
    m_textHeight = tm.tmHeight > 0 ? tm.tmHeight : Scale(13);
}

void CExtGridPaintManager::DeleteFonts() {
    if (m_normalFont) DeleteObject(m_normalFont);
    if (m_boldFont) DeleteObject(m_boldFont);
    m_normalFont = m_boldFont = nullptr;
}

void CExtGridPaintManager::OpenThemes() {
    const ThemeApi* api = ThemeApi::Get();
    // Themes draw their pictures for the screen's DPI; at any other DPI the
    // classic drawing, which scales, looks better.
    if (!api || m_dpi != ScreenDpi()) return;
    m_buttonTheme = api->OpenThemeData(nullptr, L"BUTTON");
    m_treeTheme = api->OpenThemeData(nullptr, L"TREEVIEW");
    m_comboTheme = api->OpenThemeData(nullptr, L"COMBOBOX");
    m_spinTheme = api->OpenThemeData(nullptr, L"SPIN");
    m_toolbarTheme = api->OpenThemeData(nullptr, L"TOOLBAR");
}

void CExtGridPaintManager::CloseThemes() {
    const ThemeApi* api = ThemeApi::Get();
    for (void** theme : {&m_buttonTheme, &m_treeTheme, &m_comboTheme, &m_spinTheme, &m_toolbarTheme}) {
        if (*theme && api) api->CloseThemeData(*theme);
        *theme = nullptr;
    }
}

bool CExtGridPaintManager::IsThemed() const { return m_buttonTheme != nullptr; }

void CExtGridPaintManager::FillSolid(HDC dc, const RECT& rect, COLORREF color) {
    COLORREF old = SetBkColor(dc, color);
    ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &rect, nullptr, 0, nullptr);
    SetBkColor(dc, old);
}

void CExtGridPaintManager::DrawCheckBox(HDC dc, const RECT& rect, bool checked, bool enabled) const {
    int size = Scale(13);
    RECT box{rect.left, rect.top + (rect.bottom - rect.top - size) / 2, 0, 0};
    box.right = box.left + size;
    box.bottom = box.top + size;
    if (const ThemeApi* api = ThemeApi::Get(); api && m_buttonTheme) {
        int state = checked ? (enabled ? CBS_CHECKEDNORMAL : CBS_CHECKEDDISABLED)
                            : (enabled ? CBS_UNCHECKEDNORMAL : CBS_UNCHECKEDDISABLED);
        api->DrawThemeBackground(m_buttonTheme, dc, BP_CHECKBOX, state, &box, nullptr);
        return;
    }
    // Classic: a flat box with a check mark drawn as a thick polyline, so it
    // stays crisp at every DPI.
    FillSolid(dc, box, GetSysColor(enabled ? COLOR_WINDOW : COLOR_3DFACE));
    HBRUSH frame = CreateSolidBrush(GetSysColor(COLOR_3DSHADOW));
    FrameRect(dc, &box, frame);
    DeleteObject(frame);
    if (checked) {
        int w = size - 2 * Scale(3);
        int x = box.left + Scale(3), y = box.top + size / 2;
        HPEN pen =
            CreatePen(PS_SOLID, (std::max)(2, Scale(2)), GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
        HGDIOBJ old = SelectObject(dc, pen);
        POINT mark[3] = {{x, y}, {x + w / 3, y + w / 3}, {x + w, y - w / 2}};
        Polyline(dc, mark, 3);
        SelectObject(dc, old);
        DeleteObject(pen);
    }
}

void CExtGridPaintManager::DrawExpander(HDC dc, const RECT& rect, bool expanded) const {
    int size = Scale(9) | 1;
    int cx = (rect.left + rect.right) / 2, cy = (rect.top + rect.bottom) / 2;
    if (const ThemeApi* api = ThemeApi::Get(); api && m_treeTheme) {
        int glyph = Scale(16);
        RECT r{cx - glyph / 2, cy - glyph / 2, cx - glyph / 2 + glyph, cy - glyph / 2 + glyph};
        api->DrawThemeBackground(m_treeTheme, dc, TVP_GLYPH, expanded ? GLPS_OPENED : GLPS_CLOSED, &r, nullptr);
        return;
    }
    RECT box{cx - size / 2, cy - size / 2, cx - size / 2 + size, cy - size / 2 + size};
    FillSolid(dc, box, GetSysColor(COLOR_WINDOW));
    HBRUSH frame = CreateSolidBrush(GetSysColor(COLOR_3DSHADOW));
    FrameRect(dc, &box, frame);
    DeleteObject(frame);
    int arm = size / 2 - Scale(2);
    int thick = (std::max)(1, Scale(1));
    RECT bar{cx - arm, cy - thick / 2, cx + arm + 1, cy - thick / 2 + thick};
    FillSolid(dc, bar, GetSysColor(COLOR_WINDOWTEXT));
    if (!expanded) {
        RECT stem{cx - thick / 2, cy - arm, cx - thick / 2 + thick, cy + arm + 1};
        FillSolid(dc, stem, GetSysColor(COLOR_WINDOWTEXT));
    }
}

void CExtGridPaintManager::DrawCellButton(HDC dc, const RECT& rect, CExtGridCell::ButtonKind kind, bool pressed,
                                          bool enabled, bool hot) const {
    using Kind = CExtGridCell::ButtonKind;
    const ThemeApi* api = ThemeApi::Get();
    bool drewFace = false;
    if (api && kind == Kind::kDropDown && m_comboTheme) {
        api->DrawThemeBackground(m_comboTheme, dc, CP_DROPDOWNBUTTON,
                                 !enabled  ? CBXS_DISABLED
                                 : pressed ? CBXS_PRESSED
                                 : hot     ? CBXS_HOT
                                           : CBXS_NORMAL,
                                 &rect, nullptr);
        return;
    }
    if (api && (kind == Kind::kSpinUp || kind == Kind::kSpinDown) && m_spinTheme) {
        int part = kind == Kind::kSpinUp ? SPNP_UP : SPNP_DOWN;
        api->DrawThemeBackground(m_spinTheme, dc, part,
                                 !enabled  ? UPS_DISABLED
                                 : pressed ? UPS_PRESSED
                                 : hot     ? UPS_HOT
                                           : UPS_NORMAL,
                                 &rect, nullptr);
        return;
    }
    if (api && m_buttonTheme) {
        api->DrawThemeBackground(m_buttonTheme, dc, BP_PUSHBUTTON,
                                 !enabled  ? PBS_DISABLED
                                 : pressed ? PBS_PRESSED
                                 : hot     ? PBS_HOT
                                           : PBS_NORMAL,
                                 &rect, nullptr);
        drewFace = true;
    }
    if (!drewFace) {
        RECT face = rect;
        DrawFrameControl(dc, &face, DFC_BUTTON, DFCS_BUTTONPUSH | (pressed ? DFCS_PUSHED : 0));
    }
    COLORREF ink = GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
    int cx = (rect.left + rect.right) / 2 + (pressed ? 1 : 0);
    int cy = (rect.top + rect.bottom) / 2 + (pressed ? 1 : 0);
    if (kind == Kind::kBrowse) {
        // Three dots.
        int dot = (std::max)(1, Scale(2)), gap = Scale(2);
        for (int i = -1; i <= 1; ++i) {
            RECT d{cx + i * (dot + gap) - dot / 2, cy + Scale(3) - dot, 0, 0};
            d.right = d.left + dot;
            d.bottom = d.top + dot;
            FillSolid(dc, d, ink);
        }
        return;
    }
    // A small triangle, pointing down for drop-downs and spin-down, up for spin-up.
    int half = (std::max)(2, Scale(kind == Kind::kDropDown ? 4 : 3));
    bool up = kind == Kind::kSpinUp;
    int top = up ? cy - half / 2 - 1 : cy - half / 2;
    POINT tri[3];
    if (up) {
        tri[0] = {cx - half, top + half};
        tri[1] = {cx + half, top + half};
        tri[2] = {cx, top};
    } else {
        tri[0] = {cx - half, top};
        tri[1] = {cx + half, top};
        tri[2] = {cx, top + half};
    }
    FillPolygon(dc, tri, 3, ink);
}

void CExtGridPaintManager::DrawColorSwatch(HDC dc, const RECT& rect, COLORREF color) const {
    RECT box = rect;
    int inset = (box.bottom - box.top - Scale(12)) / 2;
    if (inset > 0) InflateRect(&box, 0, -inset);
    if (color != CLR_INVALID && color != static_cast<COLORREF>(-1)) {
        FillSolid(dc, box, color & 0xFFFFFF);
    } else {
        FillSolid(dc, box, GetSysColor(COLOR_WINDOW));
        HPEN pen = CreatePen(PS_SOLID, 1, GetSysColor(COLOR_GRAYTEXT));
        HGDIOBJ old = SelectObject(dc, pen);
        MoveToEx(dc, box.left, box.bottom - 1, nullptr);
        LineTo(dc, box.right - 1, box.top);
        SelectObject(dc, old);
        DeleteObject(pen);
    }
    HBRUSH frame = CreateSolidBrush(GetSysColor(COLOR_WINDOWTEXT));
    FrameRect(dc, &box, frame);
    DeleteObject(frame);
}

void CExtGridPaintManager::DrawToolbarButtonFace(HDC dc, const RECT& rect, bool hot, bool pressed, bool checked) const {
    if (const ThemeApi* api = ThemeApi::Get(); api && m_toolbarTheme) {
        int state = pressed ? TS_PRESSED : checked ? (hot ? TS_HOTCHECKED : TS_CHECKED) : hot ? TS_HOT : TS_NORMAL;
        api->DrawThemeBackground(m_toolbarTheme, dc, TP_BUTTON, state, &rect, nullptr);
        return;
    }
    if (!hot && !pressed && !checked) return;
    RECT r = rect;
    if (checked && !hot && !pressed) {
        // A checked button is lighter than the face, as classic toolbars do.
        COLORREF face = GetSysColor(COLOR_3DFACE), light = GetSysColor(COLOR_3DHIGHLIGHT);
        FillSolid(dc, r,
                  RGB((GetRValue(face) + GetRValue(light)) / 2, (GetGValue(face) + GetGValue(light)) / 2,
                      (GetBValue(face) + GetBValue(light)) / 2));
    }
    DrawEdge(dc, &r, (pressed || checked) ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
}

CExtGridPaintManager& GridPaintManager() {
    static CExtGridPaintManager manager;
    return manager;
}

void CExtGridPaintManager::PaintBuffered(HWND hwnd, const std::function<void(HDC, const RECT&)>& paint) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(hwnd, &ps);
    RECT client;
    GetClientRect(hwnd, &client);
    if (client.right > 0 && client.bottom > 0) {
        HDC mem = CreateCompatibleDC(dc);
        HBITMAP bitmap = CreateCompatibleBitmap(dc, client.right, client.bottom);
        HGDIOBJ old = SelectObject(mem, bitmap);
        paint(mem, ps.rcPaint);
        const RECT& r = ps.rcPaint;
        BitBlt(dc, r.left, r.top, r.right - r.left, r.bottom - r.top, mem, r.left, r.top, SRCCOPY);
        SelectObject(mem, old);
        DeleteObject(bitmap);
        DeleteDC(mem);
    }
    EndPaint(hwnd, &ps);
}
