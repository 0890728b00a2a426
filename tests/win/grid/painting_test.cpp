// What the rows paint: sampled from a bitmap the rows are printed into.
#include "grid_fixture.h"

#include <commctrl.h>

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
struct ToolTipSearch {
    HWND tool;  // the window the tip describes
    HWND found;
};

BOOL CALLBACK CheckToolTip(HWND hwnd, LPARAM data) {
    auto* search = reinterpret_cast<ToolTipSearch*>(data);
    char name[64] = {};
    GetClassNameA(hwnd, name, sizeof name);
    if (lstrcmpiA(name, TOOLTIPS_CLASSA) != 0) return TRUE;
    TTTOOLINFOA tool{};
    tool.cbSize = TTTOOLINFOA_V1_SIZE;
    tool.hwnd = search->tool;
    tool.uId = 1;
    if (SendMessageA(hwnd, TTM_GETTOOLINFOA, 0, reinterpret_cast<LPARAM>(&tool))) search->found = hwnd;
    return search->found == nullptr;
}

// The tool tip window with a tool for the given window, or null.
HWND FindOwnedToolTip(HWND tool) {
    ToolTipSearch search{tool, nullptr};
    EnumThreadWindows(GetCurrentThreadId(), CheckToolTip, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string ToolTipText(HWND tip, HWND owner) {
    char text[512] = {};
    TTTOOLINFOA tool{};
    tool.cbSize = TTTOOLINFOA_V1_SIZE;
    tool.hwnd = owner;
    tool.uId = 1;
    tool.lpszText = text;
    SendMessageA(tip, TTM_GETTEXTA, sizeof text, reinterpret_cast<LPARAM>(&tool));
    return text;
}
}  // namespace

TEST_F(GridPainting, ToolTipsCarryOnlyTextsThatDoNotFit) {
    std::string longText(60, 'w');  // wider than the column, short enough to read back
    CellOf<CExtGridCellString>("Title")->SetText(longText);
    POINT title = ValuePoint("Title");
    SendMessageA(RowsHwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(title.x, title.y));
    HWND tip = FindOwnedToolTip(RowsHwnd());
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(ToolTipText(tip, RowsHwnd()), longText);
    POINT count = ValuePoint("Count");
    SendMessageA(RowsHwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(count.x, count.y));
    EXPECT_EQ(ToolTipText(tip, RowsHwnd()), "");
    m_ctrl->EnableToolTips(false);
    EXPECT_EQ(FindOwnedToolTip(RowsHwnd()), nullptr);
    SendMessageA(RowsHwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(title.x, title.y));
    EXPECT_EQ(FindOwnedToolTip(RowsHwnd()), nullptr);
    EXPECT_EQ(FindOwnedToolTip(m_ctrl->GetHwnd()), nullptr);  // nor on the toolbar
}
