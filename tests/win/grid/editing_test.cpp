// Editing every kind of cell in place and the notifications that follow:
// each change reaches the control's hook and the parent's WM_NOTIFY once;
// refused and cancelled edits reach neither.
#include "grid_fixture.h"

#include <algorithm>
#include <functional>

#include "grid/color_popup.h"
#include "test_pictures.h"

namespace {
// A file cell whose dialog answers at once.
class ScriptedFileCell : public CExtGridCellFile {
public:
    bool confirm = true;
    std::string answer;

protected:
    bool RunBrowseDialog(HWND, std::string* path) override {
        if (confirm) *path = answer;
        return confirm;
    }
};

class ScriptedColorCell : public CExtGridCellColor {
public:
    COLORREF answer = RGB(1, 2, 3);

protected:
    bool RunColorDialog(HWND, COLORREF* color) override {
        *color = answer;
        return true;
    }
};
}  // namespace

class GridEditing : public GridFixture {
protected:
    void ExpectOneEvent(UINT code, const std::string& name, const std::string& text) {
        ASSERT_EQ(m_ctrl->hooks.size(), 1u);
        EXPECT_EQ(m_ctrl->hooks[0].code, code);
        EXPECT_EQ(m_ctrl->hooks[0].name, name);
        EXPECT_EQ(m_ctrl->hooks[0].text, text);
        ASSERT_EQ(ParentEvents().size(), 1u);
        EXPECT_EQ(ParentEvents()[0].code, code);
        EXPECT_EQ(ParentEvents()[0].name, name);
    }
    // Types text over the open editor's and presses Enter.
    void Enter(const char* text) {
        SetWindowTextA(Rows().EditorHwnd(), text);
        Key(VK_RETURN, Rows().EditorHwnd());
    }
    void ExpectNoEvents() {
        EXPECT_TRUE(m_ctrl->hooks.empty());
        EXPECT_TRUE(ParentEvents().empty());
    }
};

TEST_F(GridEditing, EscCancelsAnUnchangedTextRaisesNothingAndF2EnterCompletesInput) {
    Focus("Title");
    Key(VK_RETURN);
    ASSERT_TRUE(Rows().IsEditing());
    EXPECT_EQ(WindowText(Rows().EditorHwnd()), "Hello");
    SetWindowTextA(Rows().EditorHwnd(), "Changed");
    Key(VK_ESCAPE, Rows().EditorHwnd());
    EXPECT_FALSE(Rows().IsEditing());
    EXPECT_EQ(CellOf<CExtGridCellString>("Title")->GetText(), "Hello");
    Key(VK_F2);
    Key(VK_RETURN, Rows().EditorHwnd());
    ExpectNoEvents();
    EXPECT_FALSE(Value("Title")->IsModified());
    Key(VK_F2);
    Enter("World");
    EXPECT_FALSE(Rows().IsEditing());
    EXPECT_EQ(CellOf<CExtGridCellString>("Title")->GetText(), "World");
    ExpectOneEvent(PGN_INPUTCOMPLETE, "Title", "World");
    EXPECT_TRUE(Value("Title")->IsModified());  // painted bold from now on
}

TEST_F(GridEditing, TypingOrDeleteStartsAnEditThatKeepsEveryCharacter) {
    struct Case {
        const char* row;
        WPARAM key;  // or 0 to type ch
        char ch;
        const char* started;  // the editor's text at once; one more '2' is typed
        const char* stored;
    };
    for (const Case& c : {Case{"Title", 0, 'Q', "Q", "Q2"}, Case{"Title", VK_DELETE, 0, "", "2"},
                          Case{"Size", 0, '1', "1", "12"}}) {
        Focus(c.row);
        m_ctrl->hooks.clear();
        ParentEvents().clear();
        if (c.key) {
            Key(c.key);
        } else {
            Char(c.ch);
        }
        ASSERT_TRUE(Rows().IsEditing()) << c.row;
        EXPECT_EQ(WindowText(Rows().EditorHwnd()), c.started);
        Char('2', Rows().EditorHwnd());
        Key(VK_RETURN, Rows().EditorHwnd());
        ExpectOneEvent(PGN_INPUTCOMPLETE, c.row, c.stored);
    }
}

