// A stand-in for the system's HTML document ("htmlfile") for the tests of
// the design view's HTML snapshot: Wine here has no HTML engine. It is a
// small in-process COM server that does what the renderer asks of a
// document, writes every step into a journal, and counts every reference:
//
// - IPersistStreamInit::Load keeps the bytes and reads "boxes" from them:
//   every style="..." with left, top, width and height in pixels becomes a
//   rectangle filled with its background colour, and the text after the
//   tag is written into it in its color (all "#RRGGBB").
// - The document becomes complete after a delay ("delay": milliseconds on a
//   thread timer, so only while the thread's messages run; 0 at once inside
//   Load; "never") and then tells its IPropertyNotifySink sinks, once at
//   READYSTATE_INTERACTIVE and once at READYSTATE_COMPLETE.
// - IViewObject::Draw calls the painters of the body's behaviors beneath
//   the boxes; the body's scroll size is where the boxes end.
// - "fail" names steps that fail: the interfaces IOleObject, IViewObject,
//   IPersistStreamInit, IHTMLDocument2, IConnectionPointContainer,
//   IHTMLElement2, and SetClientSite, Load, FindConnectionPoint, Advise,
//   get_body. "extent" W,H makes the document insist on that size in pixels.
//
// Any method the renderer is not expected to call ends the process with a
// message naming the interface and slot. The exports below let a test in
// the same process configure the double and read what happened; other
// processes get the defaults (a 20 ms delay). DllRegisterServer maps
// "htmlfile" to the double in the registry of the Wine prefix it runs in,
// keeping the class it replaced, which DllUnregisterServer puts back. It is
// built for the tests only and never shipped.
#define CINTERFACE
#define COBJMACROS
#include <windows.h>
#include <ole2.h>
#include <ocidl.h>
#include <olectl.h>
#include <mshtml.h>
#include <mshtmdid.h>

#include "../com_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

// {5CB2A1D4-7E1F-4B43-9C35-0D9E6A1F3B27}
const CLSID kDoubleClass = {0x5cb2a1d4, 0x7e1f, 0x4b43, {0x9c, 0x35, 0x0d, 0x9e, 0x6a, 0x1f, 0x3b, 0x27}};
const char kDoubleClassText[] = "{5CB2A1D4-7E1F-4B43-9C35-0D9E6A1F3B27}";
const IID kElementBehaviorFactory = {0x3050f429, 0x98b5, 0x11cf, {0xbb, 0x82, 0x00, 0xaa, 0x00, 0xbd, 0xce, 0x0b}};
const IID kHtmlPainter = {0x3050f6a6, 0x98b5, 0x11cf, {0xbb, 0x82, 0x00, 0xaa, 0x00, 0xbd, 0xce, 0x0b}};
const IID kHtmlPaintSite = {0x3050f6a7, 0x98b5, 0x11cf, {0xbb, 0x82, 0x00, 0xaa, 0x00, 0xbd, 0xce, 0x0b}};
const IID kElementBehaviorSite = {0x3050f427, 0x98b5, 0x11cf, {0xbb, 0x82, 0x00, 0xaa, 0x00, 0xbd, 0xce, 0x0b}};

HMODULE g_module = nullptr;

// --- configuration, journal and counts -------------------------------------------

struct Config {
    int delay = 20;  // milliseconds; -1 never
    std::string fail;
    int extentWidth = 0, extentHeight = 0;
} g_config;

std::vector<std::string> g_journal;
std::string g_journalText;
std::string g_loaded;
IUnknown* g_clientSite = nullptr;  // the last one given, not held
LONG g_objects = 0;                // objects of the double alive
LONG g_references = 0;             // references on them
LONG g_held = 0;                   // references the double holds on others
LONG g_nextCookie = 0;

void Note(const std::string& line) { g_journal.push_back(line); }

bool Fails(const char* step) {
    std::string list = "," + g_config.fail + ",";
    return list.find(std::string(",") + step + ",") != std::string::npos;
}

std::string VariantText(const VARIANT& value) {
    switch (V_VT(&value)) {
        case VT_BSTR: return "BSTR:" + NarrowText(V_BSTR(&value));
        case VT_I4: return "I4:" + std::to_string(V_I4(&value));
        case VT_UNKNOWN: return "UNKNOWN";
        default: return "VT" + std::to_string(V_VT(&value));
    }
}

