// The Properties dialog's rows: the store built from the definition (a
// category per CATEGORY, a row per PROPERTY with the cell its type code
// asks for) and the value of a changed row written back as value text.
#include <cstdlib>

#include "grid/cell_bool.h"
#include "grid/cell_color.h"
#include "grid/cell_combo.h"
#include "grid/cell_file.h"
#include "grid/cell_string.h"
#include "html/definition_model.h"
#include "ui/cell_font_combo.h"
#include "ui/cell_images.h"
#include "ui/cell_url.h"
#include "ui/properties_dialog.h"
#include "xml/ascii.h"

namespace {

const int kFontSizes[] = {6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72};

std::string Attribute(const CXmlElement& element, const char* name) {
    return CXmlDocument::Unescape(element.GetAttribute(name));
}

// n separators give n + 1 pieces, empty ones included.
std::vector<std::string> SplitOptions(const std::string& options) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (;;) {
        std::size_t bar = options.find('|', start);
        pieces.push_back(options.substr(start, bar == std::string::npos ? std::string::npos : bar - start));
        if (bar == std::string::npos) return pieces;
        start = bar + 1;
    }
}

void FillFontSizes(CExtGridCellComboBox& cell, const std::string& value) {
    char text[16];
    for (int size : kFontSizes) {
        wsprintfA(text, "%d", size);
        cell.AddString(text);
    }
    int wanted = std::atoi(value.c_str());
    for (int i = 0; i < cell.GetCount(); ++i)
        if (std::atoi(cell.GetString(i).c_str()) == wanted) {
            cell.SetCurSel(i);
            break;
        }
    cell.SetListBound(true);
}

void FillChoices(CExtGridCellComboBox& cell, const std::string& options, const std::string& value) {
    for (const std::string& option : SplitOptions(options)) cell.AddString(option);
    // Every equal entry is selected in turn: the last one wins.
    for (int i = 0; i < cell.GetCount(); ++i)
        if (cell.GetString(i) == value) cell.SetCurSel(i);
    cell.SetListBound(true);
}

// The row's value as text, by type code, from its active cell.
std::string ValueTextOf(PropertyType type, CExtGridCell* cell) {
    if (!cell) return std::string();
    switch (type) {
        case PropertyType::kBoolean:
            return cell->IsKindOf(CExtGridCellBool::kClass) && static_cast<CExtGridCellBool*>(cell)->GetChecked()
                       ? "true"
                       : "false";
        case PropertyType::kColor:
            return cell->IsKindOf(CExtGridCellColor::kClass)
                       ? FormatColorHex(static_cast<CExtGridCellColor*>(cell)->GetColor())
                       : std::string();
        case PropertyType::kText:
        case PropertyType::kFile:
        case PropertyType::kLink: return cell->GetText();
        case PropertyType::kFontName:
        case PropertyType::kFontSize:
        case PropertyType::kChoice:
            // Only an entry of the list counts: a font name that is not installed
            // is stored as empty text once its row is changed.
            return cell->IsKindOf(CExtGridCellComboBox::kClass)
                       ? static_cast<CExtGridCellComboBox*>(cell)->GetSelectedText()
                       : std::string();
        case PropertyType::kImageList:
            return cell->IsKindOf(CExtGridCellImages::kClass)
                       ? static_cast<CExtGridCellImages*>(cell)->GetImageListText()
                       : std::string();
        default: return std::string();
    }
}

}  // namespace

CExtPropertyStore* CPropertiesDialog::BuildPropertyStore() {
    if (m_store) return m_store.get();
    m_store = std::make_unique<CExtPropertyStore>("Extension");
    if (!m_definition) return m_store.get();
    ForEachCategory(*m_definition->GetRoot(), [this](const CXmlElement& categoryElement) {
        auto* category = new CExtPropertyCategory(Attribute(categoryElement, "name"), std::string());
        m_store->ItemInsert(category);
        ForEachPropertyIn(categoryElement, [&](const CXmlElement& property) {
            PropertyRule rule = ReadPropertyRule(property);
            if (!IsKnownPropertyType(rule.type)) return;
            const std::string* set = m_values.Find(rule.variable);
            std::string value = set ? *set : Attribute(property, "value");

            auto* item = new CExtPropertyValue(Attribute(property, "name"), Attribute(property, "description"));
            category->ItemInsert(item);
            switch (rule.type) {
                case PropertyType::kBoolean:
                    item->ValueActiveGetByRTC<CExtGridCellBool>()->SetChecked(value == "true");
                    break;
                case PropertyType::kColor: {
                    auto* cell = item->ValueActiveGetByRTC<CExtGridCellColor>();
                    cell->SetColor(ParseColorAfterHash(value));
                    cell->SetCustomColorCaption("More colors...");
                    cell->EnableAutomatic(false, static_cast<COLORREF>(-1));
                    cell->AllowNoColor(false);  // the page needs #RRGGBB
                    break;
                }
                case PropertyType::kText: item->ValueActiveGetByRTC<CExtGridCellString>()->SetText(value); break;
                case PropertyType::kFile: item->ValueActiveGetByRTC<CExtGridCellFile>()->SetText(value); break;
                case PropertyType::kFontName: {
                    auto* cell = item->ValueActiveGetByRTC<CExtGridCellFontComboBox>();
                    for (const std::string& face : FaceNames()) cell->AddString(face);
                    cell->SetText(value);
                    break;
                }
                case PropertyType::kFontSize:
                    FillFontSizes(*item->ValueActiveGetByRTC<CExtGridCellComboBox>(), value);
                    break;
                case PropertyType::kImageList: {
                    auto* cell = item->ValueActiveGetByRTC<CExtGridCellImages>();
                    cell->SetText(value);
                    cell->SetImageListText(value);
                    cell->SetSiteStructure(m_siteStructure);
                    break;
                }
                case PropertyType::kChoice:
                    FillChoices(*item->ValueActiveGetByRTC<CExtGridCellComboBox>(), Attribute(property, "options"),
                                value);
                    break;
                case PropertyType::kLink: {
                    auto* cell = item->ValueActiveGetByRTC<CExtGridCellURL>();
                    cell->SetText(value);
                    cell->SetSiteStructure(m_siteStructure);
                    break;
                }
            }
        });
    });
    return m_store.get();
}

bool CPropertiesDialog::StorePropertyValue(CExtPropertyValue& item) {
    CExtPropertyItem* parent = item.ItemParentGet();
    std::string categoryName = parent ? parent->NameGet() : std::string();
    if (!m_definition) return false;
    // Only the first category of that name is searched.
    const CXmlElement* found = nullptr;
    ForEachCategory(*m_definition->GetRoot(), [&](const CXmlElement& category) {
        if (Attribute(category, "name") != categoryName) return true;
        ForEachPropertyIn(category, [&](const CXmlElement& property) {
            if (Attribute(property, "name") == item.NameGet()) found = &property;
            return !found;
        });
        return false;
    });
    if (!found) return false;
    PropertyRule rule = ReadPropertyRule(*found);
    m_values.Set(rule.variable, ValueTextOf(rule.type, item.ValueActiveGet()));
    return false;
}