TEST_F(GridEditing, BooleanTogglesBySpaceDoubleClickAndItsBox) {
    Focus("Enabled");
    Char(' ');
    EXPECT_TRUE(CellOf<CExtGridCellBool>("Enabled")->GetChecked());
    ExpectOneEvent(PGN_VALUEAPPLIED, "Enabled", "true");
    ClickAt(ValuePoint("Enabled", 10));  // on the box
    EXPECT_FALSE(CellOf<CExtGridCellBool>("Enabled")->GetChecked());
    ClickAt(ValuePoint("Enabled", 150));  // beside it: selects only
    EXPECT_FALSE(CellOf<CExtGridCellBool>("Enabled")->GetChecked());
    RECT row;
    Rows().GetRowRect(RowOf("Enabled"), &row);
    ClickAt({40, (row.top + row.bottom) / 2}, true);  // double click on the name
    EXPECT_TRUE(CellOf<CExtGridCellBool>("Enabled")->GetChecked());
    EXPECT_EQ(m_ctrl->hooks.size(), 3u);
    EXPECT_EQ(ParentEvents().size(), 3u);
}

TEST_F(GridEditing, TabOrAClickOnAnotherRowCommitsTheEdit) {
    Focus("Title");
    Key(VK_F2);
    SetWindowTextA(Rows().EditorHwnd(), "T");
    Key(VK_TAB, Rows().EditorHwnd());
    EXPECT_EQ(CellOf<CExtGridCellString>("Title")->GetText(), "T");
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Color");  // the next editable value, edited
    ASSERT_TRUE(Rows().IsEditing());
    SetWindowTextA(Rows().EditorHwnd(), "#102030");
    ClickAt(ValuePoint("Enabled", 200));
    EXPECT_FALSE(Rows().IsEditing());
    EXPECT_EQ(CellOf<CExtGridCellColor>("Color")->GetColor(), RGB(0x10, 0x20, 0x30));
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Enabled");
}

TEST_F(GridEditing, ListBoundComboRefusesTextThatIsNoEntryAndDropsItWhenLeft) {
    Focus("Size");
    Key(VK_F2);
    ASSERT_TRUE(Rows().IsEditing());
    Enter("13");
    EXPECT_TRUE(Rows().IsEditing());  // refused: the editor stays
    EXPECT_EQ(CellOf<CExtGridCellComboBox>("Size")->GetText(), "10");
    Enter("12");
    EXPECT_FALSE(Rows().IsEditing());
    EXPECT_EQ(CellOf<CExtGridCellComboBox>("Size")->GetCurSel(), 2);
    ExpectOneEvent(PGN_INPUTCOMPLETE, "Size", "12");
    // Refused text is dropped when the focus leaves.
    Key(VK_F2);
    SetWindowTextA(Rows().EditorHwnd(), "nonsense");
    Focus("Title");
    EXPECT_FALSE(Rows().IsEditing());
    EXPECT_EQ(CellOf<CExtGridCellComboBox>("Size")->GetText(), "12");
    EXPECT_EQ(m_ctrl->hooks.size(), 1u);
}

TEST_F(GridEditing, TypingOnADropListPicksTheNextEntryWithThatLetter) {
    Focus("Align");
    Char('r');
    EXPECT_EQ(CellOf<CExtGridCellDropListComboBox>("Align")->GetText(), "Right");
    Char('c');
    EXPECT_EQ(CellOf<CExtGridCellDropListComboBox>("Align")->GetText(), "Center");
    Char('z');  // no entry: nothing changes
    EXPECT_EQ(CellOf<CExtGridCellDropListComboBox>("Align")->GetText(), "Center");
    EXPECT_EQ(m_ctrl->hooks.size(), 2u);
}

TEST_F(GridEditing, ColourPopupByKeyboard) {
    struct Case {
        bool automatic;  // the "Automatic" entry (10, 20, 30) above the palette
        std::vector<WPARAM> keys;
        COLORREF chosen;
        const char* event;  // the applied text, or null for none (cancelled or unchanged)
    };
    const COLORREF picked = CExtColorPopup::Palette()[1 + 8];
    const std::string pickedText = FormatColorText(picked);
    const Case cases[] = {
        {false, {VK_RIGHT, VK_RIGHT, VK_DOWN, VK_RETURN}, picked, pickedText.c_str()},
        {false, {VK_RIGHT, VK_ESCAPE}, RGB(0, 0, 0), nullptr},
        // Five rows down from the first swatch: "More colors..." opens the dialog.
        {false, {VK_RIGHT, VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}, RGB(1, 2, 3), "#010203"},
        {true, {VK_RIGHT, VK_UP, VK_RETURN}, RGB(10, 20, 30), "#0A141E"},
        {false, {VK_RIGHT, VK_UP, VK_RETURN}, RGB(0, 0, 0), nullptr},  // Up stays in the palette: black again
    };
    for (const Case& c : cases) {
        auto* cell = new ScriptedColorCell();
        cell->SetColor(RGB(0, 0, 0));
        cell->EnableAutomatic(c.automatic, RGB(10, 20, 30));
        Value("Color")->ValueActiveSet(cell);
        Focus("Color");
        m_ctrl->hooks.clear();
        ParentEvents().clear();
        for (WPARAM key : c.keys) PostMessageA(RowsHwnd(), WM_KEYDOWN, key, 1);
        Rows().ClickButton(0);  // returns when the popup closes
        EXPECT_EQ(cell->GetColor(), c.chosen);
        if (c.automatic) {
            EXPECT_EQ(cell->GetDisplayText(), "Automatic");
        }
        if (c.event) {
            ExpectOneEvent(PGN_VALUEAPPLIED, "Color", c.event);
        } else {
            ExpectNoEvents();
        }
        EXPECT_EQ(CExtColorPopup::ActiveWindow(), nullptr);
    }
}