void Hold(IUnknown* other) {
    if (!other) return;
    IUnknown_AddRef(other);
    ++g_held;
}

void Drop(IUnknown* other) {
    if (!other) return;
    IUnknown_Release(other);
    --g_held;
}

// --- objects and their interface faces ---------------------------------------------

struct Object;
// What a COM caller holds: the vtable pointer first, then the object.
struct Face {
    const void* vtbl;
    Object* owner;
};

struct Object {
    LONG refs = 1;
    Object() {
        ++g_objects;
        ++g_references;
    }
    virtual ~Object() { --g_objects; }
    // The interface for iid, or null.
    virtual Face* Find(REFIID iid) = 0;
    ULONG AddRef() {
        ++g_references;
        return static_cast<ULONG>(++refs);
    }
    ULONG Release() {
        --g_references;
        LONG left = --refs;
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }
    HRESULT QueryInterface(REFIID iid, void** out) {
        if (!out) return E_POINTER;
        Face* face = Find(iid);
        *out = face;
        if (!face) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
};

template <typename T>
T* Of(void* self) {
    return static_cast<T*>(static_cast<Face*>(self)->owner);
}

// Fills every slot of a vtable with a trap that names it, then the three of
// IUnknown.
std::map<const void*, const char*> g_vtableNames;

template <int N>
HRESULT STDMETHODCALLTYPE Trap(void* self) {
    auto found = g_vtableNames.find(static_cast<Face*>(self)->vtbl);
    fprintf(stderr, "htmlfile double: unexpected call to %s slot %d\n",
            found == g_vtableNames.end() ? "?" : found->second, N);
    fflush(stderr);
    ExitProcess(99);
    return E_NOTIMPL;
}

template <int... N>
constexpr std::array<void*, sizeof...(N)> TrapTable(std::integer_sequence<int, N...>) {
    return {reinterpret_cast<void*>(&Trap<N>)...};
}

const auto g_traps = TrapTable(std::make_integer_sequence<int, 256>());

HRESULT STDMETHODCALLTYPE FaceQueryInterface(void* self, REFIID iid, void** out) {
    return static_cast<Face*>(self)->owner->QueryInterface(iid, out);
}
ULONG STDMETHODCALLTYPE FaceAddRef(void* self) { return static_cast<Face*>(self)->owner->AddRef(); }
ULONG STDMETHODCALLTYPE FaceRelease(void* self) { return static_cast<Face*>(self)->owner->Release(); }

template <typename Vtbl>
Vtbl Vtable(const Vtbl* address, const char* name) {
    static_assert(sizeof(Vtbl) / sizeof(void*) <= 256, "vtable larger than the trap table");
    Vtbl table;
    void** slots = reinterpret_cast<void**>(&table);
    for (std::size_t i = 0; i < sizeof(Vtbl) / sizeof(void*); ++i) slots[i] = g_traps[i];
    slots[0] = reinterpret_cast<void*>(&FaceQueryInterface);
    slots[1] = reinterpret_cast<void*>(&FaceAddRef);
    slots[2] = reinterpret_cast<void*>(&FaceRelease);
    g_vtableNames[address] = name;
    return table;
}

// --- the document's content ------------------------------------------------------

struct Box {
    int left = 0, top = 0, width = 0, height = 0;
    COLORREF background = CLR_INVALID;
    COLORREF color = RGB(0, 0, 0);
    std::string text{};
};

// A declaration's value in a style written as the tests write them
// ("left:4px;background:#C00000"), or the empty text.
std::string StyleValue(const std::string& style, const char* name) {
    std::string text = ";" + style, key = std::string(";") + name + ":";
    std::size_t at = text.find(key);
    if (at == std::string::npos) return {};
    at += key.size();
    return text.substr(at, text.find(';', at) - at);
}

COLORREF StyleColour(const std::string& style, const char* name, COLORREF otherwise) {
    std::string value = StyleValue(style, name);
    if (value.size() != 7 || value[0] != '#') return otherwise;
    unsigned long rgb = std::strtoul(value.c_str() + 1, nullptr, 16);
    return RGB((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF);
}

std::vector<Box> ReadBoxes(const std::string& page) {
    std::vector<Box> boxes;
    for (std::size_t at = page.find("style=\""); at != std::string::npos; at = page.find("style=\"", at)) {
        at += 7;
        std::size_t end = page.find('"', at);
        if (end == std::string::npos) break;
        std::string style = page.substr(at, end - at);
        auto number = [&style](const char* name) { return std::atoi(StyleValue(style, name).c_str()); };
        Box box{number("left"), number("top"), number("width"), number("height"),
                StyleColour(style, "background", CLR_INVALID), StyleColour(style, "color", RGB(0, 0, 0))};
        std::size_t close = page.find('>', end);
        std::size_t next = close == std::string::npos ? std::string::npos : page.find('<', close);
        if (next != std::string::npos) box.text = page.substr(close + 1, next - close - 1);
        if (box.width > 0 && box.height > 0) boxes.push_back(box);
        at = end;
    }
    return boxes;
}

void DrawBoxes(HDC dc, const std::vector<Box>& boxes, int x, int y) {
    for (const Box& box : boxes) {
        RECT r = {x + box.left, y + box.top, x + box.left + box.width, y + box.top + box.height};
        if (box.background != CLR_INVALID) {
            HBRUSH brush = CreateSolidBrush(box.background);
            FillRect(dc, &r, brush);
            DeleteObject(brush);
        }
        if (!box.text.empty()) {
            HGDIOBJ font = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
            int mode = SetBkMode(dc, TRANSPARENT);
            COLORREF colour = SetTextColor(dc, box.color);
            RECT inner = {r.left + 3, r.top + 2, r.right - 2, r.bottom - 2};
            DrawTextA(dc, box.text.c_str(), static_cast<int>(box.text.size()), &inner, DT_LEFT | DT_WORDBREAK);
            SetTextColor(dc, colour);
            SetBkMode(dc, mode);
            SelectObject(dc, font);
        }
    }
}

// --- behavior sites, the style, the body ------------------------------------------

IElementBehaviorSiteVtbl g_behaviorSiteVtbl;
IHTMLPaintSiteVtbl g_paintSiteVtbl;
IHTMLStyleVtbl g_styleVtbl;
IHTMLElementVtbl g_elementVtbl;
IHTMLBodyElementVtbl g_bodyVtbl;
IHTMLElement2Vtbl g_element2Vtbl;
IHTMLDocument2Vtbl g_documentVtbl;
IOleObjectVtbl g_oleVtbl;
IViewObjectVtbl g_viewVtbl;
IPersistStreamInitVtbl g_persistVtbl;
IConnectionPointContainerVtbl g_containerVtbl;
IConnectionPointVtbl g_pointVtbl;
IClassFactoryVtbl g_factoryVtbl;

struct BehaviorSite : Object {
    Face site{&g_behaviorSiteVtbl, this};
    Face paint{&g_paintSiteVtbl, this};
    Face* Find(REFIID iid) override {
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, kElementBehaviorSite)) return &site;
        if (IsEqualIID(iid, kHtmlPaintSite)) return &paint;
        return nullptr;
    }
};

