#include "ui/host_settings.h"

namespace {

class NoHostSettings final : public HostSettings {
public:
    std::string GetString(const char*, const char*) override { return {}; }
    void WriteString(const char*, const char*, const std::string&) override {}
    bool GetRegistryLocation(std::string&, std::string&) override { return false; }
};

// Constant-initialised, so an installation from another module's static
// initialiser is never undone by ours.
HostSettings* g_installed = nullptr;

}  // namespace

HostSettings& CurrentHostSettings() {
    static NoHostSettings none;
    return g_installed ? *g_installed : none;
}

void InstallHostSettings(HostSettings* settings) { g_installed = settings; }