TEST_F(GridEditing, FileButtonCompletesInputOnlyWhenTheDialogIsConfirmed) {
    auto* cell = new ScriptedFileCell();
    cell->SetText("C:\\a.txt");
    cell->answer = "C:\\b.txt";
    Value("Path")->ValueActiveSet(cell);
    Focus("Path");
    cell->confirm = false;
    Rows().ClickButton(0);
    ExpectNoEvents();
    cell->confirm = true;
    RECT button = Rows().GetButtonRect(RowOf("Path"), 0);
    ClickAt({(button.left + button.right) / 2, (button.top + button.bottom) / 2});
    EXPECT_EQ(cell->GetText(), "C:\\b.txt");
    ExpectOneEvent(PGN_INPUTCOMPLETE, "Path", "C:\\b.txt");
}

TEST_F(GridEditing, UpDownStepsByButtonsAndArrowsAndRespectsItsHooks) {
    class Bounded : public CExtGridCellUpDown {
    public:
        bool CanStepUp() const override { return GetInt32() < 6; }
        bool CanStepDown() const override { return GetInt32() > 4; }
    };
    auto* cell = new Bounded();
    cell->SetInt32(5);
    Value("Count")->ValueActiveSet(cell);
    Focus("Count");
    RECT up = Rows().GetButtonRect(RowOf("Count"), 0);
    ClickAt({(up.left + up.right) / 2, (up.top + up.bottom) / 2});
    EXPECT_EQ(cell->GetInt32(), 6);
    ClickAt({(up.left + up.right) / 2, (up.top + up.bottom) / 2});  // at the bound: nothing
    EXPECT_EQ(cell->GetInt32(), 6);
    ExpectOneEvent(PGN_VALUEAPPLIED, "Count", "6");
    Key(VK_F2);
    ASSERT_TRUE(Rows().IsEditing());
    Key(VK_DOWN, Rows().EditorHwnd());
    Key(VK_DOWN, Rows().EditorHwnd());
    EXPECT_EQ(cell->GetInt32(), 4);
    EXPECT_EQ(WindowText(Rows().EditorHwnd()), "4");
    Key(VK_ESCAPE, Rows().EditorHwnd());
}

class GridEditingMoreKinds : public GridEditing {
protected:
    void SetUp() override {
        GridEditing::SetUp();
        auto* more = new CExtPropertyCategory("More");
        m_store->ItemInsert(more);
        auto add = [&](const char* name) {
            auto* value = new CExtPropertyValue(name);
            more->ItemInsert(value);
            return value;
        };
        add("Secret")->ValueActiveGetByRTC<CExtGridCellPassword>()->SetText("pw");
        add("Heading")->ValueActiveGetByRTC<CExtGridCellHeader>()->SetText("Fixed");
        add("Face")->ValueActiveGetByRTC<CExtGridCellFontName>();
        m_ctrl->PropertyStoreSynchronize();
    }
};

TEST_F(GridEditingMoreKinds, ReadOnlyCellsAndHeadingsDoNotEdit) {
    CellOf<CExtGridCellString>("Title")->SetReadOnly(true);
    for (const auto& [row, text] : {std::pair<const char*, const char*>{"Title", "Hello"}, {"Heading", "Fixed"}}) {
        Focus(row);
        Key(VK_F2);
        Key(VK_RETURN);
        Char('x');
        Key(VK_DELETE);
        EXPECT_FALSE(Rows().IsEditing()) << row;
        EXPECT_EQ(Value(row)->ValueActiveGet()->GetText(), text);
    }
    ExpectNoEvents();
}

