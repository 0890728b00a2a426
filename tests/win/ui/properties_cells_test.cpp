// The Properties dialog's own cells: copying, cloning and archiving their
// data, the image-list hint, the bounded spin, and what their buttons do when
// the dialog behind them is cancelled.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "grid/cell_file.h"
#include "grid/grid_archive.h"
#include "grid/paint_manager.h"
#include "grid/property_grid_ctrl.h"
#include "link_dialogs_fixture.h"
#include "ui/cell_font_combo.h"
#include "ui/cell_images.h"
#include "ui/cell_updown_range.h"
#include "ui/cell_url.h"
#include "ui/link_dialog_resources.h"
#include "ui/properties_dialog.h"
#include "test_pictures.h"
#include "xml/xml_document.h"

namespace {

template <class Cell>
std::unique_ptr<Cell> CloneOf(const Cell& cell) {
    CExtGridCell* copy = cell.Clone(nullptr);
    EXPECT_EQ(&copy->GetCellClass(), &Cell::kClass);
    return std::unique_ptr<Cell>(static_cast<Cell*>(copy));
}

// Archives from and reads the archive into to; true when to read it whole.
template <class From, class To>
bool RoundTrip(From& from, To& to) {
    CExtGridArchive out;
    from.Serialize(out);
    CExtGridArchive in(out.Bytes());
    to.Serialize(in);
    return in.AtEnd() && !in.Failed();
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
    EXPECT_TRUE(RoundTrip(link, read));
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
    EXPECT_TRUE(RoundTrip(images, read));
    EXPECT_EQ(read.GetText(), "shown");
    EXPECT_EQ(read.GetImageListText(), "<GALLERY><IMAGE/></GALLERY>");
    EXPECT_EQ(read.GetSiteStructure(), nullptr);  // pointers are never archived

    CExtGridCellFile plain;
    clone->Assign(plain);
    EXPECT_EQ(clone->GetImageListText(), "");
    EXPECT_EQ(clone->GetSiteStructure(), nullptr);
}

TEST(PropertyCells, BoundedSpinStepsWithinItsBoundsAndCopiesAndArchivesThem) {
    CExtGridCellUpDownRange range;  // 0 to 99 until set
    EXPECT_FALSE(range.StepDown());
    range.SetInt32(99);
    EXPECT_FALSE(range.IsButtonEnabled(0));
    EXPECT_TRUE(range.IsButtonEnabled(1));
    EXPECT_FALSE(range.StepUp());
    EXPECT_TRUE(range.StepDown());
    EXPECT_EQ(range.GetInt32(), 98);
    range.SetText("150");  // typed text is not clamped by the steps
    EXPECT_EQ(range.GetInt32(), 150);
    EXPECT_FALSE(range.StepUp());
    EXPECT_TRUE(range.StepDown());
    range.SetRange(-5, 5);
    range.SetInt32(3);
    auto clone = CloneOf(range);
    CExtGridCellUpDownRange read;
    EXPECT_TRUE(RoundTrip(range, read));
    for (const CExtGridCellUpDownRange* copy : {clone.get(), &read}) {
        EXPECT_EQ(copy->GetLowerBound(), -5);
        EXPECT_EQ(copy->GetUpperBound(), 5);
        EXPECT_EQ(copy->GetInt32(), 3);
    }
}

// ---- painting -----------------------------------------------------------------

TEST(ImagesHint, IsPaintedInLightGreyWhateverTheValue) {
    test_pictures::Surface surface(260, 20);
    CExtGridPaintManager pm;
    pm.SetDpi(96);
    CExtGridPaintContext pc;
    pc.dc = surface.Dc();
    pc.pm = &pm;
    pc.font = pm.NormalFont();
    pc.textColor = RGB(0, 0, 0);
    HGDIOBJ fontBefore = GetCurrentObject(pc.dc, OBJ_FONT);
    SetTextColor(pc.dc, RGB(1, 2, 3));
    CExtGridCellImages images;  // empty list: the hint all the same
    images.OnPaintText(pc, RECT{0, 0, 260, 20});
    int grey = 0, black = 0;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 260; ++x) {
            grey += surface.At(x, y) == 0xC0C0C0;
            black += surface.At(x, y) == 0;  // the row's text colour
        }
    EXPECT_GT(grey, 20);
    EXPECT_EQ(black, 0);
    EXPECT_EQ(GetTextColor(pc.dc), RGB(1, 2, 3));
    EXPECT_EQ(GetCurrentObject(pc.dc, OBJ_FONT), fontBefore);
}

// ---- buttons --------------------------------------------------------------------

class RecordingCtrl : public CExtPropertyGridCtrl {
public:
    int notifications = 0;

protected:
    void OnInputComplete(CExtPropertyValue&) override { ++notifications; }
    void OnValueApplied(CExtPropertyValue&) override { ++notifications; }
};

