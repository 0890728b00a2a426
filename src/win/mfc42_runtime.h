#pragma once
// The host's shared MFC 4.2 run time (MFC42.DLL), bound at run time by
// ordinal. The plug-in links no MFC: it reaches the few members it needs
// through GetProcAddress(MAKEINTRESOURCE(ordinal)) on the DLL the host has
// loaded, with the member functions' thiscall convention spelled out.
//
// Every binding is checked. When one is missing the operation that needs it
// degrades: no string is constructed, nothing is read or written, no
// exception is raised, and the caller carries on with empty results.
#include <windows.h>

#include <string_view>

namespace mfc42 {

// The ordinals of MFC42.DLL (the ANSI release run time) that the plug-in uses.
enum Ordinal : WORD {
    kDynLinkLibrary = 342,          // CDynLinkLibrary(module&, BOOL)
    kStringFromBytes = 538,         // CString::CString(LPCSTR, int)
    kStringDefault = 540,           // CString::CString()
    kStringDestructor = 800,        // CString::~CString()
    kGetAppModuleState = 1154,      // AFX_MODULE_STATE* AfxGetAppModuleState()
    kGetModuleState = 1168,         // AFX_MODULE_STATE* AfxGetModuleState()
    kInitExtensionModule = 1182,    // AfxInitExtensionModule(module&, HINSTANCE)
    kTermExtensionModule = 1253,    // AfxTermExtensionModule(module&, BOOL)
    kThrowArchiveException = 1259,  // AfxThrowArchiveException(int, LPCSTR)
    kStringGetBufferSetLength = 2919,
    kGetProfileString = 3522,  // CString CWinApp::GetProfileString(section, entry, default)
    kArchiveRead = 5440,       // UINT CArchive::Read(void*, UINT)
    kStringReleaseBuffer = 5572,
    kArchiveWrite = 6383,        // void CArchive::Write(const void*, UINT)
    kWriteProfileString = 6403,  // BOOL CWinApp::WriteProfileString(section, entry, value)
};

// The function that module exports under ordinal, or null (also for a null
// module).
template <typename Fn>
Fn BindOrdinal(HMODULE module, WORD ordinal) {
    if (!module) return nullptr;
    return reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(module, MAKEINTRESOURCEA(ordinal))));
}

// MFC's CString: one pointer to the characters, which follow a 12-byte
// header (reference count, length, allocated length). Storage belongs to
// MFC42.DLL's allocator; only its own members create, change or free it.
struct CStringLayout {
    char* m_pchData;
};

// The view of a string's bytes (its stored length, embedded zeros kept).
std::string_view View(const CStringLayout* s);

// Constructs a string in place at result as CString(data, length) does
// (binary-safe); when that constructor is missing, as CString(). Returns
// false when neither exists, with result left untouched.
bool ConstructString(CStringLayout* result, std::string_view bytes);

// Replaces the contents of an existing string through GetBufferSetLength and
// ReleaseBuffer. False (string unchanged) when either is missing.
bool AssignString(CStringLayout* target, std::string_view bytes);

// CArchive: the mode bit and the byte transfer through its own Read and Write.
bool IsLoading(const void* archive);
bool CanTransfer();
// Bytes read; fewer than size at the end of the archive. 0 without binding.
std::size_t ArchiveRead(void* archive, void* destination, std::size_t size);
void ArchiveWrite(void* archive, const void* bytes, std::size_t size);

// Raises CArchiveException(endOfFile) for the archive, the way the archive
// itself does when its data ends early. The exception is an MSVC C++
// exception: it unwinds to the host without running any destructor of ours,
// so call this only from a frame that holds nothing. Returns only when the
// function cannot be bound.
void ThrowEndOfFile(void* archive);

// Extension-module registration with the run time (process attach/detach).
// Both do nothing when MFC42.DLL is not loaded or lacks the functions.
bool InitExtensionModule(HINSTANCE instance);
void TermExtensionModule();

}  // namespace mfc42
