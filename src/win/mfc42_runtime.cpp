#include "win/mfc42_runtime.h"

#include <cstdlib>
#include <cstring>

#include "win/thiscall.h"

namespace mfc42 {
namespace {

using StringDefaultFn = void*(PW_THISCALL*)(CStringLayout* self);
using StringFromBytesFn = void*(PW_THISCALL*)(CStringLayout* self, const char* text, int length);
using GetBufferSetLengthFn = char*(PW_THISCALL*)(CStringLayout* self, int length);
using ReleaseBufferFn = void(PW_THISCALL*)(CStringLayout* self, int length);
using ArchiveReadFn = UINT(PW_THISCALL*)(void* archive, void* destination, UINT size);
using ArchiveWriteFn = void(PW_THISCALL*)(void* archive, const void* bytes, UINT size);
using DynLinkLibraryFn = void*(PW_THISCALL*)(void* self, void* module, BOOL system);
using ThrowArchiveExceptionFn = void(WINAPI*)(int cause, const char* archiveName);
using InitExtensionModuleFn = BOOL(WINAPI*)(void* module, HINSTANCE instance);
using TermExtensionModuleFn = void(WINAPI*)(void* module, BOOL all);

// CArchive members read directly (MFC 4.2 layout, 4-byte packing).
constexpr std::size_t kArchiveFileNameOffset = 0x10;  // CString m_strFileName
constexpr std::size_t kArchiveModeOffset = 0x14;      // UINT m_nMode
constexpr UINT kArchiveLoad = 1;
constexpr int kEndOfFile = 3;  // CArchiveException::endOfFile

// AFX_EXTENSION_MODULE: bInitialized, hModule, hResource and the two
// shared-class lists. The run time fills it; we only hold the storage.
struct ExtensionModule {
    BOOL bInitialized;
    HMODULE hModule;
    HMODULE hResource;
    void* pFirstSharedClass;
    void* pFirstSharedFactory;
};
ExtensionModule g_module = {};

// CDynLinkLibrary is 0x40 bytes with MFC42.DLL; the run time deletes it with
// its own operator delete (the shared msvcrt heap, as malloc here).
constexpr std::size_t kDynLinkLibrarySize = 0x40;
constexpr std::size_t kDynLinkLibraryAllocation = 0x80;

HMODULE FindRuntime(bool mayLoad) {
    HMODULE module = GetModuleHandleA("MFC42.DLL");
    if (!module && mayLoad) module = LoadLibraryA("MFC42.DLL");
    return module;
}

// Bound once on first use, after the host has loaded its run time.
struct Bindings {
    StringDefaultFn stringDefault = nullptr;
    StringFromBytesFn stringFromBytes = nullptr;
    GetBufferSetLengthFn getBufferSetLength = nullptr;
    ReleaseBufferFn releaseBuffer = nullptr;
    ArchiveReadFn archiveRead = nullptr;
    ArchiveWriteFn archiveWrite = nullptr;
    ThrowArchiveExceptionFn throwArchiveException = nullptr;