struct Attached {
    LONG cookie;
    IElementBehavior* behavior;
    IHTMLPainter* painter;
    BehaviorSite* site;
};

struct Body : Object {
    Face element{&g_elementVtbl, this};
    Face body{&g_bodyVtbl, this};
    Face element2{&g_element2Vtbl, this};
    Face style{&g_styleVtbl, this};
    std::vector<Attached> behaviors;
    int scrollWidth = 0, scrollHeight = 0;

    ~Body() override { while (!behaviors.empty()) Remove(behaviors.front().cookie); }
    Face* Find(REFIID iid) override {
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, IID_IHTMLElement))
            return &element;
        if (IsEqualIID(iid, IID_IHTMLBodyElement)) return &body;
        if (IsEqualIID(iid, IID_IHTMLStyle)) return &style;
        if (IsEqualIID(iid, IID_IHTMLElement2) && !Fails("IHTMLElement2")) return &element2;
        return nullptr;
    }
    bool Remove(LONG cookie) {
        auto found = std::find_if(behaviors.begin(), behaviors.end(),
                                  [cookie](const Attached& a) { return a.cookie == cookie; });
        if (found == behaviors.end()) return false;
        Attached attached = *found;
        behaviors.erase(found);
        Note("Detach " + std::to_string(cookie));
        IElementBehavior_Detach(attached.behavior);
        Drop(reinterpret_cast<IUnknown*>(attached.painter));
        Drop(reinterpret_cast<IUnknown*>(attached.behavior));
        attached.site->Release();
        return true;
    }
    void Paint(HDC dc, const RECT& bounds) {
        for (const Attached& attached : behaviors)
            if (attached.painter) IHTMLPainter_Draw(attached.painter, bounds, bounds, 0, dc, nullptr);
    }
};

