// The Properties dialog's own cells: copying, cloning and archiving their
// data, the image-list hint, the bounded spin, and what their buttons do when
// the dialog behind them is cancelled.
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>

#include "grid/cell_file.h"
#include "grid/grid_archive.h"
#include "grid/paint_manager.h"
#include "grid/property_grid_ctrl.h"
#include "ui/cell_font_combo.h"
#include "ui/cell_images.h"
#include "ui/cell_updown_range.h"
#include "ui/cell_url.h"
#include "ui/properties_dialog.h"
#include "xml/xml_document.h"

namespace {

template <class Cell>
std::unique_ptr<Cell> CloneOf(const Cell& cell) {
    CExtGridCell* copy = cell.Clone(nullptr);
    EXPECT_EQ(&copy->GetCellClass(), &Cell::kClass);
    return std::unique_ptr<Cell>(static_cast<Cell*>(copy));
}

template <class Cell>
void RoundTrip(Cell& from, Cell& to, bool* atEnd) {
    CExtGridArchive out;
    from.Serialize(out);
    CExtGridArchive in(out.Bytes());
    to.Serialize(in);
    *atEnd = in.AtEnd() && !in.Failed();
}

TEST(PropertyCells, EachIsCreatedByItsClassName) {
    CXmlDocument definition;
    CPropertiesDialog registersThem(&definition, nullptr);
    for (const char* name : {"CExtGridCellURL", "CExtGridCellImages", "CExtGridCellFontComboBox",
                             "CExtGridCellUpDownRange"}) {
        std::unique_ptr<CExtGridCell> cell(CExtGridCellClass::CreateCell(name));
        ASSERT_NE(cell, nullptr) << name;
        EXPECT_STREQ(cell->GetCellClass().name, name);
    }
}

TEST(PropertyCells, LinkCellCopiesItsSiteOnlyFromItsOwnClass) {
    CXmlDocument site;
    CExtGridCellURL link;
    link.SetText("index.html");
    link.SetSiteStructure(&site);
    auto clone = CloneOf(link);
    EXPECT_EQ(clone->GetText(), "index.html");
    EXPECT_EQ(clone->GetSiteStructure(), &site);
    CExtGridCellFile plain;
    plain.SetText("C:\\a.txt");
    clone->Assign(plain);
    EXPECT_EQ(clone->GetText(), "C:\\a.txt");
    EXPECT_EQ(clone->GetSiteStructure(), nullptr);
    // The archive holds the base part only: a plain file cell reads it whole.
    CExtGridCellFile read;
    CExtGridArchive out;
    link.Serialize(out);
    CExtGridArchive in(out.Bytes());
    read.Serialize(in);
    EXPECT_TRUE(in.AtEnd());
    EXPECT_EQ(read.GetText(), "index.html");
}

TEST(PropertyCells, ImagesCellKeepsItsListApartFromItsText) {
    CXmlDocument site;
    CExtGridCellImages images;
    images.SetText("shown");
    images.SetImageListText("<GALLERY><IMAGE/></GALLERY>");
    images.SetSiteStructure(&site);
    EXPECT_EQ(images.GetDisplayText(), "Click to add/remove files");
    auto clone = CloneOf(images);
    EXPECT_EQ(clone->GetImageListText(), "<GALLERY><IMAGE/></GALLERY>");
    EXPECT_EQ(clone->GetSiteStructure(), &site);

    CExtGridCellImages read;
    bool atEnd = false;
    RoundTrip(images, read, &atEnd);
    EXPECT_TRUE(atEnd);
    EXPECT_EQ(read.GetText(), "shown");
    EXPECT_EQ(read.GetImageListText(), "<GALLERY><IMAGE/></GALLERY>");
    EXPECT_EQ(read.GetSiteStructure(), nullptr);   // pointers are never archived

    CExtGridCellFile plain;
    clone->Assign(plain);
    EXPECT_EQ(clone->GetImageListText(), "");
    EXPECT_EQ(clone->GetSiteStructure(), nullptr);
}

TEST(PropertyCells, BoundedSpinStepsOnlyWithinItsBounds) {
    CExtGridCellUpDownRange range;
    EXPECT_EQ(range.GetLowerBound(), 0);
    EXPECT_EQ(range.GetUpperBound(), 99);
    EXPECT_EQ(range.GetInt32(), 0);
    EXPECT_FALSE(range.CanStepDown());
    EXPECT_FALSE(range.StepDown());
    EXPECT_TRUE(range.CanStepUp());
    range.SetInt32(99);
    EXPECT_FALSE(range.CanStepUp());
    EXPECT_FALSE(range.StepUp());
    EXPECT_EQ(range.GetInt32(), 99);
    EXPECT_TRUE(range.StepDown());
    EXPECT_EQ(range.GetInt32(), 98);
    // Typed text is not clamped.
    range.SetText("150");
    EXPECT_EQ(range.GetInt32(), 150);
    EXPECT_FALSE(range.CanStepUp());
    EXPECT_TRUE(range.CanStepDown());
}

TEST(PropertyCells, BoundedSpinCopiesAndArchivesItsBounds) {
    CExtGridCellUpDownRange range;
    range.SetRange(-5, 5);
    range.SetInt32(3);
    auto clone = CloneOf(range);
    EXPECT_EQ(clone->GetLowerBound(), -5);
    EXPECT_EQ(clone->GetUpperBound(), 5);
    EXPECT_EQ(clone->GetInt32(), 3);
    CExtGridCellUpDownRange read;
    bool atEnd = false;
    RoundTrip(range, read, &atEnd);
    EXPECT_TRUE(atEnd);
    EXPECT_EQ(read.GetLowerBound(), -5);
    EXPECT_EQ(read.GetUpperBound(), 5);
    EXPECT_EQ(read.GetInt32(), 3);
}

// ---- painting -----------------------------------------------------------------

class ImagesHint : public ::testing::Test {
protected:
    void SetUp() override {
        HDC screen = GetDC(nullptr);
        m_dc = CreateCompatibleDC(screen);
        m_bitmap = CreateCompatibleBitmap(screen, kWidth, kHeight);
        ReleaseDC(nullptr, screen);
        m_old = SelectObject(m_dc, m_bitmap);
        RECT all{0, 0, kWidth, kHeight};
        CExtGridPaintManager::FillSolid(m_dc, all, RGB(255, 255, 255));
        m_pm.SetDpi(96);
    }
    void TearDown() override {
        SelectObject(m_dc, m_old);
        DeleteObject(m_bitmap);
        DeleteDC(m_dc);
    }
    // How many pixels of the colour the rectangle holds.
    int Count(COLORREF color) {
        int n = 0;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                if (GetPixel(m_dc, x, y) == color) ++n;
        return n;
    }
    CExtGridPaintContext Context() {
        CExtGridPaintContext pc;
        pc.dc = m_dc;
        pc.pm = &m_pm;
        pc.font = m_pm.NormalFont();
        pc.textColor = RGB(0, 0, 0);
        return pc;
    }

