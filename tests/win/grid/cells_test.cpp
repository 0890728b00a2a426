// Cells on their own: creation by class name, copying, cloning into an
// allocator, archives, the colour text form, list-bound lists, variants and
// the up-down hooks.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "grid/cell_bool.h"
#include "grid/cell_color.h"
#include "grid/cell_combo.h"
#include "grid/cell_file.h"
#include "grid/cell_string.h"
#include "grid/cell_variant.h"
#include "grid/grid_archive.h"
#include "grid/property_store.h"

namespace {

class CountingAllocator : public CExtGridAllocator {
public:
    int live = 0;
    int made = 0;
    void* Allocate(std::size_t size) override {
        ++live;
        ++made;
        return std::malloc(size);
    }
    void Free(void* block) override {
        --live;
        std::free(block);
    }
};

template <class Cell>
std::unique_ptr<Cell> RoundTrip(Cell& original) {
    CExtGridArchive out;
    original.Serialize(out);
    CExtGridArchive in(out.Bytes());
    auto copy = std::make_unique<Cell>();
    copy->Serialize(in);
    EXPECT_FALSE(in.Failed());
    EXPECT_TRUE(in.AtEnd());
    return copy;
}

}  // namespace

TEST(GridCellClass, KindFollowsTheBaseChain) {
    CExtGridCellFolder folder;
    EXPECT_TRUE(folder.IsKindOf(CExtGridCellFile::kClass));
    EXPECT_TRUE(folder.IsKindOf(CExtGridCellString::kClass));
    EXPECT_TRUE(folder.IsKindOf(CExtGridCell::kClass));
    EXPECT_FALSE(folder.IsKindOf(CExtGridCellComboBox::kClass));
    CExtGridCellUpDown spin;
    EXPECT_TRUE(spin.IsKindOf(CExtGridCellVariant::kClass));
}

TEST(GridCellValue, ActiveCellIsCreatedOnceAndKeepsItsValueWhenTheClassChanges) {
    CExtPropertyValue value("Name");
    CExtGridCell* first = value.ValueActiveGetByClassName("CExtGridCellString");
    ASSERT_NE(first, nullptr);
    first->SetText("abc");
    EXPECT_EQ(value.ValueActiveGetByRTC<CExtGridCellString>(), first);  // same class: same cell
    CExtGridCellFile* file = value.ValueActiveGetByRTC<CExtGridCellFile>();
    EXPECT_EQ(file->GetText(), "abc");
    EXPECT_EQ(value.ValueActiveGetByClassName("Unknown"), nullptr);
    EXPECT_EQ(value.ValueActiveGet(), file);
}

TEST(GridCellCopy, CloneUsesTheGivenAllocatorAndDeleteGivesTheMemoryBack) {
    CountingAllocator allocator;
    CExtGridCellComboBox original;
    original.AddString("a");
    original.AddString("b");
    original.SetText("b");
    original.SetListBound(true);
    CExtGridCell* copy = original.Clone(&allocator);
    EXPECT_EQ(allocator.live, 1);
    ASSERT_TRUE(copy->IsKindOf(CExtGridCellComboBox::kClass));
    auto* combo = static_cast<CExtGridCellComboBox*>(copy);
    EXPECT_EQ(combo->GetAllocator(), &allocator);
    EXPECT_EQ(combo->GetCurSel(), 1);
    EXPECT_TRUE(combo->IsListBound());
    EXPECT_EQ(combo->GetCount(), 2);
    delete copy;
    EXPECT_EQ(allocator.live, 0);
    EXPECT_EQ(allocator.made, 1);
}

