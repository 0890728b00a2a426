#include "ui/open_file_dialog.h"

namespace {

OpenFileDialogFunction& Replacement() {
    static OpenFileDialogFunction function;
    return function;
}

}  // namespace

bool ShowOpenFileDialog(OPENFILENAMEA& request, DWORD& error) {
    if (Replacement()) return Replacement()(request, error);
    if (GetOpenFileNameA(&request)) {
        error = 0;
        return true;
    }
    error = CommDlgExtendedError();
    return false;
}

void SetOpenFileDialogFunction(OpenFileDialogFunction function) { Replacement() = std::move(function); }
