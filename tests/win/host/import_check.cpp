// pwimportcheck: the plug-in used the way a host that links against its
// import library uses it, with a C++ declaration of the class (dllimport),
// so that every decorated name in the plug-in's export table is checked by
// the linker and every member is called once through the import:
//
//   pwimportcheck           prints one line per check, exit code 0 when all pass
//
// The declaration's data members are a placeholder: the plug-in's object
// needs two pointers, an importing host allocates its own idea of the size.
#include "mfc42_layout.h"

class CXmlElement;

class __declspec(dllimport) CPagewrightExtension {
public:
    CPagewrightExtension();
    virtual ~CPagewrightExtension();
    virtual int GetVersion();
    virtual void Draw(HDC, const RECT*);
    virtual void Properties(HWND);
    virtual CString GetHtml(const char*);
    virtual CString GetHeaderHtml();
    virtual int CopyFiles(const char*, const char*);
    virtual void Move(const RECT*);
    virtual void Serialize(CArchive&);
    virtual int UseDIV();
    virtual void GetMinimumSize(int&, int&);
    virtual CString GetBkColor();
    virtual CString GetBkImage();
    virtual CString GetUniqueName();
    virtual void SetUniqueName(const char*);
    virtual void SetSiteStructure(const char*);
    virtual void SetID(int);
    virtual int IncludePngFix();
    virtual int GetURLCount();
    virtual CString GetURL(int);
    virtual void SetURL(int, const char*);
    virtual CString GetStartofPageHTML();

protected:
    void ReplaceVariables(CString&);
    void UpdateHtml(int);
    CString GetGalleryCode(CXmlElement*, const char*, int);
    void ProcessFiles(CXmlElement*, const char*);
    void SetFont(LOGFONTA);

    char m_members[512];
};

extern "C" __declspec(dllimport) CPagewrightExtension* CreateExtensionObject();
extern "C" __declspec(dllimport) void DeleteExtensionObject(CPagewrightExtension*);
extern "C" __declspec(dllimport) int GetToolbarText(char*, int);
extern "C" __declspec(dllimport) HBITMAP GetToolbarBitmap();
// The class's table of virtual functions, as exported.
extern "C" __declspec(dllimport) const void* const PluginVftable[] __asm__("??_7CPagewrightExtension@@6B@");

namespace {

int g_failures = 0;

void Check(bool ok, const char* what) {
    printf("%s %s\n", ok ? "ok  " : "FAIL", what);
    if (!ok) ++g_failures;
}

// Reaches the protected members the way a derived class would.
class Probe : public CPagewrightExtension {
public:
    void CallProtected() {
        CString text("[$caption$]");
        ReplaceVariables(text);
        Check(strcmp(text.GetText(), "[Hello & welcome]") == 0, "ReplaceVariables rewrites the caller's CString");
        UpdateHtml(0);
        CString gallery = GetGalleryCode(nullptr, "<GALLERY/>", 1);
        Check(gallery.GetLength() == 0, "GetGalleryCode without a property is empty");
        ProcessFiles(nullptr, "");
        LOGFONTA font = {};
        SetFont(font);
        Check(true, "UpdateHtml, ProcessFiles and SetFont return");
    }
};

}  // namespace

int main() {
    char title[64];
    Check(GetToolbarText(title, sizeof title) == 5 && strcmp(title, "Plain") == 0, "GetToolbarText");
    HBITMAP bitmap = GetToolbarBitmap();
    Check(bitmap != nullptr, "GetToolbarBitmap");
    DeleteObject(bitmap);

    // Constructed in the host's own memory through the exported constructor.
    Probe* probe = static_cast<Probe*>(new CPagewrightExtension);
    Check(*reinterpret_cast<const void* const* const*>(probe) == PluginVftable,
          "the constructor installs the exported table");
    Check(probe->GetVersion() == 2, "GetVersion through the table");
    CString html = probe->GetHtml("");
    Check(strstr(html.GetText(), "Hello &amp; welcome") == nullptr &&
              strstr(html.GetText(), "Hello & welcome") != nullptr,
          "GetHtml returns the body");
    probe->CallProtected();
    // The deleting destructor (slot 0) frees with the shared heap.
    delete static_cast<CPagewrightExtension*>(probe);
    Check(true, "delete through the virtual destructor");

    // The object the plug-in allocates itself shares the same table.
    CPagewrightExtension* made = CreateExtensionObject();
    Check(made && *reinterpret_cast<const void* const* const*>(made) == PluginVftable,
          "CreateExtensionObject's object uses the exported table");
    DeleteExtensionObject(made);
    return g_failures == 0 ? 0 : 1;
}
