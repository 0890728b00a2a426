// A stand-in for the shared MFC 4.2 run time, for pwhost and the tests (never shipped).
// It implements just the members the plug-in binds by ordinal and the host
// stand-in imports, with MFC 4.2's layouts and behaviour: reference-counted
// strings with their 12-byte header and one shared empty string, an archive
// whose buffer fields move as MFC's do, the end-of-file exception thrown as a
// real MSVC C++ exception of a CArchiveException*, and the extension-module
// list. A few plain-named exports (StandIn*) let pwhost make archives and
// look inside.
//
// The host's application object is there too, with a registry key and a
// profile name, so the plug-in reads and writes the host's settings the way
// it does in the editor (HKCU\Software\SlidewaveTests\pwhost\<section>).
//
// Beyond MFC, every string block carries a guard word, so freeing a string
// that did not come from here (a plug-in forging MFC strings) is caught.
#include "mfc42_layout.h"

namespace {

const DWORD kGuard = 0x4d464332;  // "MFC2"

struct StringBlock {
    DWORD guard;
    CStringData data;
};

struct EmptyString {
    CStringData data;
    char text[4];
};
EmptyString g_empty = {{-1, 0, 0}, {0}};
// What AfxGetEmptyString hands out: a CString's one pointer, set at attach
// (there is no start-up code to run constructors of globals).
struct {
    char* m_pchData;
} g_emptyString;

LONG g_liveStrings = 0;
LONG g_foreignFrees = 0;

char* NilText() { return g_empty.text; }
CStringData* DataOf(const CString* s) { return reinterpret_cast<CStringData*>(s->m_pchData) - 1; }

char* AllocText(int length) {
    if (length <= 0) return NilText();
    auto* block = static_cast<StringBlock*>(malloc(sizeof(StringBlock) + length + 1));
    if (!block) ExitProcess(99);
    block->guard = kGuard;
    block->data.nRefs = 1;
    block->data.nDataLength = length;
    block->data.nAllocLength = length;
    block->data.data()[length] = 0;
    InterlockedIncrement(&g_liveStrings);
    return block->data.data();
}

void FreeData(CStringData* data) {
    StringBlock* block = reinterpret_cast<StringBlock*>(reinterpret_cast<BYTE*>(data) - sizeof(DWORD));
    if (block->guard != kGuard) {
        // Not ours: report and leave it alone rather than corrupt the heap.
        InterlockedIncrement(&g_foreignFrees);
        return;
    }
    block->guard = 0;
    InterlockedDecrement(&g_liveStrings);
    free(block);
}

void Release(CString* s) {
    if (s->m_pchData != NilText()) {
        CStringData* data = DataOf(s);
        if (InterlockedDecrement(&data->nRefs) <= 0) FreeData(data);
        s->m_pchData = NilText();
    }
}

void AssignCopy(CString* s, int length, const char* source) {
    CStringData* data = DataOf(s);
    if (data->nRefs > 1 || length > data->nAllocLength) {
        Release(s);
        s->m_pchData = AllocText(length);
    }
    if (s->m_pchData != NilText()) {
        memcpy(s->m_pchData, source, length);
        DataOf(s)->nDataLength = length;
        s->m_pchData[length] = 0;
    }
}

// Makes the string's buffer its own, at least minLength long.
void MakeWritable(CString* s, int minLength) {
    CStringData* old = DataOf(s);
    if (old->nRefs > 1 || minLength > old->nAllocLength) {
        int oldLength = old->nDataLength;
        char* oldText = s->m_pchData;
        int length = minLength > oldLength ? minLength : oldLength;
        s->m_pchData = AllocText(length);
        memcpy(s->m_pchData, oldText, oldLength + 1);
        DataOf(s)->nDataLength = oldLength;
        if (oldText != NilText() && InterlockedDecrement(&old->nRefs) <= 0) FreeData(old);
    }
}

}  // namespace

// --- CString ------------------------------------------------------------------

CString::CString() { m_pchData = NilText(); }

CString::CString(const CString& other) {
    CStringData* data = DataOf(&other);
    if (data->nRefs >= 0) {
        m_pchData = other.m_pchData;
        InterlockedIncrement(&data->nRefs);
    } else {
        m_pchData = NilText();
        AssignCopy(this, data->nDataLength, other.m_pchData);
    }
}

