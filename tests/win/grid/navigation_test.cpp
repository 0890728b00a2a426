// Moving around the grid: keys, mouse, expanding and collapsing, the two
// orders, the filter, the splitter and the tip bar's subject.
#include "grid_fixture.h"

using Names = std::vector<std::string>;

class GridNavigation : public GridFixture {};

TEST_F(GridNavigation, ArrowsPagesHomeAndEndMoveTheFocus) {
    Rows().FocusSet(0);
    // Down at the last row and Up at the first stay; the whole store fits in one page.
    const std::pair<WPARAM, int> steps[] = {{VK_DOWN, 1}, {VK_END, 8},  {VK_DOWN, 8}, {VK_HOME, 0},
                                            {VK_UP, 0},   {VK_NEXT, 8}, {VK_PRIOR, 0}};
    for (const auto& [key, row] : steps) {
        Key(key);
        EXPECT_EQ(Rows().FocusGet(), row) << "after key " << key;
    }
}

TEST_F(GridNavigation, PageKeysMoveByAPageWhenTheRowsDoNotFit) {
    SetWindowPos(m_ctrl->GetHwnd(), nullptr, 0, 0, 400, 180, SWP_NOZORDER | SWP_NOMOVE);
    int page = Rows().VisibleRowCount();
    ASSERT_LT(page, 8);
    Rows().FocusSet(0);
    Key(VK_NEXT);
    EXPECT_EQ(Rows().FocusGet(), page - 1);
    Key(VK_END);
    EXPECT_GT(Rows().GetTopRow(), 0);  // scrolled so that the focus row shows
    EXPECT_GE(8, Rows().GetTopRow() + page - 1);
}

TEST_F(GridNavigation, PlusMinusAndArrowsExpandAndCollapseCategories) {
    Rows().FocusSet(0);
    Key(VK_SUBTRACT);
    Char('-');  // the key's character must not edit anything
    EXPECT_EQ(RowNames(), (Names{"Look", "Behavior", "Enabled", "Count", "Path"}));
    Key(VK_ADD);
    Char('+');
    EXPECT_EQ(Rows().RowCount(), 9);
    Key(VK_LEFT);
    EXPECT_EQ(Rows().RowCount(), 5);
    Key(VK_RIGHT);
    EXPECT_EQ(Rows().RowCount(), 9);
    Key(VK_RIGHT);  // already open: go to the first child
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Title");
    Key(VK_LEFT);  // a value goes back to its category
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Look");
}

TEST_F(GridNavigation, CollapsingMovesTheFocusFromAHiddenRowToItsCategory) {
    Focus("Size");
    Rows().Expand(0, false);
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Look");
    Rows().Expand(0, true);
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Look");
}

TEST_F(GridNavigation, MouseSelectsRowsAndTogglesCategories) {
    ClickAt(ValuePoint("Count"));
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Count");
    RECT category;
    Rows().GetRowRect(RowOf("Behavior"), &category);
    ClickAt({category.left + 5, (category.top + category.bottom) / 2});  // the expander in the gutter
    EXPECT_EQ(RowNames(), (Names{"Look", "Title", "Color", "Size", "Align", "Behavior"}));
    ClickAt({category.left + 60, (category.top + category.bottom) / 2}, true);  // double click on its name
    EXPECT_EQ(Rows().RowCount(), 9);
}

TEST_F(GridNavigation, AlphabeticalOrderSortsValuesWithoutCategoriesAndKeepsTheFocus) {
    Focus("Path");
    m_ctrl->SetSorted(true);
    EXPECT_EQ(RowNames(), (Names{"Align", "Color", "Count", "Enabled", "Path", "Size", "Title"}));
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Path");
    m_ctrl->SetSorted(false);
    EXPECT_EQ(Rows().RowCount(), 9);
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Path");
}

TEST_F(GridNavigation, ToolbarButtonsSwitchTheOrder) {
    auto press = [&](int button) {
        RECT r = m_ctrl->GetToolbarButtonRect(button);
        LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
        SendMessageA(m_ctrl->GetHwnd(), WM_LBUTTONDOWN, MK_LBUTTON, at);
        SendMessageA(m_ctrl->GetHwnd(), WM_LBUTTONUP, 0, at);
    };
    press(1);
    EXPECT_TRUE(m_ctrl->IsSorted());
    press(0);
    EXPECT_FALSE(m_ctrl->IsSorted());
    press(2);
    EXPECT_TRUE(m_ctrl->IsFilterShown());
    EXPECT_TRUE(GetWindowLongA(m_ctrl->GetFilterHwnd(), GWL_STYLE) & WS_VISIBLE);
}

