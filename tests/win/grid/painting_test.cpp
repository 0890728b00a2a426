// What the rows paint: sampled from a bitmap the rows are printed into.
#include "grid_fixture.h"

#include <commctrl.h>

#include <optional>

#include "test_pictures.h"

class GridPainting : public GridFixture {
protected:
    // Prints the rows into a bitmap and returns the colour at a client point.
    COLORREF PixelAt(POINT point) {
        RECT client;
        GetClientRect(RowsHwnd(), &client);
        test_pictures::Surface surface(client.right, client.bottom);
        SendMessageA(RowsHwnd(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(surface.Dc()), PRF_CLIENT);
        return GetPixel(surface.Dc(), point.x, point.y);
    }
    POINT SwatchCenter(const std::string& name) {
        RECT value = Rows().GetValueRect(RowOf(name));
        int left = value.left + m_ctrl->PaintManager().Scale(4);
        return {left + m_ctrl->PaintManager().Scale(10), (value.top + value.bottom) / 2};
    }
};

TEST_F(GridPainting, FocusRowNameIsHighlightedAndOthersAreNot) {
    Focus("Title");
    SetFocus(RowsHwnd());
    RECT title;
    Rows().GetRowRect(RowOf("Title"), &title);
    RECT color;
    Rows().GetRowRect(RowOf("Color"), &color);
    int x = Rows().SplitterGet() - 4;  // right end of the name column, past any text
    EXPECT_EQ(PixelAt({x, (title.top + title.bottom) / 2}), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(PixelAt({x, (color.top + color.bottom) / 2}), GetSysColor(COLOR_WINDOW));
}

TEST_F(GridPainting, RowsAndSwatchesScaleWithTheDpi) {
    int rowAt96 = m_ctrl->PaintManager().RowHeight();
    m_ctrl->SetDpi(144);
    int rowAt144 = m_ctrl->PaintManager().RowHeight();
    EXPECT_GE(rowAt144 * 96, rowAt96 * 144 * 9 / 10);  // about half as high again
    RECT row;
    Rows().GetRowRect(1, &row);
    EXPECT_EQ(row.bottom - row.top, rowAt144);
    CellOf<CExtGridCellColor>("Color")->SetColor(RGB(10, 200, 10));
    EXPECT_EQ(PixelAt(SwatchCenter("Color")), RGB(10, 200, 10));
    m_ctrl->SetDpi(96);
}

TEST_F(GridPainting, WheelScrollsWhenTheRowsDoNotFit) {
    SetWindowPos(m_ctrl->GetHwnd(), nullptr, 0, 0, 400, 160, SWP_NOZORDER | SWP_NOMOVE);
    ASSERT_LT(Rows().VisibleRowCount(), Rows().RowCount());
    SendMessageA(RowsHwnd(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    EXPECT_GT(Rows().GetTopRow(), 0);
    SendMessageA(RowsHwnd(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(WHEEL_DELTA * 5)), 0);
    EXPECT_EQ(Rows().GetTopRow(), 0);
    for (int i = 0; i < 20; ++i)
        SendMessageA(RowsHwnd(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    EXPECT_EQ(Rows().GetTopRow() + Rows().VisibleRowCount(), Rows().RowCount());  // never past the end
}

namespace {
// Whether tip holds the tool that describes owner; its text goes to *text.
bool ToolOf(HWND tip, HWND owner, std::string* text) {
    char buffer[512] = {};
    TTTOOLINFOA tool{};
    tool.cbSize = TTTOOLINFOA_V1_SIZE;
    tool.hwnd = owner;
    tool.uId = 1;
    if (!SendMessageA(tip, TTM_GETTOOLINFOA, 0, reinterpret_cast<LPARAM>(&tool))) return false;
    tool.lpszText = buffer;
    SendMessageA(tip, TTM_GETTEXTA, sizeof buffer, reinterpret_cast<LPARAM>(&tool));
    *text = buffer;
    return true;
}

struct ToolTipSearch {
    HWND owner;  // the window the tip describes
    HWND found;
    std::string text;
};

BOOL CALLBACK CheckToolTip(HWND hwnd, LPARAM data) {
    auto* search = reinterpret_cast<ToolTipSearch*>(data);
    char name[64] = {};
    GetClassNameA(hwnd, name, sizeof name);
    if (lstrcmpiA(name, TOOLTIPS_CLASSA) == 0 && ToolOf(hwnd, search->owner, &search->text)) search->found = hwnd;
    return search->found == nullptr;
}

// The text of the tool tip that describes owner, or null when it has none.
std::optional<std::string> ToolTipOf(HWND owner) {
    ToolTipSearch search{owner, nullptr, {}};
    EnumThreadWindows(GetCurrentThreadId(), CheckToolTip, reinterpret_cast<LPARAM>(&search));
    if (!search.found) return std::nullopt;
    return search.text;
}
}  // namespace

TEST_F(GridPainting, ToolTipsCarryOnlyTextsThatDoNotFit) {
    std::string longText(60, 'w');  // wider than the column, short enough to read back
    CellOf<CExtGridCellString>("Title")->SetText(longText);
    POINT title = ValuePoint("Title");
    SendMessageA(RowsHwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(title.x, title.y));
    EXPECT_EQ(ToolTipOf(RowsHwnd()), longText);
    POINT count = ValuePoint("Count");
    SendMessageA(RowsHwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(count.x, count.y));
    EXPECT_EQ(ToolTipOf(RowsHwnd()), "");
    m_ctrl->EnableToolTips(false);
    SendMessageA(RowsHwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(title.x, title.y));
    EXPECT_EQ(ToolTipOf(RowsHwnd()), std::nullopt);
    EXPECT_EQ(ToolTipOf(m_ctrl->GetHwnd()), std::nullopt);  // nor on the toolbar
}
