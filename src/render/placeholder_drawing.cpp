#include "render/placeholder_drawing.h"

namespace {

constexpr COLORREF kGrey = RGB(128, 128, 128);
constexpr UINT kTextFormat = DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS;

RECT Normalized(const RECT& rect) {
    RECT r = rect;
    if (r.left > r.right) {
        LONG t = r.left;
        r.left = r.right;
        r.right = t;
    }
    if (r.top > r.bottom) {
        LONG t = r.top;
        r.top = r.bottom;
        r.bottom = t;
    }
    return r;
}

// Fills a rectangle with the DC's background colour.
void FillSolid(HDC dc, int x, int y, int cx, int cy) {
    if (cx <= 0 || cy <= 0) return;
    RECT r = {x, y, x + cx, y + cy};
    ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &r, nullptr, 0, nullptr);
}

// A 3D frame whose top-left and bottom-right colours are both grey: the
// outermost pixels inside the rectangle.
void DrawFlatFrame(HDC dc, const RECT& r) {
    int x = r.left, y = r.top, cx = r.right - r.left, cy = r.bottom - r.top;
    COLORREF backgroundBefore = SetBkColor(dc, kGrey);
    FillSolid(dc, x, y, cx - 1, 1);       // top
    FillSolid(dc, x, y, 1, cy - 1);       // left
    FillSolid(dc, x + cx - 1, y, 1, cy);  // right
    FillSolid(dc, x, y + cy - 1, cx, 1);  // bottom
    SetBkColor(dc, backgroundBefore);
}

}  // namespace

void DrawPlaceholder(HDC dc, const RECT& rect, std::string_view text) {
    RECT r = Normalized(rect);

    HGDIOBJ fontBefore = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    COLORREF textBefore = SetTextColor(dc, kGrey);
    int modeBefore = SetBkMode(dc, TRANSPARENT);
    if (!text.empty()) {
        RECT textRect = r;
        DrawTextA(dc, text.data(), static_cast<int>(text.size()), &textRect, kTextFormat);
    }
    SetTextColor(dc, textBefore);
    SetBkMode(dc, modeBefore);
    SelectObject(dc, fontBefore);

    DrawFlatFrame(dc, r);
}
