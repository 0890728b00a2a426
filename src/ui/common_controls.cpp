#include "ui/common_controls.h"

#include <windows.h>

#include <commctrl.h>

void EnsureCommonControls() {
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
}
