// The grid inside a dialog, keys passing through the dialog manager the way a
// modal dialog's loop passes them: Enter and Esc belong to an open editor,
// not to the dialog's OK and Cancel buttons.
#include "grid_fixture.h"

namespace {

std::vector<int> g_commands;

INT_PTR CALLBACK DialogProc(HWND, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) return TRUE;
    if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
        g_commands.push_back(LOWORD(wParam));
        return TRUE;
    }
    return FALSE;
}

// The dialog template of dialog_test.rc.
const int kDialogId = 101;

}  // namespace

class GridInDialog : public GridFixture {
protected:
    void SetUp() override {
        GridFixture::SetUp();
        g_commands.clear();
        m_dialog = CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(kDialogId), nullptr, DialogProc, 0);
        ASSERT_NE(m_dialog, nullptr);
        m_dialogGrid = std::make_unique<RecordingGridCtrl>();
        ASSERT_TRUE(m_dialogGrid->CreateInPlaceOf(m_dialog, 1001));
        m_dialogGrid->GetComboBar().PropertyStoreInsert(m_store.get());
        SendMessageA(m_dialogGrid->GetComboBar().GetHwnd(), CB_SETCURSEL, 0, 0);
        m_dialogGrid->GetComboBar().Show(false);
        m_dialogGrid->PropertyStoreSynchronize();
        m_dialogGrid->EnableToolTips(false);
        SetFocus(m_dialogGrid->GetGrid().GetHwnd());
    }
    void TearDown() override {
        if (m_dialog) DestroyWindow(m_dialog);
        m_dialogGrid.reset();
        GridFixture::TearDown();
    }
    // Passes a key the way a dialog's message loop does; true when the grid
    // took it before the dialog manager.
    bool DialogKey(HWND target, WPARAM key) {
        MSG msg{target, WM_KEYDOWN, key, 1, 0, {}};
        bool taken = CExtPropertyGridCtrl::PreTranslateGridMessage(&msg);
        if (!taken && !IsDialogMessageA(m_dialog, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        PumpMessages();
        return taken;
    }
    CExtPropertyGridWnd& DialogRows() { return m_dialogGrid->GetGrid(); }

    HWND m_dialog = nullptr;
    std::unique_ptr<RecordingGridCtrl> m_dialogGrid;
};

TEST_F(GridInDialog, EnterOnARowEditsAndEnterInTheEditorCommitsWithoutOk) {
    DialogRows().FocusSet(1);  // Title
    DialogKey(DialogRows().GetHwnd(), VK_RETURN);
    ASSERT_TRUE(DialogRows().IsEditing());
    SetWindowTextA(DialogRows().EditorHwnd(), "Typed");
    DialogKey(DialogRows().EditorHwnd(), VK_RETURN);
    EXPECT_FALSE(DialogRows().IsEditing());
    EXPECT_EQ(Value("Title")->ValueActiveGet()->GetText(), "Typed");
    EXPECT_TRUE(g_commands.empty());
    ASSERT_EQ(m_dialogGrid->hooks.size(), 1u);
    EXPECT_EQ(m_dialogGrid->hooks[0].code, PGN_INPUTCOMPLETE);
}

TEST_F(GridInDialog, EscInTheEditorCancelsTheEditNotTheDialog) {
    DialogRows().FocusSet(1);
    DialogRows().BeginEdit();
    ASSERT_TRUE(DialogRows().IsEditing());
    DialogKey(DialogRows().EditorHwnd(), VK_ESCAPE);
    EXPECT_FALSE(DialogRows().IsEditing());
    EXPECT_TRUE(g_commands.empty());
    DialogKey(DialogRows().GetHwnd(), VK_ESCAPE);  // no editor: the dialog hears it
    EXPECT_EQ(g_commands, (std::vector<int>{IDCANCEL}));
}

TEST_F(GridInDialog, DeleteInTheEditorDeletesTextBeforeTheOwnersAcceleratorsSeeIt) {
    DialogRows().FocusSet(1);
    DialogRows().BeginEdit();
    HWND editor = DialogRows().EditorHwnd();
    SendMessageA(editor, EM_SETSEL, 0, 0);
    EXPECT_TRUE(DialogKey(editor, VK_DELETE));
    EXPECT_EQ(WindowText(editor), "ello");
    // Other keys, and Delete outside the grid, are left to the dialog and the owner.
    MSG other{editor, WM_KEYDOWN, 'A', 1, 0, {}}, outside{m_dialog, WM_KEYDOWN, VK_DELETE, 1, 0, {}};
    EXPECT_FALSE(CExtPropertyGridCtrl::PreTranslateGridMessage(&other));
    EXPECT_FALSE(CExtPropertyGridCtrl::PreTranslateGridMessage(&outside));
}

TEST_F(GridInDialog, TabLeavesTheRowsWhenNotEditing) {
    DialogRows().FocusSet(1);
    DialogKey(DialogRows().GetHwnd(), VK_TAB);
    EXPECT_NE(GetFocus(), DialogRows().GetHwnd());
    EXPECT_FALSE(DialogRows().IsEditing());
}