    static constexpr int kWidth = 260, kHeight = 20;
    CExtGridPaintManager m_pm;
    HDC m_dc = nullptr;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_old = nullptr;
};

TEST_F(ImagesHint, IsPaintedInLightGreyWhateverTheValue) {
    CExtGridCellImages images;   // empty list: the hint all the same
    HGDIOBJ fontBefore = GetCurrentObject(m_dc, OBJ_FONT);
    SetTextColor(m_dc, RGB(1, 2, 3));
    images.OnPaintText(Context(), RECT{0, 0, kWidth, kHeight});
    EXPECT_GT(Count(RGB(0xC0, 0xC0, 0xC0)), 20);
    EXPECT_EQ(Count(RGB(0, 0, 0)), 0);   // nothing in the row's text colour
    EXPECT_EQ(GetTextColor(m_dc), RGB(1, 2, 3));
    EXPECT_EQ(GetCurrentObject(m_dc, OBJ_FONT), fontBefore);
}

// ---- buttons --------------------------------------------------------------------

BOOL CALLBACK CancelIfDialog(HWND hwnd, LPARAM) {
    char name[16] = {};
    GetClassNameA(hwnd, name, sizeof name);
    if (lstrcmpA(name, "#32770") == 0 && IsWindowVisible(hwnd)) PostMessageA(hwnd, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
}

// Cancels any dialog box that the cells' buttons open on this thread.
void CALLBACK CancelDialogs(HWND, UINT, UINT_PTR, DWORD) { EnumThreadWindows(GetCurrentThreadId(), CancelIfDialog, 0); }

class RecordingCtrl : public CExtPropertyGridCtrl {
public:
    int notifications = 0;

protected:
    void OnInputComplete(CExtPropertyValue&) override { ++notifications; }
    void OnValueApplied(CExtPropertyValue&) override { ++notifications; }
};

TEST(PropertyCellButtons, CancelledDialogsChangeNothingAndRaiseNothing) {
    HWND frame = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
    RecordingCtrl ctrl;
    ASSERT_TRUE(ctrl.Create(frame, RECT{0, 0, 400, 300}, 1001));
    CExtPropertyStore store("Extension");
    auto* category = new CExtPropertyCategory("C");
    store.ItemInsert(category);
    auto* linkRow = new CExtPropertyValue("Link");
    category->ItemInsert(linkRow);
    auto* link = linkRow->ValueActiveGetByRTC<CExtGridCellURL>();
    link->SetText("index.html");
    auto* imagesRow = new CExtPropertyValue("Images");
    category->ItemInsert(imagesRow);
    auto* images = imagesRow->ValueActiveGetByRTC<CExtGridCellImages>();
    images->SetImageListText("<GALLERY/>");
    ctrl.PropertyStoreSet(&store);

    UINT_PTR timer = SetTimer(nullptr, 0, 100, CancelDialogs);
    CExtPropertyGridWnd& rows = ctrl.GetGrid();
    rows.FocusSet(rows.FindRow(linkRow));
    rows.ClickButton(0);
    rows.FocusSet(rows.FindRow(imagesRow));
    rows.ClickButton(0);
    KillTimer(nullptr, timer);

    EXPECT_EQ(link->GetText(), "index.html");
    EXPECT_EQ(images->GetImageListText(), "<GALLERY/>");
    EXPECT_EQ(ctrl.notifications, 0);
    DestroyWindow(ctrl.GetHwnd());
    DestroyWindow(frame);
}

// Confirms the link dialog with a new link once it shows.
BOOL CALLBACK ConfirmIfLinkDialog(HWND hwnd, LPARAM) {
    char name[16] = {};
    GetClassNameA(hwnd, name, sizeof name);
    if (lstrcmpA(name, "#32770") != 0 || !IsWindowVisible(hwnd) || !GetDlgItem(hwnd, 149)) return TRUE;
    SetDlgItemTextA(hwnd, 149, "http://example.org/new");
    PostMessageA(GetDlgItem(hwnd, IDOK), BM_CLICK, 0, 0);
    return FALSE;
}
void CALLBACK ConfirmLinkDialog(HWND, UINT, UINT_PTR, DWORD) {
    EnumThreadWindows(GetCurrentThreadId(), ConfirmIfLinkDialog, 0);
}

TEST(PropertyCellButtons, AConfirmedLinkBecomesTheTextKeepsTheFocusAndCompletesInput) {
    HWND frame = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
    RecordingCtrl ctrl;
    ASSERT_TRUE(ctrl.Create(frame, RECT{0, 0, 400, 300}, 1001));
    CExtPropertyStore store("Extension");
    auto* category = new CExtPropertyCategory("C");
    store.ItemInsert(category);
    category->ItemInsert(new CExtPropertyValue("Before"));
    auto* linkRow = new CExtPropertyValue("Link");
    category->ItemInsert(linkRow);
    auto* link = linkRow->ValueActiveGetByRTC<CExtGridCellURL>();
    link->SetText("index.html");
    ctrl.PropertyStoreSet(&store);
    CExtPropertyGridWnd& rows = ctrl.GetGrid();
    int row = rows.FindRow(linkRow);
    rows.FocusSet(row);

    UINT_PTR timer = SetTimer(nullptr, 0, 100, ConfirmLinkDialog);
    rows.ClickButton(0);
    KillTimer(nullptr, timer);

    EXPECT_EQ(link->GetText(), "http://example.org/new");
    EXPECT_EQ(rows.FocusGet(), row);
    EXPECT_EQ(ctrl.notifications, 1);
    DestroyWindow(ctrl.GetHwnd());
    DestroyWindow(frame);
}

}  // namespace