CString::CString(const char* text) {
    m_pchData = NilText();
    int length = text ? static_cast<int>(strlen(text)) : 0;
    if (length > 0) {
        m_pchData = AllocText(length);
        memcpy(m_pchData, text, length);
    }
}

CString::CString(const char* text, int length) {
    m_pchData = NilText();
    if (length != 0) {
        m_pchData = AllocText(length);
        memcpy(m_pchData, text, length);
    }
}

CString::~CString() { Release(this); }

const CString& CString::operator=(const CString& other) {
    if (m_pchData != other.m_pchData) {
        if ((DataOf(this)->nRefs < 0 && m_pchData != NilText()) || DataOf(&other)->nRefs < 0) {
            AssignCopy(this, DataOf(&other)->nDataLength, other.m_pchData);
        } else {
            Release(this);
            m_pchData = other.m_pchData;
            InterlockedIncrement(&DataOf(this)->nRefs);
        }
    }
    return *this;
}

const CString& CString::operator=(const char* text) {
    AssignCopy(this, text ? static_cast<int>(strlen(text)) : 0, text);
    return *this;
}

char* CString::GetBuffer(int minLength) {
    MakeWritable(this, minLength);
    return m_pchData;
}

void CString::ReleaseBuffer(int newLength) {
    MakeWritable(this, 0);
    if (newLength == -1) newLength = static_cast<int>(strlen(m_pchData));
    if (m_pchData == NilText()) return;
    DataOf(this)->nDataLength = newLength;
    m_pchData[newLength] = 0;
}

char* CString::GetBufferSetLength(int newLength) {
    GetBuffer(newLength);
    if (m_pchData != NilText()) {
        DataOf(this)->nDataLength = newLength;
        m_pchData[newLength] = 0;
    }
    return m_pchData;
}

const CString& __stdcall AfxGetEmptyString() { return *reinterpret_cast<CString*>(&g_emptyString); }

// --- CArchive over a memory file ----------------------------------------------

class CFile {
public:
    BYTE* bytes = nullptr;
    UINT size = 0;
    UINT capacity = 0;
    UINT position = 0;

    UINT Read(void* to, UINT count) {
        UINT left = size - position;
        if (count > left) count = left;
        memcpy(to, bytes + position, count);
        position += count;
        return count;
    }
    void Write(const void* from, UINT count) {
        if (position + count > capacity) {
            UINT grown = (position + count) * 2 + 64;
            bytes = static_cast<BYTE*>(realloc(bytes, grown));
            if (!bytes) ExitProcess(99);
            capacity = grown;
        }
        memcpy(bytes + position, from, count);
        position += count;
        if (position > size) size = position;
    }
};

UINT CArchive::Read(void* buffer, UINT maxBytes) {
    BYTE* to = static_cast<BYTE*>(buffer);
    UINT left = maxBytes;
    while (left > 0) {
        UINT available = static_cast<UINT>(m_lpBufMax - m_lpBufCur);
        if (available == 0) {
            // Refill the whole buffer from the file; stop quietly at its end.
            m_lpBufCur = m_lpBufStart;
            m_lpBufMax = m_lpBufStart + m_pFile->Read(m_lpBufStart, m_nBufSize);
            available = static_cast<UINT>(m_lpBufMax - m_lpBufCur);
            if (available == 0) break;
        }
        UINT take = left < available ? left : available;
        memcpy(to, m_lpBufCur, take);
        m_lpBufCur += take;
        to += take;
        left -= take;
    }
    return maxBytes - left;
}

void CArchive::Write(const void* buffer, UINT bytes) {
    const BYTE* from = static_cast<const BYTE*>(buffer);
    while (bytes > 0) {
        UINT room = static_cast<UINT>(m_lpBufMax - m_lpBufCur);
        if (room == 0) {
            Flush();
            room = static_cast<UINT>(m_lpBufMax - m_lpBufCur);
        }
        UINT take = bytes < room ? bytes : room;
        memcpy(m_lpBufCur, from, take);
        m_lpBufCur += take;
        from += take;
        bytes -= take;
    }
}

