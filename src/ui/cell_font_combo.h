#pragma once
// The cell of a font-name property: a combo box over the face names that the
// Properties dialog lists into it. It keeps no list of its own and shows the
// chosen name as plain text, like any combo cell (no preview in the face
// itself, unlike the toolkit's CExtGridCellFontName).
#include "grid/cell_combo.h"

//
// Face names match the list without regard to case, as Windows treats them,
// and the list's spelling is what the cell keeps. A typed name that is not
// in the list is refused (the row keeps its value): stored, it would become
// the empty text, which is not what the user sees.
class CExtGridCellFontComboBox : public CExtGridCellComboBox {
    PWGRID_DECLARE_CELL(CExtGridCellFontComboBox)
public:
    explicit CExtGridCellFontComboBox(CExtGridAllocator* allocator = nullptr) : CExtGridCellComboBox(allocator) {}
    void SetText(const std::string& text) override;
    bool ValidateText(const std::string& text) const override;
};
