#include "render/gdiplus_runtime.h"

namespace gdiplus {
namespace {

struct StartupInput {
    UINT32 version;
    void* debugEventCallback;
    BOOL suppressBackgroundThread;
    BOOL suppressExternalCodecs;
};

using StartupFunction = Status(WINAPI*)(ULONG_PTR*, const StartupInput*, void*);
using ShutdownFunction = void(WINAPI*)(ULONG_PTR);

template <typename Function>
bool Bind(HMODULE library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    return function != nullptr;
}

bool ProcessIsEnding() {
    using Query = BOOLEAN(WINAPI*)();
    HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    auto query =
        ntdll ? reinterpret_cast<Query>(reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlDllShutdownInProgress")))
              : nullptr;
    return query && query();
}

// The process-wide instance. Constructed when the module loads (nothing
// but the critical section), destroyed when it unloads.
class SharedInstance {
public:
    SharedInstance() { InitializeCriticalSection(&lock_); }

    // When the host unloads the plug-in, GDI+ is shut down and freed. When
    // the whole process ends, GDI+ may already have been detached before
    // us, so it is left to the system.
    ~SharedInstance() {
        if (!ProcessIsEnding()) {
            Shutdown();
            if (library_) FreeLibrary(library_);
        }
        DeleteCriticalSection(&lock_);
    }

    const FlatApi* Start() {
        EnterCriticalSection(&lock_);
        const FlatApi* result = StartLocked() ? &api_ : nullptr;
        LeaveCriticalSection(&lock_);
        return result;
    }

    void Shutdown() {
        EnterCriticalSection(&lock_);
        if (token_ && shutdown_) shutdown_(token_);
        token_ = 0;
        LeaveCriticalSection(&lock_);
    }

    bool IsStarted() {
        EnterCriticalSection(&lock_);
        bool started = token_ != 0;
        LeaveCriticalSection(&lock_);
        return started;
    }

private:
    bool StartLocked() {
        if (!bound_ && !LoadAndBind()) return false;
        if (token_) return true;
        StartupInput input = {1, nullptr, FALSE, FALSE};
        ULONG_PTR token = 0;
        if (startup_(&token, &input, nullptr) != kOk || !token) return false;
        token_ = token;
        return true;
    }

    bool LoadAndBind() {
        if (!library_) library_ = LoadLibraryA("GDIPLUS.DLL");
        if (!library_) return false;
        bound_ = Bind(library_, "GdiplusStartup", startup_) && Bind(library_, "GdiplusShutdown", shutdown_) &&
                 Bind(library_, "GdipDisposeImage", api_.DisposeImage) &&
                 Bind(library_, "GdipCreateBitmapFromFile", api_.CreateBitmapFromFile) &&
                 Bind(library_, "GdipCreateBitmapFromScan0", api_.CreateBitmapFromScan0) &&
                 Bind(library_, "GdipGetImagePixelFormat", api_.GetImagePixelFormat) &&
                 Bind(library_, "GdipGetImageWidth", api_.GetImageWidth) &&
                 Bind(library_, "GdipGetImageHeight", api_.GetImageHeight) &&
                 Bind(library_, "GdipGetImagePaletteSize", api_.GetImagePaletteSize) &&
                 Bind(library_, "GdipGetImagePalette", api_.GetImagePalette) &&
                 Bind(library_, "GdipBitmapLockBits", api_.BitmapLockBits) &&
                 Bind(library_, "GdipBitmapUnlockBits", api_.BitmapUnlockBits) &&
                 Bind(library_, "GdipGetImageGraphicsContext", api_.GetImageGraphicsContext) &&
                 Bind(library_, "GdipDrawImageRectI", api_.DrawImageRectI) &&
                 Bind(library_, "GdipDeleteGraphics", api_.DeleteGraphics);
        return bound_;
    }

    CRITICAL_SECTION lock_;
    HMODULE library_ = nullptr;
    bool bound_ = false;
    ULONG_PTR token_ = 0;
    StartupFunction startup_ = nullptr;
    ShutdownFunction shutdown_ = nullptr;
    FlatApi api_ = {};
};

SharedInstance instance;

}  // namespace

const FlatApi* Start() { return instance.Start(); }
void Shutdown() { instance.Shutdown(); }
bool IsStarted() { return instance.IsStarted(); }

}  // namespace gdiplus
