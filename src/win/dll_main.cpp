// The plug-in's entry point. At process attach the plug-in registers itself
// with the host's shared MFC 4.2 run time as an extension module
// (AfxInitExtensionModule and a CDynLinkLibrary, bound by ordinal), so that
// the run time's resource search includes it; at detach it ends that
// registration. The plug-in's own code always finds its resources through its
// own module handle (own_module.h). Without MFC42.DLL both steps are skipped.
#include <windows.h>

#include "win/mfc42_runtime.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) return mfc42::InitExtensionModule(instance) ? TRUE : FALSE;
    if (reason == DLL_PROCESS_DETACH) mfc42::TermExtensionModule();
    return TRUE;
}