    Bindings() {
        HMODULE module = FindRuntime(true);
        stringDefault = BindOrdinal<StringDefaultFn>(module, kStringDefault);
        stringFromBytes = BindOrdinal<StringFromBytesFn>(module, kStringFromBytes);
        getBufferSetLength = BindOrdinal<GetBufferSetLengthFn>(module, kStringGetBufferSetLength);
        releaseBuffer = BindOrdinal<ReleaseBufferFn>(module, kStringReleaseBuffer);
        archiveRead = BindOrdinal<ArchiveReadFn>(module, kArchiveRead);
        archiveWrite = BindOrdinal<ArchiveWriteFn>(module, kArchiveWrite);
        throwArchiveException = BindOrdinal<ThrowArchiveExceptionFn>(module, kThrowArchiveException);
    }
};

const Bindings& Runtime() {
    static const Bindings bindings;
    return bindings;
}

// MFC lengths are ints; longer texts are cut rather than wrapped.
int ClampedLength(std::size_t size) { return size > 0x7fffffff ? 0x7fffffff : static_cast<int>(size); }

}  // namespace

std::string_view View(const CStringLayout* s) {
    if (!s || !s->m_pchData) return {};
    int length = reinterpret_cast<const int*>(s->m_pchData)[-2];
    return length > 0 ? std::string_view(s->m_pchData, static_cast<std::size_t>(length)) : std::string_view();
}

bool ConstructString(CStringLayout* result, std::string_view bytes) {
    if (!result) return false;
    const Bindings& runtime = Runtime();
    if (runtime.stringFromBytes) {
        runtime.stringFromBytes(result, bytes.data(), ClampedLength(bytes.size()));
        return true;
    }
    if (runtime.stringDefault) {
        runtime.stringDefault(result);
        return true;
    }
    return false;
}

bool AssignString(CStringLayout* target, std::string_view bytes) {
    const Bindings& runtime = Runtime();
    if (!target || !target->m_pchData || !runtime.getBufferSetLength || !runtime.releaseBuffer) return false;
    int length = ClampedLength(bytes.size());
    char* buffer = runtime.getBufferSetLength(target, length);
    if (!buffer) return false;
    if (length > 0) std::memcpy(buffer, bytes.data(), static_cast<std::size_t>(length));
    runtime.releaseBuffer(target, length);
    return true;
}

bool IsLoading(const void* archive) {
    UINT mode = *reinterpret_cast<const UINT*>(static_cast<const BYTE*>(archive) + kArchiveModeOffset);
    return (mode & kArchiveLoad) != 0;
}

bool CanTransfer() { return Runtime().archiveRead && Runtime().archiveWrite; }

std::size_t ArchiveRead(void* archive, void* destination, std::size_t size) {
    const Bindings& runtime = Runtime();
    if (!runtime.archiveRead || size == 0) return 0;
    return runtime.archiveRead(archive, destination, static_cast<UINT>(ClampedLength(size)));
}

void ArchiveWrite(void* archive, const void* bytes, std::size_t size) {
    const Bindings& runtime = Runtime();
    if (!runtime.archiveWrite || size == 0) return;
    runtime.archiveWrite(archive, bytes, static_cast<UINT>(ClampedLength(size)));
}

void ThrowEndOfFile(void* archive) {
    ThrowArchiveExceptionFn thrower = Runtime().throwArchiveException;
    if (!thrower) return;
    const auto* fileName =
        reinterpret_cast<const CStringLayout*>(static_cast<const BYTE*>(archive) + kArchiveFileNameOffset);
    thrower(kEndOfFile, fileName->m_pchData);
}

bool InitExtensionModule(HINSTANCE instance) {
    // Only a run time that is already in the process: no loading from DllMain.
    HMODULE module = FindRuntime(false);
    auto init = BindOrdinal<InitExtensionModuleFn>(module, kInitExtensionModule);
    auto makeLibrary = BindOrdinal<DynLinkLibraryFn>(module, kDynLinkLibrary);
    if (!init || !makeLibrary || !BindOrdinal<TermExtensionModuleFn>(module, kTermExtensionModule)) return true;
    if (!init(&g_module, instance)) return false;
    // The run time owns the library object from here and deletes it in
    // AfxTermExtensionModule.
    static_assert(kDynLinkLibraryAllocation >= kDynLinkLibrarySize, "room for CDynLinkLibrary");
    void* library = std::calloc(1, kDynLinkLibraryAllocation);
    if (library) makeLibrary(library, &g_module, FALSE);
    return true;
}

void TermExtensionModule() {
    auto term = BindOrdinal<TermExtensionModuleFn>(FindRuntime(false), kTermExtensionModule);
    if (term && g_module.bInitialized) term(&g_module, FALSE);
}

}  // namespace mfc42