void CArchive::Flush() {
    if ((m_nMode & load) == 0) {
        m_pFile->Write(m_lpBufStart, static_cast<UINT>(m_lpBufCur - m_lpBufStart));
        m_lpBufCur = m_lpBufStart;
    }
}

void CArchive::FillBuffer(UINT bytesNeeded) {
    UINT unread = static_cast<UINT>(m_lpBufMax - m_lpBufCur);
    memmove(m_lpBufStart, m_lpBufCur, unread);
    m_lpBufCur = m_lpBufStart;
    m_lpBufMax = m_lpBufStart + unread + m_pFile->Read(m_lpBufStart + unread, m_nBufSize - unread);
    if (static_cast<UINT>(m_lpBufMax - m_lpBufCur) < bytesNeeded)
        AfxThrowArchiveException(CArchiveException::endOfFile, m_strFileName.m_pchData);
}

void __stdcall AfxThrowArchiveException(int cause, const char* archiveName) {
    CArchiveException* e = new CArchiveException;
    e->m_bAutoDelete = TRUE;
    e->m_cause = cause;
    e->m_strFileName.m_pchData = NilText();
    e->m_strFileName = archiveName;
    throw e;
}

// --- extension modules --------------------------------------------------------

namespace {
CDynLinkLibrary* g_libraries = nullptr;
}

BOOL __stdcall AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, HINSTANCE instance) {
    if (!module.bInitialized) {
        module.hModule = instance;
        module.hResource = instance;
        module.bInitialized = TRUE;
    }
    return TRUE;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL system) {
    memset(m_cmdTarget, 0, sizeof m_cmdTarget);
    m_hModule = module.hModule;
    m_hResource = module.hResource;
    m_classList[0] = m_classList[1] = nullptr;
    m_factoryList[0] = m_factoryList[1] = nullptr;
    m_bSystem = system;
    m_pNextDLL = g_libraries;
    g_libraries = this;
}

CDynLinkLibrary::~CDynLinkLibrary() {
    for (CDynLinkLibrary** link = &g_libraries; *link; link = &(*link)->m_pNextDLL) {
        if (*link == this) {
            *link = m_pNextDLL;
            break;
        }
    }
}

void __stdcall AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL all) {
    if (!module.bInitialized) return;
    for (CDynLinkLibrary* library = g_libraries; library;) {
        CDynLinkLibrary* next = library->m_pNextDLL;
        if (all || library->m_hModule == module.hModule) delete library;
        library = next;
    }
}

// --- the application object and its profile -----------------------------------

// CWinApp's members that the plug-in reads, at their MFC 4.2 offsets.
class CWinApp {
public:
    CString GetProfileStringA(const char* section, const char* entry, const char* defaultText);
    BOOL WriteProfileStringA(const char* section, const char* entry, const char* value);

    BYTE m_threadAndAppName[0x80];  // CWinThread, m_hInstance ... m_pszAppName
    const char* m_pszRegistryKey;   // 0x80
    BYTE m_documentsAndHelp[0x10];  // m_pDocManager, m_bHelpMode, m_pszExeName, m_pszHelpFilePath
    const char* m_pszProfileName;   // 0x94
    BYTE m_rest[0xC4 - 0x98];
};
static_assert(sizeof(CWinApp) == 0xC4, "CWinApp layout");

// AFX_MODULE_STATE up to the application object.
class AFX_MODULE_STATE {
public:
    void* m_vtable;
    CWinApp* m_pCurrentWinApp;  // 0x04
};

namespace {

CWinApp g_app;
AFX_MODULE_STATE g_moduleState;

// HKCU\Software\<registry key>\<profile name>\<section>, created as MFC's
// GetSectionKey does; null when it cannot be opened.
HKEY OpenSectionKey(const CWinApp& app, const char* section) {
    if (!app.m_pszRegistryKey || !app.m_pszProfileName || !section) return nullptr;
    char path[512];
    _snprintf(path, sizeof path, "Software\\%s\\%s\\%s", app.m_pszRegistryKey, app.m_pszProfileName, section);
    path[sizeof path - 1] = 0;
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE, nullptr,
                        &key, nullptr) != ERROR_SUCCESS)
        return nullptr;
    return key;
}

}  // namespace

