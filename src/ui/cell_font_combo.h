#pragma once
// The cell of a font-name property: a combo box over the face names that the
// Properties dialog lists into it. It keeps no list of its own and shows the
// chosen name as plain text, like any combo cell (no preview in the face
// itself, unlike the toolkit's CExtGridCellFontName).
#include "grid/cell_combo.h"

class CExtGridCellFontComboBox : public CExtGridCellComboBox {
    PWGRID_DECLARE_CELL(CExtGridCellFontComboBox)
public:
    explicit CExtGridCellFontComboBox(CExtGridAllocator* allocator = nullptr) : CExtGridCellComboBox(allocator) {}
};
