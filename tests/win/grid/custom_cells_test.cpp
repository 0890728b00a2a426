// Cells written outside the toolkit against its hooks, the way an owner adds
// its own: a link cell with its own button dialog, a list cell that paints a
// hint instead of its value, a combo that behaves as a plain cell, and a
// bounded spin cell with its own archive data.
#include "grid_fixture.h"

#include "grid/grid_archive.h"
#include "grid/paint_manager.h"

namespace {

class TestLinkCell : public CExtGridCellFile {
    PWGRID_DECLARE_CELL(TestLinkCell)
public:
    explicit TestLinkCell(CExtGridAllocator* allocator = nullptr) : CExtGridCellFile(allocator) {}
    const void* site = nullptr;        // not owned
    static std::string s_dialogAnswer; // empty: the dialog is cancelled

    void Assign(const CExtGridCell& other) override {
        CExtGridCellFile::Assign(other);
        site = other.IsKindOf(kClass) ? static_cast<const TestLinkCell&>(other).site : nullptr;
    }
    void OnButtonClick(const CExtGridCellContext& context, int index) override {
        if (index != 0) return CExtGridCellFile::OnButtonClick(context, index);
        if (s_dialogAnswer.empty()) return;
        SetText(s_dialogAnswer);
        int row = context.grid->FocusGet(), column = context.grid->FocusColumnGet();
        context.grid->RefreshCellExtents();
        if (row >= 0 && column >= 0) context.grid->FocusSet(row, column);
        context.InputComplete();
    }
};
std::string TestLinkCell::s_dialogAnswer;
PWGRID_IMPLEMENT_CELL(TestLinkCell, CExtGridCellFile)

class TestImagesCell : public CExtGridCellFile {
    PWGRID_DECLARE_CELL(TestImagesCell)
public:
    explicit TestImagesCell(CExtGridAllocator* allocator = nullptr) : CExtGridCellFile(allocator) {}
    std::string list;   // kept apart from the text, never painted

    void Serialize(CExtGridArchive& ar) override {
        CExtGridCellFile::Serialize(ar);
        ar.Exchange(list);
    }
    void OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const override {
        if (!IsTextRectVisible(pc, textRect)) return;
        HGDIOBJ oldFont = SelectObject(pc.dc, pc.font);
        COLORREF oldColor = SetTextColor(pc.dc, RGB(192, 192, 192));
        RECT r = textRect;
        DrawTextA(pc.dc, "Click to add/remove files", -1, &r, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
        // A block of the hint's colour, easy to find in a test.
        RECT mark{textRect.right - 12, textRect.top + 2, textRect.right - 2, textRect.bottom - 2};
        CExtGridPaintManager::FillSolid(pc.dc, mark, RGB(192, 192, 192));
        SetTextColor(pc.dc, oldColor);
        SelectObject(pc.dc, oldFont);
    }
};
PWGRID_IMPLEMENT_CELL(TestImagesCell, CExtGridCellFile)

class TestPlainCombo : public CExtGridCellComboBox {
    PWGRID_DECLARE_CELL(TestPlainCombo)
public:
    explicit TestPlainCombo(CExtGridAllocator* allocator = nullptr) : CExtGridCellComboBox(allocator) {}
    // Edited like a plain text cell: no drop-down button.
    int GetButtonCount() const override { return 0; }
    EditorKind GetEditorKind() const override { return EditorKind::Text; }
};
PWGRID_IMPLEMENT_CELL(TestPlainCombo, CExtGridCellComboBox)

class TestRangeCell : public CExtGridCellUpDown {
    PWGRID_DECLARE_CELL(TestRangeCell)
public:
    explicit TestRangeCell(CExtGridAllocator* allocator = nullptr) : CExtGridCellUpDown(allocator) {}
    std::int32_t lower = 0, upper = 99;