TEST_F(GridNavigation, TypingInTheFilterBoxFiltersAndEscOrClosingClearsIt) {
    m_ctrl->ShowFilter(true);
    HWND filter = m_ctrl->GetFilterHwnd();
    for (char c : std::string("ena")) Char(c, filter);
    EXPECT_EQ(RowNames(), (Names{"Behavior", "Enabled"}));
    Key(VK_ESCAPE, filter);
    EXPECT_EQ(Rows().RowCount(), 9);
    EXPECT_TRUE(m_ctrl->IsFilterShown());
    m_ctrl->SetFilterText("path");  // closing the box clears the filter too
    m_ctrl->ShowFilter(false);
    EXPECT_EQ(Rows().GetFilter(), "");
}

TEST_F(GridNavigation, SplitterMovesWithinTheWindow) {
    int before = Rows().SplitterGet();
    Rows().SplitterSet(before + 40);  // kept as a share of the width, so within a pixel
    EXPECT_EQ(Rows().SplitterGet(), before + 40);
    RECT value = Rows().GetValueRect(1);
    EXPECT_EQ(value.left, before + 41);
    Rows().SplitterSet(-500);  // never off the window
    EXPECT_GT(Rows().SplitterGet(), 0);
    Rows().SplitterSet(5000);
    RECT client;
    GetClientRect(RowsHwnd(), &client);
    EXPECT_LT(Rows().SplitterGet(), client.right);
}

TEST_F(GridNavigation, AnEmptyOrMissingStoreShowsNoRows) {
    CExtPropertyStore empty("Empty");
    m_ctrl->PropertyStoreSet(&empty);
    EXPECT_EQ(Rows().RowCount(), 0);
    Key(VK_DOWN);
    Key(VK_RETURN);
    Char('x');
    EXPECT_EQ(Rows().FocusGet(), -1);
    m_ctrl->PropertyStoreSet(nullptr);
    EXPECT_EQ(Rows().RowCount(), 0);
    UpdateWindow(RowsHwnd());
}

TEST_F(GridNavigation, TheComboBarChoosesTheStore) {
    CExtPropertyStore other("Other");
    auto* category = new CExtPropertyCategory("Only");
    other.ItemInsert(category);
    category->ItemInsert(new CExtPropertyValue("One"));
    CExtPropertyGridComboBoxBar& bar = m_ctrl->GetComboBar();
    EXPECT_EQ(bar.PropertyStoreInsert(&other), 1);
    SendMessageA(bar.GetHwnd(), CB_SETCURSEL, 1, 0);
    m_ctrl->PropertyStoreSynchronize();
    EXPECT_EQ(RowNames(), (Names{"Only", "One"}));
    EXPECT_EQ(m_ctrl->PropertyStoreGet(), &other);
    EXPECT_FALSE(bar.IsShown());
    SendMessageA(bar.GetHwnd(), CB_SETCURSEL, 0, 0);
    m_ctrl->PropertyStoreSynchronize();
    bar.PropertyStoreRemoveAll();
}

TEST_F(GridNavigation, TheSplitterIsDraggedAndADoubleClickFitsItToTheNames) {
    Rows().SplitterSet(300);
    int split = Rows().SplitterGet();
    RECT row;
    Rows().GetRowRect(RowOf("Title"), &row);
    int y = (row.top + row.bottom) / 2;
    SendMessageA(RowsHwnd(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(split, y));
    SendMessageA(RowsHwnd(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(split - 30, y));
    SendMessageA(RowsHwnd(), WM_LBUTTONUP, 0, MAKELPARAM(split - 30, y));
    EXPECT_NEAR(Rows().SplitterGet(), split - 30, 1);
    LPARAM at = MAKELPARAM(Rows().SplitterGet(), y);
    SendMessageA(RowsHwnd(), WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    SendMessageA(RowsHwnd(), WM_LBUTTONUP, 0, at);
    int fitted = Rows().SplitterGet();
    EXPECT_LT(fitted, 150);  // the names here are short
    EXPECT_GT(fitted, 40);
}
