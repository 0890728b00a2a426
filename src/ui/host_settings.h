#pragma once
// The host's per-user settings, as the dialogs need them: one remembered
// value ("LastExpanded" in "Settings") and the registry location under which
// the host keeps its link history. The plug-in installs the host's own
// profile at load; without one every read gives the empty text, writes go
// nowhere and there is no registry location.
#include <string>

class CHostSettings {
public:
    virtual ~CHostSettings() = default;

    // The stored text, or the empty text when there is none.
    virtual std::string GetString(const char* section, const char* entry) = 0;
    virtual void WriteString(const char* section, const char* entry, const std::string& value) = 0;

    // The host's registry key and profile name: its settings live under
    // HKEY_CURRENT_USER\Software\<registryKey>\<profileName>. False when the
    // host keeps them elsewhere (or cannot be asked).
    virtual bool GetRegistryLocation(std::string& registryKey, std::string& profileName) = 0;
};

// The installed settings, or the empty ones; never null.
CHostSettings& CurrentHostSettings();
// Installs settings (not owned; null goes back to the empty ones).
void InstallHostSettings(CHostSettings* settings);
