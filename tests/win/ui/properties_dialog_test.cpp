// The Properties dialog over small definitions: the rows it builds from
// PROPERTIES, what a changed row writes back into the values, its captions
// and website link. (The modal run is driven through the plug-in by pwhost.)
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "grid/cell_bool.h"
#include "grid/cell_color.h"
#include "grid/cell_combo.h"
#include "grid/cell_file.h"
#include "grid/cell_string.h"
#include "ui/cell_font_combo.h"
#include "ui/cell_images.h"
#include "ui/cell_url.h"
#include "link_dialogs_fixture.h"
#include "ui/properties_dialog.h"

namespace {

std::string Definition(const std::string& rootAttributes, const std::string& properties) {
    return "<?xml version=\"1.0\"?>\n<EXTENSION " + rootAttributes + ">\n" + properties + "\n</EXTENSION>\n";
}

std::string Property(const std::string& name, int type, const std::string& value, const std::string& extra = "") {
    return "<PROPERTY name=\"" + name + "\" variable=\"$" + name + "$\" type=\"" + std::to_string(type) +
           "\" value=\"" + value + "\" description=\"About " + name + "\" " + extra + "></PROPERTY>";
}

class PropertiesDialogTest : public ::testing::Test {
protected:
    void TearDown() override { m_dialog.reset(); }

    // Opens the dialog (hidden, not modal) over a definition; values are
    // given to the dialog first, as the object does.
    void Open(const std::string& definition, std::initializer_list<std::pair<const char*, const char*>> values = {}) {
        m_definition.Parse(definition);
        m_dialog = std::make_unique<CPropertiesDialog>(&m_definition, &m_site);
        for (const auto& v : values) m_dialog->Values().Set(v.first, v.second);
        ASSERT_NE(m_dialog->Create(nullptr), nullptr);
    }

    CExtPropertyStore* Store() { return m_dialog->Grid().PropertyStoreGet(); }
    CExtPropertyValue* Row(const std::string& category, const std::string& name, int occurrence = 0) {
        CExtPropertyStore* store = Store();
        for (int c = 0; c < store->ItemGetCount(); ++c) {
            CExtPropertyItem* cat = store->ItemGetAt(c);
            if (cat->NameGet() != category || occurrence-- > 0) continue;
            CExtPropertyItem* item = cat->ItemFind(name);
            return item && item->IsValue() ? static_cast<CExtPropertyValue*>(item) : nullptr;
        }
        return nullptr;
    }
    template <class Cell>
    Cell* CellOf(const std::string& category, const std::string& name) {
        CExtPropertyValue* row = Row(category, name);
        if (!row) return nullptr;
        CExtGridCell* cell = row->ValueActiveGet();
        return cell && cell->IsKindOf(Cell::kClass) ? static_cast<Cell*>(cell) : nullptr;
    }
    // The user toggles the row (Space in the grid): the grid raises its
    // notification, which reaches the dialog.
    void Toggle(const std::string& category, const std::string& name) {
        CExtPropertyGridWnd& rows = m_dialog->Grid().GetGrid();
        rows.FocusSet(rows.FindRow(Row(category, name)));
        rows.ToggleFocus();
    }
    // The user confirmed the row's value as it is.
    void Confirm(const std::string& category, const std::string& name) {
        m_dialog->Grid().GetGrid().OnCellInputComplete(*Row(category, name));
    }
    std::string Stored(const std::string& variable) {
        const std::string* value = m_dialog->Values().Find(variable);
        return value ? *value : "<absent>";
    }

