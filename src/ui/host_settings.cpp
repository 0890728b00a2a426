#include "ui/host_settings.h"

namespace {

class CNoHostSettings final : public CHostSettings {
public:
    std::string GetString(const char*, const char*) override { return {}; }
    void WriteString(const char*, const char*, const std::string&) override {}
    bool GetRegistryLocation(std::string&, std::string&) override { return false; }
};

// Constant-initialised, so an installation from another module's static
// initialiser is never undone by ours.
CHostSettings* g_installed = nullptr;

}  // namespace

CHostSettings& CurrentHostSettings() {
    static CNoHostSettings none;
    return g_installed ? *g_installed : none;
}

void InstallHostSettings(CHostSettings* settings) { g_installed = settings; }