TEST_F(GridEditingMoreKinds, PasswordsAreEditedHidden) {
    Focus("Secret");
    EXPECT_EQ(CellOf<CExtGridCellPassword>("Secret")->GetDisplayText(), "**");
    Key(VK_F2);
    ASSERT_TRUE(Rows().IsEditing());
    EXPECT_TRUE(GetWindowLongA(Rows().EditorHwnd(), GWL_STYLE) & ES_PASSWORD);
    Enter("new one");
    EXPECT_EQ(CellOf<CExtGridCellPassword>("Secret")->GetText(), "new one");
    ExpectOneEvent(PGN_INPUTCOMPLETE, "Secret", "new one");
}

TEST_F(GridEditingMoreKinds, FontNamesListInstalledFacesSortedWithoutVerticalOnes) {
    auto* cell = CellOf<CExtGridCellFontName>("Face");
    std::vector<std::string> faces = cell->GetListEntries();
    ASSERT_FALSE(faces.empty());
    EXPECT_TRUE(std::is_sorted(faces.begin(), faces.end(), std::less_equal<>()));  // sorted, once each
    for (const std::string& face : faces) EXPECT_NE(face[0], '@');
    Focus("Face");
    Rows().ClickButton(0);  // the list drops in the in-place combo box
    ASSERT_TRUE(Rows().IsEditing());
    HWND combo = GetParent(Rows().EditorHwnd());
    EXPECT_TRUE(SendMessageA(combo, CB_GETDROPPEDSTATE, 0, 0));
    EXPECT_EQ(SendMessageA(combo, CB_GETCOUNT, 0, 0), static_cast<LRESULT>(faces.size()));
    EXPECT_TRUE(GetWindowLongA(combo, GWL_STYLE) & CBS_OWNERDRAWFIXED);  // entries drawn in their face
    // The grid paints a selected entry on the highlight colour.
    test_pictures::Surface surface(200, 20);
    DRAWITEMSTRUCT dis{};
    dis.CtlType = ODT_COMBOBOX;
    dis.itemID = 0;
    dis.itemState = ODS_SELECTED;
    dis.hwndItem = combo;
    dis.hDC = surface.Dc();
    dis.rcItem = {0, 0, 200, 20};
    EXPECT_TRUE(SendMessageA(RowsHwnd(), WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&dis)));
    EXPECT_EQ(GetPixel(surface.Dc(), 198, 10), GetSysColor(COLOR_HIGHLIGHT));
    // Picking a face from the list applies it at once.
    SendMessageA(combo, CB_SETCURSEL, 0, 0);
    SendMessageA(RowsHwnd(), WM_COMMAND, MAKEWPARAM(0, CBN_SELENDOK), reinterpret_cast<LPARAM>(combo));
    EXPECT_EQ(cell->GetText(), faces.front());
    ExpectOneEvent(PGN_VALUEAPPLIED, "Face", faces.front());
    SendMessageA(combo, CB_SHOWDROPDOWN, FALSE, 0);
    Enter(faces.back().c_str());
    EXPECT_EQ(cell->GetText(), faces.back());
}

TEST_F(GridEditing, ResetPutsBackTheFirstValueAndCompletesInput) {
    Focus("Title");
    EXPECT_FALSE(m_ctrl->IsCommandEnabled(CExtPropertyGridCtrl::kCommandReset));  // nothing changed yet
    CellOf<CExtGridCellString>("Title")->SetText("Changed");
    EXPECT_TRUE(m_ctrl->IsCommandEnabled(CExtPropertyGridCtrl::kCommandReset));
    m_ctrl->ExecuteCommand(CExtPropertyGridCtrl::kCommandReset);
    EXPECT_EQ(CellOf<CExtGridCellString>("Title")->GetText(), "Hello");
    EXPECT_FALSE(Value("Title")->IsModified());
    ExpectOneEvent(PGN_INPUTCOMPLETE, "Title", "Hello");
}

TEST_F(GridEditing, RightClickFocusesTheRowTheMenuWillActOn) {
    Focus("Title");
    POINT p = ValuePoint("Count");
    SendMessageA(RowsHwnd(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(p.x, p.y));
    EXPECT_EQ(Rows().FocusItem()->NameGet(), "Count");
    m_ctrl->ExecuteCommand(CExtPropertyGridCtrl::kCommandTipBar);
    EXPECT_FALSE(m_ctrl->IsTipBarShown());
    RECT rows, ctrl;
    GetWindowRect(RowsHwnd(), &rows);
    GetWindowRect(m_ctrl->GetHwnd(), &ctrl);
    EXPECT_GE(rows.bottom, ctrl.bottom - 2);  // the rows take the tip bar's place
}