    CXmlDocument m_definition;
    CXmlDocument m_site;
    std::unique_ptr<CPropertiesDialog> m_dialog;
};

const std::string kEveryType =
    Definition("title=\"Gallery\" developer=\"Dev &amp; Co\" website=\"https://example.org/\"",
               "<PROPERTIES>"
               "<CATEGORY name=\"Main\">" +
                   Property("Flag", 0, "true") + Property("Color", 1, "#FF8000") + Property("Text", 2, "a &amp; b") +
                   Property("File", 3, "C:\\x.txt") + Property("Face", 4, "NoSuchFace") + Property("Size", 5, "12") +
                   Property("Images", 6, "&lt;GALLERY/&gt;") + Property("Choice", 7, "b", "options=\"a|b|c\"") +
                   Property("Link", 8, "index.html") + Property("Unknown", 9, "x") + Property("Negative", -1, "x") +
                   "<PROPERTY name=\"NoType\" variable=\"$notype$\" value=\"true\"></PROPERTY>"
                   "<OTHER name=\"Skipped\" type=\"2\"></OTHER>"
                   "</CATEGORY>"
                   "<CATEGORY name=\"Empty\"></CATEGORY>"
                   "<SOMETHING name=\"NotACategory\"><PROPERTY name=\"Lost\" type=\"2\"></PROPERTY></SOMETHING>"
                   "</PROPERTIES>");

TEST_F(PropertiesDialogTest, OneCategoryPerCategoryAndARowPerKnownType) {
    Open(kEveryType);
    CExtPropertyStore* store = Store();
    ASSERT_NE(store, nullptr);
    EXPECT_EQ(store->NameGet(), "Extension");
    ASSERT_EQ(store->ItemGetCount(), 2);
    EXPECT_EQ(store->ItemGetAt(1)->NameGet(), "Empty");
    EXPECT_EQ(store->ItemGetAt(1)->ItemGetCount(), 0);
    CExtPropertyItem* main = store->ItemGetAt(0);
    std::vector<std::string> names;
    for (int i = 0; i < main->ItemGetCount(); ++i) names.push_back(main->ItemGetAt(i)->NameGet());
    EXPECT_EQ(names, (std::vector<std::string>{"Flag", "Color", "Text", "File", "Face", "Size", "Images", "Choice",
                                               "Link", "NoType"}));
    EXPECT_EQ(Row("Main", "Text")->DescriptionGet(), "About Text");
    EXPECT_EQ(&Row("Main", "Text")->ValueActiveGet()->GetCellClass(), &CExtGridCellString::kClass);
    EXPECT_EQ(&Row("Main", "File")->ValueActiveGet()->GetCellClass(), &CExtGridCellFile::kClass);
    EXPECT_EQ(&Row("Main", "Size")->ValueActiveGet()->GetCellClass(), &CExtGridCellComboBox::kClass);
    // A missing type counts as 0: a check box.
    EXPECT_TRUE(CellOf<CExtGridCellBool>("Main", "NoType")->GetChecked());
    // Attribute texts are shown decoded.
    EXPECT_EQ(Row("Main", "Text")->ValueActiveGet()->GetText(), "a & b");
    // The building happens once.
    EXPECT_EQ(m_dialog->BuildPropertyStore(), store);
    // The keyboard starts on the first property, not on a category or OK.
    CExtPropertyGridWnd& rows = m_dialog->Grid().GetGrid();
    EXPECT_EQ(rows.FocusItem(), Row("Main", "Flag"));
    EXPECT_EQ(GetFocus(), rows.GetHwnd());
}

TEST_F(PropertiesDialogTest, ValuesGivenWinOverTheDefinitionAndCellsCarryTheSiteAndTheList) {
    Open(kEveryType, {{"$Text$", "from the object"}, {"$Link$", ""}});
    EXPECT_EQ(Row("Main", "Text")->ValueActiveGet()->GetText(), "from the object");
    EXPECT_EQ(Row("Main", "Link")->ValueActiveGet()->GetText(), "");  // an empty value is still a value
    auto* images = CellOf<CExtGridCellImages>("Main", "Images");
    EXPECT_EQ(images->GetImageListText(), "<GALLERY/>");
    EXPECT_EQ(images->GetSiteStructure(), &m_site);
    EXPECT_EQ(CellOf<CExtGridCellURL>("Main", "Link")->GetSiteStructure(), &m_site);
    Confirm("Main", "Images");
    EXPECT_EQ(Stored("$Images$"), "<GALLERY/>");
}

TEST_F(PropertiesDialogTest, BooleanIsCheckedOnlyByLowerCaseTrueAndStoredInLowerCase) {
    Open(Definition("", "<PROPERTIES><CATEGORY name=\"C\">" + Property("Upper", 0, "True") +
                            Property("Lower", 0, "true") + "</CATEGORY></PROPERTIES>"));
    EXPECT_FALSE(CellOf<CExtGridCellBool>("C", "Upper")->GetChecked());
    EXPECT_TRUE(CellOf<CExtGridCellBool>("C", "Lower")->GetChecked());
    Toggle("C", "Upper");
    EXPECT_EQ(Stored("$Upper$"), "true");
    Toggle("C", "Upper");
    EXPECT_EQ(Stored("$Upper$"), "false");
    EXPECT_EQ(Stored("$Lower$"), "<absent>");  // untouched rows are not written
}

TEST_F(PropertiesDialogTest, ColoursAreReadLenientlyAndWrittenAsSevenCharacters) {
    Open(Definition("", "<PROPERTIES><CATEGORY name=\"C\">" + Property("Red", 1, "red") +
                            Property("Green", 1, "x#00ff00") + "</CATEGORY></PROPERTIES>"));
    auto* red = CellOf<CExtGridCellColor>("C", "Red");
    auto* green = CellOf<CExtGridCellColor>("C", "Green");
    EXPECT_EQ(red->GetColor(), static_cast<COLORREF>(-1));
    EXPECT_EQ(green->GetColor(), RGB(0, 255, 0));
    EXPECT_FALSE(green->IsAutomaticEnabled());
    EXPECT_EQ(green->GetAutomaticColor(), static_cast<COLORREF>(-1));
    EXPECT_EQ(green->GetCustomColorCaption(), "More colors...");
    Confirm("C", "Green");
    EXPECT_EQ(Stored("$Green$"), "#00FF00");
    // Clearing would show "None" but give the page no colour: refused.
    EXPECT_FALSE(green->ValidateText(""));
    EXPECT_TRUE(green->ValidateText("#102030"));
}

TEST_F(PropertiesDialogTest, FontSizesSelectByNumberAndAreBoundToTheList) {
    Open(Definition("", "<PROPERTIES><CATEGORY name=\"C\">" + Property("Odd", 5, "13") + Property("Padded", 5, "010") +
                            "</CATEGORY></PROPERTIES>"));
    auto* odd = CellOf<CExtGridCellComboBox>("C", "Odd");
    auto* padded = CellOf<CExtGridCellComboBox>("C", "Padded");
    EXPECT_EQ(odd->GetCurSel(), -1);
    EXPECT_EQ(padded->GetSelectedText(), "10");
    EXPECT_TRUE(padded->IsListBound());
    EXPECT_FALSE(padded->ValidateText("13"));
    // Nothing selected is stored as empty text.
    Confirm("C", "Odd");
    EXPECT_EQ(Stored("$Odd$"), "");
    Toggle("C", "Padded");  // steps to the next entry
    EXPECT_EQ(Stored("$Padded$"), "11");
}

TEST_F(PropertiesDialogTest, ChoicesSplitAtBarsAndTheLastEqualEntryIsSelected) {
    Open(Definition("", "<PROPERTIES><CATEGORY name=\"C\">" + Property("Trailing", 7, "", "options=\"a|b|\"") +
                            Property("Twice", 7, "b", "options=\"b|a|b\"") + Property("None", 7, "", "options=\"\"") +
                            Property("Missing", 7, "z", "options=\"a|b\"") + "</CATEGORY></PROPERTIES>"));
    auto* trailing = CellOf<CExtGridCellComboBox>("C", "Trailing");
    ASSERT_EQ(trailing->GetCount(), 3);
    EXPECT_EQ(trailing->GetString(2), "");
    EXPECT_EQ(trailing->GetCurSel(), 2);
    EXPECT_EQ(CellOf<CExtGridCellComboBox>("C", "Twice")->GetCurSel(), 2);
    EXPECT_EQ(CellOf<CExtGridCellComboBox>("C", "None")->GetCount(), 1);
    auto* missing = CellOf<CExtGridCellComboBox>("C", "Missing");
    EXPECT_EQ(missing->GetCurSel(), -1);
    EXPECT_TRUE(missing->IsListBound());
    Toggle("C", "Twice");  // from the last entry back to the first
    EXPECT_EQ(Stored("$Twice$"), "b");
}

TEST_F(PropertiesDialogTest, FontNamesAreTheListsInAnyCaseAndAnUnlistedOneIsNeverTyped) {
    Open(kEveryType);
    auto* face = CellOf<CExtGridCellFontComboBox>("Main", "Face");
    EXPECT_EQ(face->GetText(), "NoSuchFace");
    EXPECT_EQ(face->GetCurSel(), -1);
    EXPECT_FALSE(face->IsListBound());
    Confirm("Main", "Face");
    EXPECT_EQ(Stored("$Face$"), "");
    // Typing a name that is not listed is refused, so the row never shows
    // what it would not store.
    EXPECT_FALSE(face->ValidateText("NoSuchFace"));
    // Names match without regard to case; the list's spelling is stored, and
    // the drop-down opens at it. (The list keeps duplicates: take the first
    // entry that is not the first name.)
    int at = 1;
    while (at < face->GetCount() && face->FindStringExact(face->GetString(at)) == 0) ++at;
    ASSERT_LT(at, face->GetCount());
    std::string listed = face->GetString(at), typed = listed;
    for (char& c : typed) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c >= 'A' && c <= 'Z' ? c + 32 : c);
    EXPECT_TRUE(face->ValidateText(typed));
    face->SetText(typed);
    Confirm("Main", "Face");
    EXPECT_EQ(Stored("$Face$"), listed);
    CExtPropertyGridWnd& rows = m_dialog->Grid().GetGrid();
    rows.FocusSet(rows.FindRow(Row("Main", "Face")));
    rows.ClickButton(0);
    ASSERT_TRUE(rows.IsEditing());
    HWND combo = rows.EditorHwnd();  // the combo box's edit part
    if (GetParent(combo) != rows.GetHwnd()) combo = GetParent(combo);
    EXPECT_EQ(SendMessageA(combo, CB_GETCURSEL, 0, 0), at);
    rows.CancelEdit();
}

