#pragma once
// What the link and image-list cells do after their dialog was confirmed:
// the grid re-measures its cells, the focus goes back to the row and column
// it was on (the dialog may have moved it), and the grid hears that the user
// completed input on the cell, so its owner stores the value.
#include "grid/grid_cell.h"

void CompleteDialogInput(const CExtGridCellContext& context);
// After the cell's dialog closed, confirmed or not: the keyboard is back on
// the grid's row.
void ReturnFocusToGrid(const CExtGridCellContext& context);