    void Assign(const CExtGridCell& other) override {
        CExtGridCellUpDown::Assign(other);
        if (!other.IsKindOf(kClass)) return;
        lower = static_cast<const TestRangeCell&>(other).lower;
        upper = static_cast<const TestRangeCell&>(other).upper;
    }
    void Serialize(CExtGridArchive& ar) override {
        CExtGridCellUpDown::Serialize(ar);
        ar.Exchange(lower);
        ar.Exchange(upper);
    }
    bool CanStepUp() const override { return GetInt32() < upper; }
    bool CanStepDown() const override { return GetInt32() > lower; }
};
PWGRID_IMPLEMENT_CELL(TestRangeCell, CExtGridCellUpDown)

}  // namespace

class GridCustomCells : public GridFixture {
protected:
    void SetUp() override {
        GridFixture::SetUp();
        TestLinkCell::s_dialogAnswer.clear();
        auto* own = new CExtPropertyCategory("Own");
        m_store->ItemInsert(own);
        for (const char* cls : {"TestLinkCell", "TestImagesCell", "TestPlainCombo", "TestRangeCell"}) {
            auto* value = new CExtPropertyValue(cls + 4);   // "LinkCell", ...
            own->ItemInsert(value);
            ASSERT_NE(value->ValueActiveGetByClassName(cls), nullptr) << cls;
        }
        m_ctrl->PropertyStoreSynchronize();
    }
};

TEST_F(GridCustomCells, OwnCellsAreCreatedAndClonedByTheirOwnClass) {
    auto* link = CellOf<TestLinkCell>("LinkCell");
    int marker = 0;
    link->site = &marker;
    link->SetText("page.html");
    std::unique_ptr<CExtGridCell> clone(link->Clone(nullptr));
    ASSERT_EQ(&clone->GetCellClass(), &TestLinkCell::kClass);
    EXPECT_EQ(static_cast<TestLinkCell*>(clone.get())->site, &marker);
    EXPECT_EQ(clone->GetText(), "page.html");
    std::unique_ptr<CExtGridCell> plain(CExtGridCellClass::CreateCell("CExtGridCellFile"));
    clone->Assign(*plain);                           // another class: no site
    EXPECT_EQ(static_cast<TestLinkCell*>(clone.get())->site, nullptr);
}

TEST_F(GridCustomCells, ButtonHandlerRestoresTheFocusAndCompletesInput) {
    Focus("LinkCell");
    int row = Rows().FocusGet();
    Rows().ClickButton(0);                           // cancelled: nothing at all
    EXPECT_TRUE(m_ctrl->hooks.empty());
    TestLinkCell::s_dialogAnswer = "http://example.org/";
    RECT button = Rows().GetButtonRect(row, 0);
    ClickAt({(button.left + button.right) / 2, (button.top + button.bottom) / 2});
    EXPECT_EQ(Rows().FocusGet(), row);
    ASSERT_EQ(m_ctrl->hooks.size(), 1u);
    EXPECT_EQ(m_ctrl->hooks[0].code, PGN_INPUTCOMPLETE);
    EXPECT_EQ(m_ctrl->hooks[0].text, "http://example.org/");
}

TEST_F(GridCustomCells, TextPainterReplacesTheValue) {
    auto* images = CellOf<TestImagesCell>("ImagesCell");
    images->SetText("<GALLERY/>");
    RECT value = Rows().GetValueRect(RowOf("ImagesCell"));
    RECT client;
    GetClientRect(RowsHwnd(), &client);
    HDC screen = GetDC(nullptr);
    HDC mem = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, client.right, client.bottom);
    HGDIOBJ old = SelectObject(mem, bitmap);
    SendMessageA(RowsHwnd(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(mem), PRF_CLIENT);
    COLORREF mark = GetPixel(mem, value.right - 7, (value.top + value.bottom) / 2);
    SelectObject(mem, old);
    DeleteObject(bitmap);
    DeleteDC(mem);
    ReleaseDC(nullptr, screen);
    EXPECT_EQ(mark, RGB(192, 192, 192));
}

TEST_F(GridCustomCells, OwnArchiveDataFollowsTheBasePart) {
    auto* images = CellOf<TestImagesCell>("ImagesCell");
    images->SetText("shown");
    images->list = "<GALLERY><IMAGE/></GALLERY>";
    CExtGridArchive out;
    images->Serialize(out);
    CExtGridArchive in(out.Bytes());
    TestImagesCell copy;
    copy.Serialize(in);
    EXPECT_EQ(copy.GetText(), "shown");
    EXPECT_EQ(copy.list, images->list);
    EXPECT_TRUE(in.AtEnd());

    auto* range = CellOf<TestRangeCell>("RangeCell");
    range->lower = -5;
    range->upper = 5;
    range->SetInt32(3);
    CExtGridArchive out2;
    range->Serialize(out2);
    CExtGridArchive in2(out2.Bytes());
    TestRangeCell copy2;
    copy2.Serialize(in2);
    EXPECT_EQ(copy2.lower, -5);
    EXPECT_EQ(copy2.upper, 5);
    EXPECT_EQ(copy2.GetInt32(), 3);
}

TEST_F(GridCustomCells, BoundedSpinStopsAtItsBoundsWhenStepped) {
    auto* range = CellOf<TestRangeCell>("RangeCell");
    range->SetInt32(99);
    Focus("RangeCell");
    Rows().ClickButton(0);
    EXPECT_EQ(range->GetInt32(), 99);
    range->SetInt32(0);
    Rows().ClickButton(1);
    EXPECT_EQ(range->GetInt32(), 0);
    Rows().ClickButton(0);
    EXPECT_EQ(range->GetInt32(), 1);
    ASSERT_EQ(m_ctrl->hooks.size(), 1u);
    EXPECT_EQ(m_ctrl->hooks[0].code, PGN_VALUEAPPLIED);
}

TEST_F(GridCustomCells, AComboCanBehaveAsAPlainCell) {
    auto* combo = CellOf<TestPlainCombo>("PlainCombo");
    combo->AddString("Arial");
    Focus("PlainCombo");
    Key(VK_F2);
    ASSERT_TRUE(Rows().IsEditing());
    char name[32] = {};
    GetClassNameA(Rows().EditorHwnd(), name, sizeof name);
    EXPECT_STREQ(name, "Edit");
    EXPECT_EQ(GetParent(Rows().EditorHwnd()), RowsHwnd());   // no combo box around it
    SetWindowTextA(Rows().EditorHwnd(), "Arial");
    Key(VK_RETURN, Rows().EditorHwnd());
    EXPECT_EQ(combo->GetCurSel(), 0);
    EXPECT_EQ(combo->GetSelectedText(), "Arial");
}

TEST_F(GridCustomCells, ChangesCanBeTracedUpToTheCategory) {
    // An owner offers the changed item and then its ancestors while they are values.
    auto* parent = Value("Title");
    auto* child = new CExtPropertyValue("Part");
    parent->ItemInsert(child);
    child->ValueActiveGetByRTC<CExtGridCellString>()->SetText("x");
    m_ctrl->PropertyStoreSynchronize();
    std::vector<std::string> offered;
    for (CExtPropertyItem* item = child; item && item->IsValue(); item = item->ItemParentGet())
        offered.push_back(item->NameGet() + "@" + item->ItemParentGet()->NameGet());
    EXPECT_EQ(offered, (std::vector<std::string>{"Part@Title", "Title@Look"}));
    EXPECT_EQ(RowOf("Part"), RowOf("Title") + 1);    // child values show under their parent
}
