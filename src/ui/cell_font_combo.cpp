#include "ui/cell_font_combo.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellFontComboBox, CExtGridCellComboBox)

void CExtGridCellFontComboBox::SetText(const std::string& text) {
    int listed = FindStringNoCase(text);
    CExtGridCellComboBox::SetText(listed >= 0 ? GetString(listed) : text);
}

bool CExtGridCellFontComboBox::ValidateText(const std::string& text) const { return FindStringNoCase(text) >= 0; }