TEST(GridCellCopy, CopyFromAnotherClassTakesOnlyTheCommonPart) {
    CExtGridCellString plain;
    plain.SetText("#112233");
    plain.SetReadOnly(true);
    CExtGridCellColor color;
    color.SetColor(RGB(1, 2, 3));
    color.SetCustomColorCaption("Other...");
    color.Assign(plain);
    EXPECT_TRUE(color.IsReadOnly());
    EXPECT_EQ(color.GetColor(), RGB(1, 2, 3));  // its own data stays
    EXPECT_EQ(color.GetCustomColorCaption(), "Other...");
}

TEST(GridCellArchive, EveryKindRoundTrips) {
    CExtGridCellColor color;
    color.SetColor(RGB(0x12, 0x34, 0x56));
    color.EnableAutomatic(false, RGB(9, 9, 9));
    color.SetCustomColorCaption("More colors...");
    auto colorCopy = RoundTrip(color);
    EXPECT_EQ(colorCopy->GetText(), "#123456");
    EXPECT_FALSE(colorCopy->IsAutomaticEnabled());
    EXPECT_EQ(colorCopy->GetAutomaticColor(), RGB(9, 9, 9));

    CExtGridCellDropListComboBox list;
    for (const char* s : {"x", "", "y"}) list.AddString(s);
    list.SetCurSel(2);
    auto listCopy = RoundTrip(list);
    EXPECT_EQ(listCopy->GetCount(), 3);
    EXPECT_EQ(listCopy->GetString(1), "");
    EXPECT_EQ(listCopy->GetCurSel(), 2);
    EXPECT_TRUE(listCopy->IsListBound());

    CExtGridCellBool check;
    check.SetChecked(true);
    EXPECT_TRUE(RoundTrip(check)->GetChecked());

    CExtGridCellVariant number;
    number.SetDouble(0.1);
    auto numberCopy = RoundTrip(number);
    EXPECT_EQ(numberCopy->GetType(), CExtGridCellVariant::Type::kDouble);
    EXPECT_EQ(numberCopy->GetDouble(), 0.1);

    CExtGridCellFile file;
    file.SetText("C:\\x.css");
    file.SetFilter("CSS|*.css");
    auto fileCopy = RoundTrip(file);
    EXPECT_EQ(fileCopy->GetText(), "C:\\x.css");
    EXPECT_EQ(fileCopy->GetFilter(), "CSS|*.css");
}

TEST(GridCellArchive, TruncatedOrCorruptDataFailsQuietly) {
    CExtGridCellComboBox list;
    for (const char* s : {"alpha", "beta"}) list.AddString(s);
    CExtGridArchive out;
    list.Serialize(out);
    std::vector<std::uint8_t> bytes = out.Bytes();
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        CExtGridArchive in(std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + cut));
        CExtGridCellComboBox copy;
        copy.Serialize(in);
        EXPECT_TRUE(in.Failed()) << "cut at " << cut;
        EXPECT_LE(copy.GetCount(), 2);
    }
    // A huge entry count and a huge text length are refused, not allocated.
    CExtGridArchive bad;
    bad.WriteString("text");
    bad.WriteBool(false);
    bad.WriteInt32(0x7FFFFFFF);
    bad.WriteInt32(0x7FFFFFF0);
    CExtGridArchive in(bad.Bytes());
    CExtGridCellComboBox copy;
    copy.Serialize(in);
    EXPECT_TRUE(in.Failed());
    EXPECT_EQ(copy.GetCurSel(), -1);
}