// A grid with a plain row, a link row and an image-list row; the dialogs
// their buttons open are answered by the fixture's steps (and cancelled
// when no step is left).
class PropertyCellButtons : public LinkDialogsTest {
protected:
    void SetUp() override {
        LinkDialogsTest::SetUp();
        frame = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
        ASSERT_TRUE(ctrl.Create(frame, RECT{0, 0, 400, 300}, 1001));
        auto* category = new CExtPropertyCategory("C");
        store.ItemInsert(category);
        category->ItemInsert(new CExtPropertyValue("Before"));
        category->ItemInsert(linkRow = new CExtPropertyValue("Link"));
        link = linkRow->ValueActiveGetByRTC<CExtGridCellURL>();
        link->SetText("index.html");
        category->ItemInsert(imagesRow = new CExtPropertyValue("Images"));
        images = imagesRow->ValueActiveGetByRTC<CExtGridCellImages>();
        images->SetImageListText("<GALLERY/>");
        ctrl.PropertyStoreSet(&store);
    }
    void TearDown() override {
        DestroyWindow(ctrl.GetHwnd());
        DestroyWindow(frame);
        LinkDialogsTest::TearDown();
    }
    void ClickButtonOf(CExtPropertyValue* row) {
        CExtPropertyGridWnd& rows = ctrl.GetGrid();
        rows.FocusSet(rows.FindRow(row));
        rows.ClickButton(0);
    }

    HWND frame = nullptr;
    RecordingCtrl ctrl;
    CExtPropertyStore store{"Extension"};
    CExtPropertyValue *linkRow = nullptr, *imagesRow = nullptr;
    CExtGridCellURL* link = nullptr;
    CExtGridCellImages* images = nullptr;
};

TEST_F(PropertyCellButtons, DialogsAreOwnedCentredGiveTheKeyboardBackAndCancelChangesNothing) {
    SetWindowPos(frame, nullptr, 300, 200, 600, 500, SWP_NOZORDER | SWP_SHOWWINDOW);
    for (CExtPropertyValue* row : {linkRow, imagesRow}) {
        Then([&](HWND d) {
            EXPECT_EQ(GetWindow(d, GW_OWNER), frame);
            EXPECT_FALSE(IsWindowEnabled(frame)) << "the owner takes no input meanwhile";
            RECT r, o;
            GetWindowRect(d, &r);
            GetWindowRect(frame, &o);
            EXPECT_LE(std::abs(r.left + r.right - o.left - o.right), 2);
            EXPECT_LE(std::abs(r.top + r.bottom - o.top - o.bottom), 2);
            Click(d, IDCANCEL);
        });
        ClickButtonOf(row);
        EXPECT_TRUE(IsWindowEnabled(frame));
        EXPECT_EQ(GetFocus(), ctrl.GetGrid().GetHwnd());
    }
    EXPECT_EQ(link->GetText(), "index.html");
    EXPECT_EQ(images->GetImageListText(), "<GALLERY/>");
    EXPECT_EQ(ctrl.notifications, 0);
}

TEST_F(PropertyCellButtons, TheImagesRowOpensItsDialogOnClickDoubleClickEnterAndF4) {
    CExtPropertyGridWnd& rows = ctrl.GetGrid();
    HWND grid = rows.GetHwnd();
    RECT value = rows.GetValueRect(rows.FindRow(imagesRow));
    LPARAM at = MAKELPARAM(value.left + 5, (value.top + value.bottom) / 2);
    int opened = 0;
    for (int i = 0; i < 4; ++i) Then([&](HWND d) {
            ++opened;
            Click(d, IDCANCEL);
        });
    rows.FocusSet(rows.FindRow(linkRow));
    SendMessageA(grid, WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageA(grid, WM_LBUTTONUP, 0, at);
    SendMessageA(grid, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    SendMessageA(grid, WM_LBUTTONUP, 0, at);
    SendMessageA(grid, WM_KEYDOWN, VK_RETURN, 0);
    SendMessageA(grid, WM_KEYDOWN, VK_F4, 0);
    EXPECT_EQ(opened, 4);
    EXPECT_EQ(images->GetImageListText(), "<GALLERY/>");
}

TEST_F(PropertyCellButtons, AConfirmedLinkBecomesTheTextKeepsTheFocusAndCompletesInput) {
    Then([](HWND d) {
        TypeComboText(d, IDC_LINK, "http://example.org/new");
        Click(d, IDOK);
    });
    ClickButtonOf(linkRow);
    EXPECT_EQ(link->GetText(), "http://example.org/new");
    EXPECT_EQ(ctrl.GetGrid().FocusGet(), ctrl.GetGrid().FindRow(linkRow));
    EXPECT_EQ(ctrl.notifications, 1);
}

}  // namespace
