#include "ui/image_list_dialog.h"

// Placeholder until the dialog lands: nothing is edited.
bool RunImageListDialog(HWND, std::string&, CXmlDocument*) { return false; }
