// The host's settings through the host's run time: the plug-in's
// HostProfile against the test-only MFC 4.2 stand-in (built beside this
// program), whose application object keeps its profile in the registry
// under HKCU\Software\SlidewaveTests\pwhost.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "win/host_profile.h"

namespace {

const char kProfileKey[] = "Software\\SlidewaveTests\\pwhost";

void DeleteProfileKeys() { RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\SlidewaveTests"); }

std::string RegistryText(const std::string& key, const char* name) {
    char value[512] = {};
    DWORD size = sizeof value - 1;
    HKEY opened = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return "(no key)";
    LONG status = RegQueryValueExA(opened, name, nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size);
    RegCloseKey(opened);
    return status == ERROR_SUCCESS ? std::string(value) : "(no value)";
}

HMODULE LoadStandInRuntime() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string folder(path);
    folder.erase(folder.find_last_of('\\') + 1);
    return LoadLibraryA((folder + "mfc42.dll").c_str());
}

TEST(HostProfileTest, ReadsAndWritesTheHostsSettingsThroughItsApplicationObject) {
    DeleteProfileKeys();
    HostProfile profile;
    std::string registryKey, profileName;
    if (!GetModuleHandleA("MFC42.DLL")) {
        // No run time in the process: nothing to read, nowhere to write.
        EXPECT_EQ(profile.GetString("Settings", "LastExpanded"), "");
        EXPECT_FALSE(profile.GetRegistryLocation(registryKey, profileName));
        profile.WriteString("Settings", "LastExpanded", "nowhere");
    }

    HMODULE runtime = LoadStandInRuntime();
    ASSERT_NE(runtime, nullptr) << "mfc42.dll (the stand-in) is built with pwhost";
    using CountFn = int (*)();
    auto liveStrings =
        reinterpret_cast<CountFn>(reinterpret_cast<void*>(GetProcAddress(runtime, "StandInLiveStrings")));
    ASSERT_NE(liveStrings, nullptr);
    int stringsBefore = liveStrings();

    ASSERT_TRUE(profile.GetRegistryLocation(registryKey, profileName));
    EXPECT_EQ(registryKey, "SlidewaveTests");
    EXPECT_EQ(profileName, "pwhost");

    EXPECT_EQ(profile.GetString("Settings", "LastExpanded"), "");
    profile.WriteString("Settings", "LastExpanded", "Products & more");
    EXPECT_EQ(RegistryText(std::string(kProfileKey) + "\\Settings", "LastExpanded"), "Products & more");
    EXPECT_EQ(profile.GetString("Settings", "LastExpanded"), "Products & more");
    // The strings the run time handed back were all given back to it.
    EXPECT_EQ(liveStrings(), stringsBefore);

    DeleteProfileKeys();
}

}  // namespace
