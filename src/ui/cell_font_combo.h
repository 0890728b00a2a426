#pragma once
// The cell of a font-name property: a combo box over the face names that the
// Properties dialog lists into it. It keeps no list of its own and shows the
// chosen name as plain text (no preview in the face itself).
#include "grid/cell_combo.h"

class CExtGridCellFontComboBox : public CExtGridCellComboBox {
    PWGRID_DECLARE_CELL(CExtGridCellFontComboBox)
public:
    explicit CExtGridCellFontComboBox(CExtGridAllocator* allocator = nullptr) : CExtGridCellComboBox(allocator) {}
    // Painted as the plain cell paints its text.
    void OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const override {
        CExtGridCell::OnPaintText(pc, textRect);
    }
};
