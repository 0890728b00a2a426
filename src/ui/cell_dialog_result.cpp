#include "ui/cell_dialog_result.h"

#include "grid/property_grid_wnd.h"

void ReturnFocusToGrid(const CExtGridCellContext& context) {
    if (context.grid && context.grid->GetHwnd()) SetFocus(context.grid->GetHwnd());
}

void CompleteDialogInput(const CExtGridCellContext& context) {
    if (context.grid) {
        int row = context.grid->FocusGet();
        int column = context.grid->FocusColumnGet();
        context.grid->RefreshCellExtents();
        if (row >= 0 && column >= 0) context.grid->FocusSet(row, column);
    }
    context.Invalidate();
    context.InputComplete();
}