// --- the document ---------------------------------------------------------------------

struct Document : Object {
    Face html{&g_documentVtbl, this};
    Face ole{&g_oleVtbl, this};
    Face view{&g_viewVtbl, this};
    Face persist{&g_persistVtbl, this};
    Face container{&g_containerVtbl, this};
    Face point{&g_pointVtbl, this};
    IUnknown* site = nullptr;
    std::vector<Box> boxes;
    Body* body = nullptr;
    LONG readyState = READYSTATE_UNINITIALIZED;
    UINT_PTR timer = 0;
    SIZEL extent = {0, 0};
    std::vector<std::pair<DWORD, IPropertyNotifySink*>> sinks;
    DWORD nextSinkCookie = 0;

    ~Document() override;
    Face* Find(REFIID iid) override {
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, IID_IHTMLDocument))
            return &html;
        if (IsEqualIID(iid, IID_IHTMLDocument2)) return Fails("IHTMLDocument2") ? nullptr : &html;
        if (IsEqualIID(iid, IID_IOleObject)) return Fails("IOleObject") ? nullptr : &ole;
        if (IsEqualIID(iid, IID_IViewObject)) return Fails("IViewObject") ? nullptr : &view;
        if (IsEqualIID(iid, IID_IPersistStreamInit)) return Fails("IPersistStreamInit") ? nullptr : &persist;
        if (IsEqualIID(iid, IID_IConnectionPointContainer))
            return Fails("IConnectionPointContainer") ? nullptr : &container;
        return nullptr;
    }
    void Notify() {
        auto copy = sinks;
        for (auto& sink : copy) IPropertyNotifySink_OnChanged(sink.second, DISPID_READYSTATE);
    }
    void Complete() {
        Note("complete");
        readyState = READYSTATE_INTERACTIVE;
        Notify();
        readyState = READYSTATE_COMPLETE;
        Notify();
    }
};

std::map<UINT_PTR, Document*> g_timers;

void CALLBACK TimerFired(HWND, UINT, UINT_PTR id, DWORD) {
    KillTimer(nullptr, id);
    auto found = g_timers.find(id);
    if (found == g_timers.end()) return;
    Document* document = found->second;
    g_timers.erase(found);
    document->timer = 0;
    document->AddRef();
    document->Complete();
    document->Release();
}

Document::~Document() {
    if (timer) {
        KillTimer(nullptr, timer);
        g_timers.erase(timer);
    }
    for (auto& sink : sinks) Drop(reinterpret_cast<IUnknown*>(sink.second));
    if (body) body->Release();
    Drop(site);
}

