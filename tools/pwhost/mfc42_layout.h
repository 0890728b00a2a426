#pragma once
// The few MFC 4.2 classes that cross the plug-in boundary, declared with the
// shared run time's layouts. Compiled only with clang in MSVC mode, by the
// stand-in run time (mfc42_standin.cpp, which defines the members) and by
// pwhost (which imports them from mfc42.dll by ordinal, as a real host does).
// No C++ library is available in this mode: plain types only.
#include "msvc_freestanding.h"

class CString {
public:
    CString();
    CString(const CString& other);
    CString(const char* text);
    CString(const char* text, int length);
    ~CString();
    const CString& operator=(const CString& other);
    const CString& operator=(const char* text);
    char* GetBuffer(int minLength);
    void ReleaseBuffer(int newLength);
    char* GetBufferSetLength(int newLength);

    // Inline in MFC as well: read straight from the header before the text.
    int GetLength() const { return reinterpret_cast<const int*>(m_pchData)[-2]; }
    const char* GetText() const { return m_pchData; }

    char* m_pchData;
};

// 12 bytes in front of every string's characters.
struct CStringData {
    long nRefs;  // below 0: the shared empty string, never freed
    int nDataLength;
    int nAllocLength;
    char* data() { return reinterpret_cast<char*>(this + 1); }
};

class CFile;

class CArchive {
public:
    enum Mode { store = 0, load = 1, bNoFlushOnDelete = 2, bNoByteSwap = 4 };

    UINT Read(void* buffer, UINT maxBytes);
    void Write(const void* buffer, UINT bytes);
    void Flush();
    void FillBuffer(UINT bytesNeeded);

    void* m_pDocument;             // 0x00
    BOOL m_bForceFlat;             // 0x04
    BOOL m_bDirectBuffer;          // 0x08
    UINT m_nObjectSchema;          // 0x0C
    CString m_strFileName;         // 0x10
    BOOL m_nMode;                  // 0x14
    BOOL m_bUserBuf;               // 0x18
    int m_nBufSize;                // 0x1C
    CFile* m_pFile;                // 0x20
    BYTE* m_lpBufCur;              // 0x24
    BYTE* m_lpBufMax;              // 0x28
    BYTE* m_lpBufStart;            // 0x2C
    UINT m_nMapCount;              // 0x30
    void* m_pLoadArrayOrStoreMap;  // 0x34
    void* m_pSchemaMap;            // 0x38
    int m_nGrowSize;               // 0x3C
    int m_nHashSize;               // 0x40
};
static_assert(sizeof(CArchive) == 0x44, "CArchive layout");

class CException {
public:
    virtual ~CException() {}
    BOOL m_bAutoDelete;
};

class CArchiveException : public CException {
public:
    enum { none, generic, readOnly, endOfFile, writeOnly, badIndex, badClass, badSchema };
    int m_cause;            // 0x08
    CString m_strFileName;  // 0x0C
};

struct AFX_EXTENSION_MODULE {
    BOOL bInitialized;
    HMODULE hModule;
    HMODULE hResource;
    void* pFirstSharedClass;
    void* pFirstSharedFactory;
};

class CDynLinkLibrary {
public:
    CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL system);
    virtual ~CDynLinkLibrary();
    BYTE m_cmdTarget[0x1C];  // CCmdTarget's members after its vptr
    HMODULE m_hModule;
    HMODULE m_hResource;
    void* m_classList[2];
    void* m_factoryList[2];
    BOOL m_bSystem;
    CDynLinkLibrary* m_pNextDLL;
};
static_assert(sizeof(CDynLinkLibrary) == 0x40, "CDynLinkLibrary layout");

void __stdcall AfxThrowArchiveException(int cause, const char* archiveName);
BOOL __stdcall AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, HINSTANCE instance);
void __stdcall AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL all);
const CString& __stdcall AfxGetEmptyString();
