#include "demo_store.h"

#include "grid/cell_bool.h"
#include "grid/cell_color.h"
#include "grid/cell_combo.h"
#include "grid/cell_file.h"
#include "grid/cell_string.h"
#include "grid/cell_variant.h"

namespace {
template <class Cell>
Cell* AddValue(CExtPropertyCategory* category, const char* name, const char* description) {
    auto* value = new CExtPropertyValue(name, description);
    category->ItemInsert(value);
    return value->ValueActiveGetByRTC<Cell>();
}
}  // namespace

CExtPropertyStore* BuildDemoStore() {
    auto* store = new CExtPropertyStore("Demo");

    auto* look = new CExtPropertyCategory("Appearance");
    store->ItemInsert(look);
    AddValue<CExtGridCellString>(look, "Title", "The caption shown above the gallery.")->SetText("Summer 2026");
    auto* background =
        AddValue<CExtGridCellColor>(look, "Background color", "The colour behind the pictures, as #RRGGBB.");
    background->SetColor(RGB(0x20, 0x40, 0x80));
    background->EnableAutomatic(false);
    auto* text = AddValue<CExtGridCellColor>(look, "Text color",
                                             "The colour of captions. Automatic follows the page's text colour.");
    text->EnableAutomatic(true, RGB(0, 0, 0));
    text->SetColor(RGB(0, 0, 0));
    auto* font = AddValue<CExtGridCellFontName>(look, "Font", "The typeface of captions.");
    font->AddInstalledFonts();
    font->SetText("Tahoma");
    auto* size = AddValue<CExtGridCellComboBox>(look, "Font size", "The size of captions in points.");
    for (int points : {6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72})
        size->AddString(std::to_string(points));
    size->SetText("12");
    size->SetListBound(true);
    auto* align = AddValue<CExtGridCellDropListComboBox>(look, "Alignment", "Where captions sit under each picture.");
    for (const char* option : {"Left", "Center", "Right"}) align->AddString(option);
    align->SetText("Center");
    auto* style =
        AddValue<CExtGridCellComboBox>(look, "Caption style", "A style name from the list, or any name of your own.");
    for (const char* option : {"Plain", "Shadow", "Outline"}) style->AddString(option);
    style->SetText("Shadow");
    AddValue<CExtGridCellHeader>(look, "Section", "A read-only heading.")->SetText("Layout");
    auto* margins = new CExtPropertyValue("Margins", "Space around the strip, in pixels.");
    look->ItemInsert(margins);
    margins->ValueActiveGetByRTC<CExtGridCellString>()->SetText("8, 4");
    margins->ValueActiveGet()->SetReadOnly(true);
    for (const char* side : {"Horizontal", "Vertical"}) {
        auto* part = new CExtPropertyValue(side, std::string(side) + " margin in pixels.");
        margins->ItemInsert(part);
        part->ValueActiveGetByRTC<CExtGridCellVariant>()->SetInt32(side[0] == 'H' ? 8 : 4);
    }

    auto* behave = new CExtPropertyCategory("Behavior");
    store->ItemInsert(behave);
    AddValue<CExtGridCellBool>(behave, "Autoplay", "Scroll through the pictures without a click.")->SetChecked(true);
    AddValue<CExtGridCellBool>(behave, "Reflections", "Mirror each picture below itself.");
    AddValue<CExtGridCellUpDown>(behave, "Speed", "Seconds between two pictures.")->SetInt32(3);
    auto* zoom = AddValue<CExtGridCellVariant>(behave, "Zoom", "Scale of the pictures (a number, 1 is natural size).");
    zoom->SetDouble(1.25);
    auto* file = AddValue<CExtGridCellFile>(behave, "Style sheet", "A CSS file copied beside the published page.");
    file->SetFilter("Style sheets (*.css)|*.css|All files (*.*)|*.*");
    file->SetText("C:\\site\\gallery.css");
    AddValue<CExtGridCellFolder>(behave, "Image folder", "Where the pictures are published.")
        ->SetText("C:\\site\\images");
    AddValue<CExtGridCellPassword>(behave, "Upload password", "Used when publishing to the server.")->SetText("secret");
    return store;
}