TEST_F(PropertiesDialogTest, OnlyTheFirstCategoryOfAnAmbiguousNameIsSearched) {
    Open(Definition("",
                    "<PROPERTIES>"
                    "<CATEGORY name=\"Same\">" +
                        Property("First", 2, "1") +
                        "</CATEGORY>"
                        "<CATEGORY name=\"Same\">" +
                        Property("Second", 2, "2") + Property("First", 2, "3") +
                        "</CATEGORY>"
                        "</PROPERTIES>"));
    auto* second = static_cast<CExtPropertyValue*>(Store()->ItemGetAt(1)->ItemFind("Second"));
    second->ValueActiveGet()->SetText("changed");
    m_dialog->Grid().GetGrid().OnCellInputComplete(*second);
    EXPECT_EQ(Stored("$Second$"), "<absent>");
    // A row of the second category named like one of the first writes the
    // first's property.
    auto* shadow = static_cast<CExtPropertyValue*>(Store()->ItemGetAt(1)->ItemFind("First"));
    shadow->ValueActiveGet()->SetText("from the second");
    m_dialog->Grid().GetGrid().OnCellInputComplete(*shadow);
    EXPECT_EQ(Stored("$First$"), "from the second");
}

TEST_F(PropertiesDialogTest, ChildValuesAreTracedUpToTheirRow) {
    Open(kEveryType);
    CExtPropertyValue* text = Row("Main", "Text");
    auto* child = new CExtPropertyValue("Part");
    text->ItemInsert(child);
    child->ValueActiveGetByRTC<CExtGridCellString>()->SetText("x");
    text->ValueActiveGet()->SetText("parent value");
    m_dialog->OnValueChanged(*child);
    EXPECT_EQ(Stored("$Text$"), "parent value");
}

