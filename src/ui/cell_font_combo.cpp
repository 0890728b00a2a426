#include "ui/cell_font_combo.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellFontComboBox, CExtGridCellComboBox)