AFX_MODULE_STATE* __stdcall AfxGetModuleState() { return &g_moduleState; }
AFX_MODULE_STATE* __stdcall AfxGetAppModuleState() { return &g_moduleState; }

CString CWinApp::GetProfileStringA(const char* section, const char* entry, const char* defaultText) {
    HKEY key = OpenSectionKey(*this, section);
    if (key && entry) {
        char value[2048];
        DWORD size = sizeof value - 1;
        DWORD kind = 0;
        LONG status = RegQueryValueExA(key, entry, nullptr, &kind, reinterpret_cast<BYTE*>(value), &size);
        RegCloseKey(key);
        if (status == ERROR_SUCCESS && kind == REG_SZ) {
            value[size] = 0;
            return CString(value);
        }
    } else if (key) {
        RegCloseKey(key);
    }
    return CString(defaultText);
}

BOOL CWinApp::WriteProfileStringA(const char* section, const char* entry, const char* value) {
    HKEY key = OpenSectionKey(*this, section);
    if (!key) return FALSE;
    LONG status = ERROR_SUCCESS;
    if (entry && value)
        status = RegSetValueExA(key, entry, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                                static_cast<DWORD>(strlen(value) + 1));
    else if (entry)
        status = RegDeleteValueA(key, entry);
    RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

// --- test-only entry points ---------------------------------------------------

extern "C" {

// An archive over a copy of bytes (loading) or over an empty file (storing),
// with a buffer of bufferSize bytes (small sizes exercise refills).
__declspec(dllexport) CArchive* StandInOpenArchive(BOOL loading, const void* bytes, UINT length, int bufferSize) {
    CFile* file = new CFile;
    if (loading && length > 0) {
        file->bytes = static_cast<BYTE*>(malloc(length));
        memcpy(file->bytes, bytes, length);
        file->size = file->capacity = length;
    }
    CArchive* archive = static_cast<CArchive*>(calloc(1, sizeof(CArchive)));
    archive->m_strFileName.m_pchData = NilText();
    archive->m_strFileName = "project.pwx";
    archive->m_nMode = loading ? CArchive::load : CArchive::store;
    archive->m_nBufSize = bufferSize > 0 ? bufferSize : 4096;
    archive->m_pFile = file;
    archive->m_lpBufStart = static_cast<BYTE*>(malloc(archive->m_nBufSize));
    archive->m_lpBufCur = archive->m_lpBufStart;
    archive->m_lpBufMax = loading ? archive->m_lpBufStart : archive->m_lpBufStart + archive->m_nBufSize;
    archive->m_nGrowSize = 1024;
    archive->m_nHashSize = 211;
    return archive;
}

// Flushes a storing archive and hands out the file's bytes.
__declspec(dllexport) UINT StandInArchiveContents(CArchive* archive, const BYTE** bytes) {
    archive->Flush();
    *bytes = archive->m_pFile->bytes;
    return archive->m_pFile->size;
}

__declspec(dllexport) void StandInCloseArchive(CArchive* archive) {
    free(archive->m_pFile->bytes);
    delete archive->m_pFile;
    free(archive->m_lpBufStart);
    archive->m_strFileName.~CString();
    free(archive);
}

__declspec(dllexport) int StandInLiveStrings() { return g_liveStrings; }
__declspec(dllexport) int StandInForeignFrees() { return g_foreignFrees; }

// How many CDynLinkLibrary objects name this module.
__declspec(dllexport) int StandInLibrariesOf(HMODULE module) {
    int count = 0;
    for (CDynLinkLibrary* library = g_libraries; library; library = library->m_pNextDLL)
        if (library->m_hModule == module) ++count;
    return count;
}

BOOL WINAPI StandInDllMain(HINSTANCE, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_emptyString.m_pchData = NilText();
        g_app.m_pszRegistryKey = "SlidewaveTests";
        g_app.m_pszProfileName = "pwhost";
        g_moduleState.m_pCurrentWinApp = &g_app;
    }
    return TRUE;
}

}  // extern "C"