TEST(GridColorText, FormatsRedFirstInUpperCaseAndParsesItBack) {
    EXPECT_EQ(FormatColorText(RGB(0xFF, 0x80, 0x00)), "#FF8000");
    EXPECT_EQ(FormatColorText(RGB(0, 0, 0)), "#000000");
    EXPECT_EQ(FormatColorText(kNoColor), "");
    for (COLORREF c : {RGB(0, 0, 0), RGB(255, 255, 255), RGB(1, 2, 3), RGB(0xAB, 0xCD, 0xEF)}) {
        COLORREF back = 0;
        ASSERT_TRUE(ParseColorText(FormatColorText(c), &back));
        EXPECT_EQ(back, c);
    }
    COLORREF parsed = 0;
    EXPECT_TRUE(ParseColorText(" #abcdef ", &parsed));
    EXPECT_EQ(parsed, RGB(0xAB, 0xCD, 0xEF));
    EXPECT_TRUE(ParseColorText("", &parsed));
    EXPECT_EQ(parsed, kNoColor);
    parsed = 5;
    for (const char* bad : {"red", "#12345", "#1234567", "123456", "#12345G", "#"}) {
        EXPECT_FALSE(ParseColorText(bad, &parsed)) << bad;
        EXPECT_EQ(parsed, 5u) << bad;
    }
}

TEST(GridColorCell, RefusedTextLeavesTheColourAndAutomaticIsOnlyShown) {
    CExtGridCellColor cell;
    cell.SetText("#00FF00");
    EXPECT_FALSE(cell.ValidateText("blue"));
    cell.SetText("blue");
    EXPECT_EQ(cell.GetColor(), RGB(0, 255, 0));
    cell.EnableAutomatic(true, RGB(0, 255, 0));
    EXPECT_EQ(cell.GetDisplayText(), "Automatic");
    cell.EnableAutomatic(false);
    EXPECT_EQ(cell.GetDisplayText(), "#00FF00");
}

TEST(GridComboCell, SelectionFollowsTheTextAndListBoundRefusesOthers) {
    CExtGridCellComboBox cell;
    for (const char* s : {"6", "10", "12", "10"}) cell.AddString(s);
    cell.SetText("10");
    EXPECT_EQ(cell.GetCurSel(), 1);
    cell.SetCurSel(3);  // the second "10" stays selected when the text is set again
    cell.SetText("10");
    EXPECT_EQ(cell.GetCurSel(), 3);
    cell.SetText("13");
    EXPECT_EQ(cell.GetCurSel(), -1);
    EXPECT_EQ(cell.GetSelectedText(), "");
    EXPECT_EQ(cell.GetText(), "13");
    EXPECT_TRUE(cell.ValidateText("13"));  // free text while not list-bound
    cell.SetListBound(true);
    EXPECT_FALSE(cell.ValidateText("13"));
    EXPECT_FALSE(cell.ValidateText("010"));
    EXPECT_TRUE(cell.ValidateText("12"));
}

TEST(GridVariantCell, ParsesByTypeAndRefusesBadNumbers) {
    CExtGridCellVariant cell;
    cell.SetText("free");
    EXPECT_EQ(cell.GetType(), CExtGridCellVariant::Type::kString);
    cell.SetInt32(7);
    EXPECT_TRUE(cell.ValidateText(" -12 "));
    EXPECT_FALSE(cell.ValidateText("12abc"));
    EXPECT_FALSE(cell.ValidateText("99999999999"));
    EXPECT_FALSE(cell.ValidateText(""));
    cell.SetText("-12");
    EXPECT_EQ(cell.GetInt32(), -12);
    EXPECT_EQ(cell.GetText(), "-12");
    cell.SetDouble(2.5);
    EXPECT_TRUE(cell.ValidateText("1e3"));
    EXPECT_FALSE(cell.ValidateText("1,5"));
}

TEST(GridUpDownCell, StopsOnlyAtTheEndsOfItsRange) {
    // Bounds come from the owner's hooks (see the property cells' range).
    CExtGridCellUpDown free;
    free.SetInt32(0x7FFFFFFF);
    EXPECT_FALSE(free.StepUp());
    EXPECT_TRUE(free.StepDown());
}

TEST(GridBoolCell, OnlyExactTrueChecks) {
    CExtGridCellBool cell;
    cell.SetText("True");
    EXPECT_FALSE(cell.GetChecked());
    cell.SetText("true");
    EXPECT_TRUE(cell.GetChecked());
    EXPECT_EQ(cell.GetText(), "true");
}
