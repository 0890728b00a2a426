#pragma once
// The plug-in as an MSVC-built host sees it: an abstract class whose virtual
// functions, in this order, are the slots of the object's table, and the four
// plain exports. Compiled with clang in MSVC mode, so every call below uses
// Microsoft's conventions (thiscall, CString results through a hidden
// pointer, references as pointers).
#include "mfc42_layout.h"

class CPagewrightExtension {
public:
    virtual ~CPagewrightExtension() = 0;
    virtual int GetVersion() = 0;
    virtual void Draw(HDC dc, const RECT* rect) = 0;
    virtual void Properties(HWND parent) = 0;
    virtual CString GetHtml(const char* pageContext) = 0;
    virtual CString GetHeaderHtml() = 0;
    virtual int CopyFiles(const char* outputFolder, const char* imageFolder) = 0;
    virtual void Move(const RECT* rect) = 0;
    virtual void Serialize(CArchive& archive) = 0;
    virtual int UseDIV() = 0;
    virtual void GetMinimumSize(int& width, int& height) = 0;
    virtual CString GetBkColor() = 0;
    virtual CString GetBkImage() = 0;
    virtual CString GetUniqueName() = 0;
    virtual void SetUniqueName(const char* name) = 0;
    virtual void SetSiteStructure(const char* text) = 0;
    virtual void SetID(int id) = 0;
    virtual int IncludePngFix() = 0;
    virtual int GetURLCount() = 0;
    virtual CString GetURL(int index) = 0;
    virtual void SetURL(int index, const char* url) = 0;
    virtual CString GetStartofPageHTML() = 0;
};

typedef CPagewrightExtension* (*CreateExtensionObjectFn)();
typedef void (*DeleteExtensionObjectFn)(CPagewrightExtension* object);
typedef HBITMAP (*GetToolbarBitmapFn)();
typedef int (*GetToolbarTextFn)(char* buffer, int size);