// IHTMLDocument2
HRESULT STDMETHODCALLTYPE DocumentInvoke(IHTMLDocument2* self, DISPID dispid, REFIID iid, LCID locale, WORD flags,
                                         DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*, UINT*) {
    if (dispid != DISPID_READYSTATE || !IsEqualIID(iid, IID_NULL) || locale != LOCALE_USER_DEFAULT ||
        flags != DISPATCH_PROPERTYGET || !parameters || parameters->cArgs != 0 || !result) {
        Note("Invoke unexpected " + std::to_string(dispid) + " flags " + std::to_string(flags));
        return DISP_E_MEMBERNOTFOUND;
    }
    V_VT(result) = VT_I4;
    V_I4(result) = Of<Document>(self)->readyState;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE DocumentGetBody(IHTMLDocument2* self, IHTMLElement** out) {
    Document* document = Of<Document>(self);
    *out = nullptr;
    if (Fails("get_body") || !document->body) return E_FAIL;
    return document->body->QueryInterface(IID_IHTMLElement, reinterpret_cast<void**>(out));
}

// IOleObject
HRESULT STDMETHODCALLTYPE OleSetClientSite(IOleObject* self, IOleClientSite* site) {
    Note("SetClientSite");
    if (Fails("SetClientSite")) return E_FAIL;
    Document* document = Of<Document>(self);
    Drop(document->site);
    document->site = reinterpret_cast<IUnknown*>(site);
    Hold(document->site);
    g_clientSite = document->site;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE OleClose(IOleObject*, DWORD option) {
    Note("Close " + std::to_string(option));
    return S_OK;
}

HRESULT STDMETHODCALLTYPE OleSetExtent(IOleObject* self, DWORD aspect, SIZEL* size) {
    Note("SetExtent " + std::to_string(aspect) + " " + std::to_string(size->cx) + "x" + std::to_string(size->cy));
    Of<Document>(self)->extent = *size;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE OleGetExtent(IOleObject* self, DWORD aspect, SIZEL* size) {
    Note("GetExtent " + std::to_string(aspect));
    *size = Of<Document>(self)->extent;
    if (g_config.extentWidth)
        *size = SIZEL{MulDiv(g_config.extentWidth, 2540, 96), MulDiv(g_config.extentHeight, 2540, 96)};
    return S_OK;
}

// IViewObject
HRESULT STDMETHODCALLTYPE ViewDraw(IViewObject* self, DWORD aspect, LONG index, void* aspectData,
                                   DVTARGETDEVICE* device, HDC target, HDC dc, LPCRECTL bounds, LPCRECTL,
                                   WINBOOL(STDMETHODCALLTYPE*)(ULONG_PTR), ULONG_PTR) {
    Note("Draw " + std::to_string(aspect) + " " + std::to_string(index) + " " +
         (aspectData || device || target ? "extras" : "plain") + " " + std::to_string(bounds->left) + "," +
         std::to_string(bounds->top) + "," + std::to_string(bounds->right) + "," + std::to_string(bounds->bottom));
    Document* document = Of<Document>(self);
    RECT area = {bounds->left, bounds->top, bounds->right, bounds->bottom};
    if (document->body) document->body->Paint(dc, area);
    DrawBoxes(dc, document->boxes, area.left, area.top);
    return S_OK;
}

// IPersistStreamInit
HRESULT STDMETHODCALLTYPE PersistLoad(IPersistStreamInit* self, IStream* stream) {
    std::string bytes;
    char buffer[4096];
    ULONG read = 0;
    while (SUCCEEDED(IStream_Read(stream, buffer, sizeof buffer, &read)) && read > 0) bytes.append(buffer, read);
    Note("Load");
    if (Fails("Load")) return E_FAIL;
    Document* document = Of<Document>(self);
    g_loaded = bytes;
    document->boxes = ReadBoxes(bytes);
    if (document->body) document->body->Release();
    document->body = new Body;
    for (const Box& box : document->boxes) {
        document->body->scrollWidth = std::max(document->body->scrollWidth, box.left + box.width);
        document->body->scrollHeight = std::max(document->body->scrollHeight, box.top + box.height);
    }
    document->readyState = READYSTATE_LOADING;
    if (g_config.delay == 0) {
        document->Complete();
    } else if (g_config.delay > 0) {
        document->timer = SetTimer(nullptr, 0, static_cast<UINT>(g_config.delay), &TimerFired);
        g_timers[document->timer] = document;
    } else {
        document->readyState = READYSTATE_INTERACTIVE;
    }
    return S_OK;
}

// IConnectionPointContainer and IConnectionPoint
HRESULT STDMETHODCALLTYPE ContainerFind(IConnectionPointContainer* self, REFIID iid, IConnectionPoint** out) {
    *out = nullptr;
    if (!IsEqualIID(iid, IID_IPropertyNotifySink) || Fails("FindConnectionPoint")) return CONNECT_E_NOCONNECTION;
    Document* document = Of<Document>(self);
    *out = reinterpret_cast<IConnectionPoint*>(&document->point);
    document->AddRef();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE PointAdvise(IConnectionPoint* self, IUnknown* sink, DWORD* cookie) {
    Note("Advise");
    if (Fails("Advise")) return CONNECT_E_CANNOTCONNECT;
    IPropertyNotifySink* notify = nullptr;
    if (FAILED(IUnknown_QueryInterface(sink, IID_IPropertyNotifySink, reinterpret_cast<void**>(&notify))))
        return CONNECT_E_CANNOTCONNECT;
    ++g_held;
    Document* document = Of<Document>(self);
    *cookie = ++document->nextSinkCookie;
    document->sinks.emplace_back(*cookie, notify);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE PointUnadvise(IConnectionPoint* self, DWORD cookie) {
    Document* document = Of<Document>(self);
    auto found = std::find_if(document->sinks.begin(), document->sinks.end(),
                              [cookie](const std::pair<DWORD, IPropertyNotifySink*>& s) { return s.first == cookie; });
    Note(found == document->sinks.end() ? "Unadvise unknown" : "Unadvise");
    if (found == document->sinks.end()) return CONNECT_E_NOCONNECTION;
    IPropertyNotifySink* sink = found->second;
    document->sinks.erase(found);
    Drop(reinterpret_cast<IUnknown*>(sink));
    return S_OK;
}

// IHTMLElement, IHTMLBodyElement, IHTMLElement2, IHTMLStyle
HRESULT STDMETHODCALLTYPE ElementSetAttribute(IHTMLElement*, BSTR name, VARIANT value, LONG flags) {
    Note("setAttribute " + NarrowText(name) + " " + VariantText(value) + " " + std::to_string(flags));
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ElementGetStyle(IHTMLElement* self, IHTMLStyle** out) {
    return Of<Body>(self)->QueryInterface(IID_IHTMLStyle, reinterpret_cast<void**>(out));
}

HRESULT STDMETHODCALLTYPE BodyPutBgColor(IHTMLBodyElement*, VARIANT value) {
    Note("bgColor " + VariantText(value));
    return S_OK;
}

HRESULT STDMETHODCALLTYPE BodyPutScroll(IHTMLBodyElement*, BSTR value) {
    Note("scroll " + NarrowText(value));
    return S_OK;
}

HRESULT STDMETHODCALLTYPE StylePutBorderStyle(IHTMLStyle*, BSTR value) {
    Note("borderStyle " + NarrowText(value));
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Element2ScrollWidth(IHTMLElement2* self, LONG* value) {
    *value = Of<Body>(self)->scrollWidth;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Element2ScrollHeight(IHTMLElement2* self, LONG* value) {
    *value = Of<Body>(self)->scrollHeight;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Element2AddBehavior(IHTMLElement2* self, BSTR url, VARIANT* factoryVariant, LONG* cookie) {
    Body* body = Of<Body>(self);
    LONG given = ++g_nextCookie;
    Note("addBehavior " + std::to_string(given) + (url ? " url " + NarrowText(url) : " no url") + " " +
         (factoryVariant ? VariantText(*factoryVariant) : "none"));
    if (!factoryVariant || V_VT(factoryVariant) != VT_UNKNOWN || !V_UNKNOWN(factoryVariant)) return E_INVALIDARG;
    IElementBehaviorFactory* factory = nullptr;
    if (FAILED(IUnknown_QueryInterface(V_UNKNOWN(factoryVariant), kElementBehaviorFactory,
                                       reinterpret_cast<void**>(&factory))))
        return E_NOINTERFACE;
    Attached attached = {given, nullptr, nullptr, new BehaviorSite};
    HRESULT found = IElementBehaviorFactory_FindBehavior(
        factory, nullptr, url, reinterpret_cast<IElementBehaviorSite*>(&attached.site->site), &attached.behavior);
    IUnknown_Release(reinterpret_cast<IUnknown*>(factory));
    if (FAILED(found) || !attached.behavior) {
        attached.site->Release();
        return E_FAIL;
    }
    ++g_held;
    IElementBehavior_Init(attached.behavior, reinterpret_cast<IElementBehaviorSite*>(&attached.site->site));
    if (SUCCEEDED(IUnknown_QueryInterface(reinterpret_cast<IUnknown*>(attached.behavior), kHtmlPainter,
                                          reinterpret_cast<void**>(&attached.painter)))) {
        ++g_held;
        HTML_PAINTER_INFO info;
        std::memset(&info, 0xAB, sizeof info);
        IHTMLPainter_GetPainterInfo(attached.painter, &info);
        bool zero = IsEqualIID(info.iidDrawObject, GUID_NULL) && info.rcExpand.left == 0 && info.rcExpand.top == 0 &&
                    info.rcExpand.right == 0 && info.rcExpand.bottom == 0;
        Note("painter " + std::to_string(info.lFlags) + " " + std::to_string(info.lZOrder) + (zero ? " zero" : " set"));
    }
    body->behaviors.push_back(attached);
    *cookie = given;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Element2RemoveBehavior(IHTMLElement2* self, LONG cookie, VARIANT_BOOL* result) {
    Note("removeBehavior " + std::to_string(cookie));
    bool removed = Of<Body>(self)->Remove(cookie);
    if (result) *result = removed ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE PaintSiteInvalidateRect(IHTMLPaintSite*, RECT* rect) {
    Note(rect ? "InvalidateRect part" : "InvalidateRect all");
    return S_OK;
}

// IClassFactory
struct Factory : Object {
    Face factory{&g_factoryVtbl, this};
    Face* Find(REFIID iid) override {
        return IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory) ? &factory : nullptr;
    }
};

HRESULT STDMETHODCALLTYPE FactoryCreate(IClassFactory*, IUnknown* outer, REFIID iid, void** out) {
    *out = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    Document* document = new Document;
    HRESULT result = document->QueryInterface(iid, out);
    document->Release();
    return result;
}

HRESULT STDMETHODCALLTYPE FactoryLock(IClassFactory*, WINBOOL) { return S_OK; }

void BuildVtables() {
    g_behaviorSiteVtbl = Vtable(&g_behaviorSiteVtbl, "IElementBehaviorSite");
    g_paintSiteVtbl = Vtable(&g_paintSiteVtbl, "IHTMLPaintSite");
    g_paintSiteVtbl.InvalidateRect = &PaintSiteInvalidateRect;
    g_styleVtbl = Vtable(&g_styleVtbl, "IHTMLStyle");
    g_styleVtbl.put_borderStyle = &StylePutBorderStyle;
    g_elementVtbl = Vtable(&g_elementVtbl, "IHTMLElement");
    g_elementVtbl.setAttribute = &ElementSetAttribute;
    g_elementVtbl.get_style = &ElementGetStyle;
    g_bodyVtbl = Vtable(&g_bodyVtbl, "IHTMLBodyElement");
    g_bodyVtbl.put_bgColor = &BodyPutBgColor;
    g_bodyVtbl.put_scroll = &BodyPutScroll;
    g_element2Vtbl = Vtable(&g_element2Vtbl, "IHTMLElement2");
    g_element2Vtbl.get_scrollWidth = &Element2ScrollWidth;
    g_element2Vtbl.get_scrollHeight = &Element2ScrollHeight;
    g_element2Vtbl.addBehavior = &Element2AddBehavior;
    g_element2Vtbl.removeBehavior = &Element2RemoveBehavior;
    g_documentVtbl = Vtable(&g_documentVtbl, "IHTMLDocument2");
    g_documentVtbl.Invoke = &DocumentInvoke;
    g_documentVtbl.get_body = &DocumentGetBody;
    g_oleVtbl = Vtable(&g_oleVtbl, "IOleObject");
    g_oleVtbl.SetClientSite = &OleSetClientSite;
    g_oleVtbl.Close = &OleClose;
    g_oleVtbl.SetExtent = &OleSetExtent;
    g_oleVtbl.GetExtent = &OleGetExtent;
    g_viewVtbl = Vtable(&g_viewVtbl, "IViewObject");
    g_viewVtbl.Draw = &ViewDraw;
    g_persistVtbl = Vtable(&g_persistVtbl, "IPersistStreamInit");
    g_persistVtbl.Load = &PersistLoad;
    g_containerVtbl = Vtable(&g_containerVtbl, "IConnectionPointContainer");
    g_containerVtbl.FindConnectionPoint = &ContainerFind;
    g_pointVtbl = Vtable(&g_pointVtbl, "IConnectionPoint");
    g_pointVtbl.Advise = &PointAdvise;
    g_pointVtbl.Unadvise = &PointUnadvise;
    g_factoryVtbl = Vtable(&g_factoryVtbl, "IClassFactory");
    g_factoryVtbl.CreateInstance = &FactoryCreate;
    g_factoryVtbl.LockServer = &FactoryLock;
}

// --- registration -----------------------------------------------------------------------

const char kReplacedValue[] = "ReplacedHtmlfileClass";

std::string ReadDefault(const char* key, const char* value = nullptr) {
    char text[256] = {};
    HKEY opened = nullptr;
    if (RegOpenKeyExA(HKEY_CLASSES_ROOT, key, 0, KEY_READ, &opened) != ERROR_SUCCESS) return {};
    DWORD type = 0, bytes = sizeof text;
    LONG status = RegQueryValueExA(opened, value, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
    RegCloseKey(opened);
    return status == ERROR_SUCCESS && type == REG_SZ ? std::string(text) : std::string();
}

bool WriteValue(const std::string& key, const char* value, const std::string& text) {
    HKEY created = nullptr;
    if (RegCreateKeyExA(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &created, nullptr) !=
        ERROR_SUCCESS)
        return false;
    LONG status = RegSetValueExA(created, value, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                 static_cast<DWORD>(text.size() + 1));
    RegCloseKey(created);
    return status == ERROR_SUCCESS;
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_module = instance;
        BuildVtables();
    }
    return TRUE;
}

__declspec(dllexport) HRESULT WINAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    *out = nullptr;
    if (!IsEqualCLSID(clsid, kDoubleClass)) return CLASS_E_CLASSNOTAVAILABLE;
    Factory* factory = new Factory;
    HRESULT result = factory->QueryInterface(iid, out);
    factory->Release();
    return result;
}

__declspec(dllexport) HRESULT WINAPI DllCanUnloadNow() { return S_FALSE; }

__declspec(dllexport) HRESULT WINAPI DllRegisterServer() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(g_module, path, MAX_PATH);
    std::string key = std::string("CLSID\\") + kDoubleClassText;
    std::string replaced = ReadDefault("htmlfile\\CLSID");
    bool ok = WriteValue(key + "\\InprocServer32", nullptr, path) &&
              WriteValue(key + "\\InprocServer32", "ThreadingModel", "Apartment");
    if (ok && replaced != kDoubleClassText) ok = WriteValue(key, kReplacedValue, replaced);
    return ok && WriteValue("htmlfile\\CLSID", nullptr, kDoubleClassText) ? S_OK : SELFREG_E_CLASS;
}

__declspec(dllexport) HRESULT WINAPI DllUnregisterServer() {
    std::string key = std::string("CLSID\\") + kDoubleClassText;
    std::string replaced = ReadDefault(key.c_str(), kReplacedValue);
    if (!replaced.empty()) WriteValue("htmlfile\\CLSID", nullptr, replaced);
    RegDeleteKeyA(HKEY_CLASSES_ROOT, (key + "\\InprocServer32").c_str());
    RegDeleteKeyA(HKEY_CLASSES_ROOT, key.c_str());
    return S_OK;
}

// --- for tests in the same process ----------------------------------------------------

// Clears the journal and sets the defaults again.
__declspec(dllexport) void HtmlDoubleReset() {
    g_journal.clear();
    g_loaded.clear();
    g_config = Config();
    g_nextCookie = 0;
}

// "delay" N | "never"; "fail" STEP,STEP...; "extent" W,H.
__declspec(dllexport) void HtmlDoubleSet(const char* key, const char* value) {
    std::string k = key, v = value;
    if (k == "delay")
        g_config.delay = v == "never" ? -1 : std::atoi(v.c_str());
    else if (k == "fail")
        g_config.fail = v;
    else if (k == "extent")
        std::sscanf(v.c_str(), "%d,%d", &g_config.extentWidth, &g_config.extentHeight);
}

// The steps since the last call, one line each with "\n" after it.
__declspec(dllexport) const char* HtmlDoubleJournal() {
    g_journalText.clear();
    for (const std::string& line : g_journal) g_journalText += line + "\n";
    g_journal.clear();
    return g_journalText.c_str();
}

// The bytes of the last Load.
__declspec(dllexport) const char* HtmlDoubleLoaded(int* length) {
    *length = static_cast<int>(g_loaded.size());
    return g_loaded.data();
}

// "objects", "references" or "held" (references the double holds on the
// renderer's objects).
__declspec(dllexport) int HtmlDoubleCount(const char* what) {
    std::string w = what;
    if (w == "objects") return g_objects;
    if (w == "references") return g_references;
    if (w == "held") return g_held;
    return -1;
}

// The client site last given to a document (no reference added).
__declspec(dllexport) IUnknown* HtmlDoubleClientSite() { return g_clientSite; }

}  // extern "C"
