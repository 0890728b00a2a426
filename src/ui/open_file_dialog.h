#pragma once
// The system's open-file dialog behind a replaceable function, so that tests
// can answer it (they cannot drive the system's own window reliably).
#include <windows.h>

#include <commdlg.h>

#include <functional>

// Shows the dialog described by request. True when the user chose files;
// false otherwise, with error set to the common-dialog error (0 on cancel).
using OpenFileDialogFunction = std::function<bool(OPENFILENAMEA& request, DWORD& error)>;

bool ShowOpenFileDialog(OPENFILENAMEA& request, DWORD& error);
// Replaces the system dialog (an empty function restores it).
void SetOpenFileDialogFunction(OpenFileDialogFunction function);
