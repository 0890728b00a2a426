#include "ui/link_dialog.h"

// Placeholder until the dialog lands: nothing is edited.
bool RunLinkDialog(HWND, std::string&, CXmlDocument*) { return false; }
