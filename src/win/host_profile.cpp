#include "win/host_profile.h"

#include <windows.h>

#include "win/mfc42_runtime.h"
#include "win/thiscall.h"

namespace {

// AFX_MODULE_STATE: the vtable pointer, then the application object.
constexpr std::size_t kCurrentWinAppOffset = 0x04;
// CWinApp (MFC 4.2 release layout, 4-byte packing).
constexpr std::size_t kRegistryKeyOffset = 0x80;  // LPCTSTR m_pszRegistryKey
constexpr std::size_t kProfileNameOffset = 0x94;  // LPCTSTR m_pszProfileName

using ModuleStateFn = void*(WINAPI*)();
// The CString comes back through a hidden pointer that precedes the
// arguments; the callee constructs it there and returns that pointer.
using GetProfileStringFn = mfc42::CStringLayout*(PW_THISCALL*)(void* app, mfc42::CStringLayout* result,
                                                               const char* section, const char* entry,
                                                               const char* defaultText);
using WriteProfileStringFn = BOOL(PW_THISCALL*)(void* app, const char* section, const char* entry, const char* value);
using StringDestructorFn = void(PW_THISCALL*)(mfc42::CStringLayout* self);

struct Bindings {
    ModuleStateFn appModuleState = nullptr;
    ModuleStateFn moduleState = nullptr;
    GetProfileStringFn getProfileString = nullptr;
    WriteProfileStringFn writeProfileString = nullptr;
    StringDestructorFn stringDestructor = nullptr;
};

// Bound on each use from the run time the host has loaded (never loaded
// here): a handful of GetProcAddress calls per dialog.
Bindings Bound() {
    Bindings b;
    HMODULE module = GetModuleHandleA("MFC42.DLL");
    b.appModuleState = mfc42::BindOrdinal<ModuleStateFn>(module, mfc42::kGetAppModuleState);
    b.moduleState = mfc42::BindOrdinal<ModuleStateFn>(module, mfc42::kGetModuleState);
    b.getProfileString = mfc42::BindOrdinal<GetProfileStringFn>(module, mfc42::kGetProfileString);
    b.writeProfileString = mfc42::BindOrdinal<WriteProfileStringFn>(module, mfc42::kWriteProfileString);
    b.stringDestructor = mfc42::BindOrdinal<StringDestructorFn>(module, mfc42::kStringDestructor);
    return b;
}

void* AppOf(ModuleStateFn state) {
    if (!state) return nullptr;
    auto* moduleState = static_cast<BYTE*>(state());
    return moduleState ? *reinterpret_cast<void**>(moduleState + kCurrentWinAppOffset) : nullptr;
}

// The host's application object: registered in the application's own
// module state, which a thread's module-state override does not hide.
void* HostApp(const Bindings& b) {
    if (void* app = AppOf(b.appModuleState)) return app;
    return AppOf(b.moduleState);
}

const char* MemberText(void* app, std::size_t offset) {
    return *reinterpret_cast<const char* const*>(static_cast<const BYTE*>(app) + offset);
}

}  // namespace

std::string HostProfile::GetString(const char* section, const char* entry) {
    Bindings b = Bound();
    void* app = HostApp(b);
    if (!app || !b.getProfileString || !b.stringDestructor) return {};
    mfc42::CStringLayout result = {nullptr};
    b.getProfileString(app, &result, section, entry, "");
    std::string text(mfc42::View(&result));
    b.stringDestructor(&result);
    return text;
}

void HostProfile::WriteString(const char* section, const char* entry, const std::string& value) {
    Bindings b = Bound();
    void* app = HostApp(b);
    if (app && b.writeProfileString) b.writeProfileString(app, section, entry, value.c_str());
}

bool HostProfile::GetRegistryLocation(std::string& registryKey, std::string& profileName) {
    void* app = HostApp(Bound());
    if (!app) return false;
    const char* key = MemberText(app, kRegistryKeyOffset);
    const char* profile = MemberText(app, kProfileNameOffset);
    // Without a registry key the host keeps its settings in a file.
    if (!key || !*key || !profile || !*profile) return false;
    registryKey = key;
    profileName = profile;
    return true;
}

HostProfile& TheHostProfile() {
    static HostProfile profile;
    return profile;
}

namespace {
// The dialogs ask the host from the moment the plug-in is loaded; asking
// binds nothing until a dialog actually needs a setting.
const bool g_installed = (InstallHostSettings(&TheHostProfile()), true);
}  // namespace
