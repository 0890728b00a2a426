#pragma once
// The host's own per-user settings: its application object (CWinApp) in the
// shared MFC 4.2 run time, reached through MFC42.DLL by ordinal. Reads and
// writes go through the application's GetProfileString and
// WriteProfileString, so they land wherever the host keeps its settings; the
// registry key and profile name are read from the object itself.
//
// Everything degrades: without MFC42.DLL, a bound function or an
// application object, reads give the empty text, writes do nothing and there
// is no registry location (so no link history).
#include "ui/host_settings.h"

class HostProfile final : public CHostSettings {
public:
    std::string GetString(const char* section, const char* entry) override;
    void WriteString(const char* section, const char* entry, const std::string& value) override;
    bool GetRegistryLocation(std::string& registryKey, std::string& profileName) override;
};

// The one instance, installed for the dialogs when the plug-in is loaded.
HostProfile& TheHostProfile();