TEST_F(PropertiesDialogTest, CaptionDeveloperAndWebsiteComeFromTheRoot) {
    Open(kEveryType);
    HWND dialog = m_dialog->GetHwnd();
    EXPECT_EQ(GetControlText(dialog, CPropertiesDialog::kDeveloperId), "Dev & Co");
    EXPECT_EQ(m_dialog->WebsiteLink().GetTarget(), "https://example.org/");
    // The store selector is never shown, tool tips are off.
    EXPECT_FALSE(m_dialog->Grid().GetComboBar().IsShown());
    EXPECT_EQ(m_dialog->Grid().GetComboBar().PropertyStoreGetCount(), 1);
    EXPECT_FALSE(m_dialog->Grid().AreToolTipsEnabled());
    // The grid took the placeholder's place.
    HWND grid = GetDlgItem(dialog, CPropertiesDialog::kGridId);
    EXPECT_EQ(grid, m_dialog->Grid().GetHwnd());
}

TEST_F(PropertiesDialogTest, TheWebsiteLinkIsBlueUnderlinedAndTakesTheMouse) {
    Open(kEveryType);
    CHyperlinkStatic& link = m_dialog->WebsiteLink();
    HWND hwnd = link.GetHwnd();
    ASSERT_NE(hwnd, nullptr);
    EXPECT_NE(link.GetCursor(), nullptr);  // resource 145 of our own module
    LOGFONTA font{};
    GetObjectA(reinterpret_cast<HFONT>(SendMessageA(hwnd, WM_GETFONT, 0, 0)), sizeof font, &font);
    EXPECT_TRUE(font.lfUnderline);
    EXPECT_EQ(SendMessageA(hwnd, WM_NCHITTEST, 0, 0), HTCLIENT);
    HDC dc = GetDC(hwnd);
    HBRUSH brush = reinterpret_cast<HBRUSH>(SendMessageA(m_dialog->GetHwnd(), WM_CTLCOLORSTATIC,
                                                         reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(hwnd)));
    EXPECT_EQ(GetTextColor(dc), RGB(0, 0, 255));
    EXPECT_EQ(brush, static_cast<HBRUSH>(GetStockObject(NULL_BRUSH)));  // the dialog shows through
    ReleaseDC(hwnd, dc);
    // Without a target a click opens nothing (and does not fail).
    link.SetTarget("");
    SendMessageA(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, 0);
}

}  // namespace
