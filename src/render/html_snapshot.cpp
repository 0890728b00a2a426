#include "render/html_snapshot.h"

#include <idispids.h>
#include <mshtmdid.h>
#include <olectl.h>
#include <urlmon.h>

#include <cstring>
#include <new>
#include <string>

#include "html/snapshot_page.h"
#include "platform/com_ref.h"
#include "render/element_behavior.h"

namespace {

constexpr DWORD kLoadTimeout = 90000;
// Download control: silent, no ActiveX controls downloaded or run, no Java;
// videos and images load, scripts run.
constexpr LONG kDownloadControl =
    DLCTL_SILENT | DLCTL_NO_DLACTIVEXCTLS | DLCTL_NO_RUNACTIVEXCTLS | DLCTL_NO_JAVA | DLCTL_VIDEOS | DLCTL_DLIMAGES;

template <typename T>
void ReleaseAndClear(T*& pointer) {
    if (pointer) pointer->Release();
    pointer = nullptr;
}

// Keyboard messages and mouse-button (and wheel) messages: dropped while a
// document loads.
bool IsDroppedInput(UINT message) {
    return (message >= 0x100 && message <= 0x108) || (message >= 0x201 && message <= 0x209);
}

// The URL-moniker session's URL encoding option, 0 when it cannot be read.
// URLMON.DLL is bound for the call.
DWORD UrlEncodingOption() {
    using GetSessionOption = HRESULT(WINAPI*)(DWORD, void*, DWORD, DWORD*, DWORD);
    DWORD value = 0;
    HMODULE urlmon = LoadLibraryA("URLMON.DLL");
    if (!urlmon) return 0;
    auto get =
        reinterpret_cast<GetSessionOption>(reinterpret_cast<void*>(GetProcAddress(urlmon, "UrlMkGetSessionOption")));
    DWORD length = 0;
    if (!get || FAILED(get(URLMON_OPTION_URL_ENCODING, &value, sizeof value, &length, 0))) value = 0;
    FreeLibrary(urlmon);
    return value;
}

// The page as an IStream over a private copy of its bytes, read from the start.
IStream* PageStream(std::string_view bodyHtml) {
    std::string page = SnapshotPageText(bodyHtml);
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, page.size());
    void* bytes = block ? GlobalLock(block) : nullptr;
    if (!bytes) {
        if (block) GlobalFree(block);
        return nullptr;
    }
    std::memcpy(bytes, page.data(), page.size());
    GlobalUnlock(block);
    IStream* stream = nullptr;
    if (FAILED(CreateStreamOnHGlobal(block, TRUE, &stream)) || !stream) {
        GlobalFree(block);
        return nullptr;
    }
    return stream;
}

bool LoadPage(IUnknown* instance, std::string_view bodyHtml) {
    ComRef<IPersistStreamInit> persist;
    if (FAILED(instance->QueryInterface(IID_IPersistStreamInit, persist.outVoid())) || !persist.get()) return false;
    IStream* stream = PageStream(bodyHtml);
    bool loaded = stream && SUCCEEDED(persist->Load(stream));
    if (stream) stream->Release();
    return loaded;
}

// Gets the document's body as an IHTMLElement2; false when there is none.
bool BodyElement2(IHTMLDocument2* document, ComRef<IHTMLElement2>& element) {
    ComRef<IHTMLElement> body;
    return document && SUCCEEDED(document->get_body(body.out())) && body.get() &&
           SUCCEEDED(body->QueryInterface(IID_IHTMLElement2, element.outVoid())) && element.get();
}

}  // namespace

CHtmlSnapshot::CHtmlSnapshot() = default;

CHtmlSnapshot::~CHtmlSnapshot() {
    if (behavior_) {
        ComRef<IHTMLElement2> element;
        if (BodyElement2(document_, element)) {
            VARIANT_BOOL removed = VARIANT_FALSE;
            element->removeBehavior(behaviorCookie_, &removed);
        }
        behaviorCookie_ = 0;
        ReleaseAndClear(behavior_);
    }
    ReleaseDocument();
}

void CHtmlSnapshot::ReleaseDocument() {
    if (connectionPoint_) {
        connectionPoint_->Unadvise(adviseCookie_);
        ReleaseAndClear(connectionPoint_);
    }
    if (readyEvent_) CloseHandle(readyEvent_);
    readyEvent_ = nullptr;
    ReleaseAndClear(document_);
    ReleaseAndClear(oleObject_);
    ReleaseAndClear(viewObject_);
}

bool CHtmlSnapshot::Render(std::string_view bodyHtml) {
    ReleaseDocument();
    readyEvent_ = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    if (!readyEvent_) return false;
    ResetEvent(readyEvent_);
    // A render re-entered from the messages that an earlier one runs sees
    // the state that one left.
    if (InterlockedExchange(&loadState_, 1) == 3) {
        loadState_ = 4;
        return false;
    }

    CLSID htmlfile;
    IUnknown* instance = nullptr;
    if (FAILED(CLSIDFromProgID(L"htmlfile", &htmlfile)) ||
        FAILED(CoCreateInstance(htmlfile, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                reinterpret_cast<void**>(&instance))) ||
        !instance)
        return false;
    bool created = SUCCEEDED(instance->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&oleObject_))) &&
                   oleObject_ && SUCCEEDED(oleObject_->SetClientSite(static_cast<IOleClientSite*>(&site_))) &&
                   SUCCEEDED(instance->QueryInterface(IID_IViewObject, reinterpret_cast<void**>(&viewObject_))) &&
                   viewObject_ && LoadPage(instance, bodyHtml) &&
                   SUCCEEDED(instance->QueryInterface(IID_IHTMLDocument2, reinterpret_cast<void**>(&document_))) &&
                   document_;
    instance->Release();
    if (!created) return false;

    timeout_ = kLoadTimeout;
    HRESULT found = E_FAIL;
    {
        ComRef<IConnectionPointContainer> container;
        if (SUCCEEDED(oleObject_->QueryInterface(IID_IConnectionPointContainer, container.outVoid())) &&
            container.get())
            found = container->FindConnectionPoint(IID_IPropertyNotifySink, &connectionPoint_);
    }
    if (FAILED(found) || !connectionPoint_) {
        connectionPoint_ = nullptr;
        return false;
    }
    if (FAILED(connectionPoint_->Advise(static_cast<IPropertyNotifySink*>(this), &adviseCookie_))) {
        ReleaseAndClear(connectionPoint_);
        return false;
    }
    elapsed_ = 0;
    return SUCCEEDED(PrepareBody());
}

HRESULT CHtmlSnapshot::CheckReadyState() {
    if (!document_) return E_UNEXPECTED;
    DISPPARAMS noArguments = {nullptr, nullptr, 0, 0};
    VARIANT state;
    VariantInit(&state);
    if (SUCCEEDED(document_->Invoke(DISPID_READYSTATE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                    &noArguments, &state, nullptr, nullptr)) &&
        V_VT(&state) == VT_I4 && V_I4(&state) == READYSTATE_COMPLETE && readyEvent_)
        SetEvent(readyEvent_);
    VariantClear(&state);
    return S_OK;
}

void CHtmlSnapshot::CloseDocument() {
    if (oleObject_) oleObject_->Close(OLECLOSE_NOSAVE);
}

HRESULT CHtmlSnapshot::WaitForDocument() {
    DWORD start = GetTickCount();
    CheckReadyState();
    for (;;) {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (IsDroppedInput(message.message)) continue;
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
        DWORD waited = MsgWaitForMultipleObjects(1, &readyEvent_, FALSE, timeout_ - elapsed_, 0xFF);
        if (waited == WAIT_OBJECT_0 || WaitForSingleObject(readyEvent_, 0) == WAIT_OBJECT_0) {
            if (loadState_ == 2) return E_PENDING;
            if (loadState_ == 3) CloseDocument();
            return S_OK;
        }
        if (waited != WAIT_TIMEOUT) {
            DWORD now = GetTickCount();
            // After the counter wrapped, one tick less is counted.
            elapsed_ += now >= start ? now - start : now - start - 1;
            start = now;
        }
        if (elapsed_ > timeout_ || waited == WAIT_TIMEOUT) {
            CloseDocument();
            return E_FAIL;
        }
    }
}

HRESULT CHtmlSnapshot::PrepareBody() {
    HRESULT result = WaitForDocument();
    if (result != E_PENDING && connectionPoint_) {
        connectionPoint_->Unadvise(adviseCookie_);
        ReleaseAndClear(connectionPoint_);
    }
    if (loadState_ == 3) result = E_FAIL;
    if (loadState_ == 2) return result;
    loadState_ = 4;

    ComRef<IHTMLElement> body;
    ComRef<IHTMLBodyElement> bodyElement;
    if (!document_ || FAILED(document_->get_body(body.out())) || !body.get() ||
        FAILED(body->QueryInterface(IID_IHTMLBodyElement, bodyElement.outVoid())) || !bodyElement.get())
        return result;

    VARIANT transparent;
    V_VT(&transparent) = VT_BSTR;
    V_BSTR(&transparent) = SysAllocString(L"transparent");
    bodyElement->put_bgColor(transparent);
    VariantClear(&transparent);

    ComRef<IHTMLStyle> style;
    if (SUCCEEDED(body->get_style(style.out())) && style.get()) style->put_borderStyle(WideText("none").get());

    // Top, left and bottom only: the right margin stays.
    for (const char* margin : {"topmargin", "leftmargin", "bottommargin"}) {
        VARIANT zero;
        V_VT(&zero) = VT_I4;
        V_I4(&zero) = 0;
        body->setAttribute(WideText(margin).get(), zero, 0);
    }

    ComRef<IHTMLElement2> element;
    if (FAILED(body->QueryInterface(IID_IHTMLElement2, element.outVoid())) || !element.get()) return result;
    bodyElement->put_scroll(WideText("no").get());
    LONG width = 0, height = 0;
    element->get_scrollWidth(&width);
    element->get_scrollHeight(&height);
    if (width) contentWidth_ = width;
    if (height) contentHeight_ = height;

    if (behavior_) {
        VARIANT_BOOL removed = VARIANT_FALSE;
        element->removeBehavior(behaviorCookie_, &removed);
        behaviorCookie_ = 0;
        ReleaseAndClear(behavior_);
    }
    behavior_ = new (std::nothrow) CBackgroundBehavior;
    if (behavior_) {
        VARIANT factory;
        V_VT(&factory) = VT_UNKNOWN;
        V_UNKNOWN(&factory) = static_cast<IElementBehaviorFactory*>(behavior_);
        behavior_->AddRef();
        LONG cookie = 0;
        element->addBehavior(nullptr, &factory, &cookie);
        behaviorCookie_ = cookie;
        VariantClear(&factory);
    }
    return result;
}

void CHtmlSnapshot::DrawSnapshot(HDC dc, const RECT& rect) {
    if (loadState_ != 4 || !viewObject_) return;
    int width = rect.right - rect.left;
    int height = rect.bottom - rect.top;

    // The document may choose its own size.
    ComRef<IOleObject> ole;
    if (document_ && SUCCEEDED(document_->QueryInterface(IID_IOleObject, ole.outVoid())) && ole.get()) {
        int dpiX = GetDeviceCaps(dc, LOGPIXELSX);
        int dpiY = GetDeviceCaps(dc, LOGPIXELSY);
        SIZEL size = {MulDiv(width, 2540, dpiX), MulDiv(height, 2540, dpiY)};
        ole->SetExtent(DVASPECT_CONTENT, &size);
        ole->GetExtent(DVASPECT_CONTENT, &size);
        width = MulDiv(size.cx, dpiX, 2540);
        height = MulDiv(size.cy, dpiY, 2540);
    }

    // Without a behavior (the body could not be prepared) the content is
    // drawn over an empty bitmap.
    if (behavior_) behavior_->Capture(dc, rect.left, rect.top, width, height);

    HDC memory = CreateCompatibleDC(dc);
    if (!memory) return;
    HBITMAP bitmap = CreateCompatibleBitmap(dc, width, height);
    HGDIOBJ before = SelectObject(memory, bitmap);
    RECTL bounds = {0, 0, width, height};
    viewObject_->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, memory, &bounds, nullptr, nullptr, 0);
    BitBlt(dc, rect.left, rect.top, width, height, memory, 0, 0, SRCCOPY);
    SelectObject(memory, before);
    if (bitmap) DeleteObject(bitmap);
    DeleteDC(memory);
}

STDMETHODIMP CHtmlSnapshot::QueryInterface(REFIID iid, void** out) {
    if (!out) return E_POINTER;
    if (iid != IID_IUnknown && iid != IID_IPropertyNotifySink) {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    *out = static_cast<IPropertyNotifySink*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) CHtmlSnapshot::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&references_)); }

STDMETHODIMP_(ULONG) CHtmlSnapshot::Release() { return static_cast<ULONG>(InterlockedDecrement(&references_)); }

STDMETHODIMP CHtmlSnapshot::OnChanged(DISPID dispid) {
    if (dispid == DISPID_READYSTATE && document_ && readyEvent_) CheckReadyState();
    return S_OK;
}

STDMETHODIMP CHtmlSnapshot::OnRequestEdit(DISPID) { return E_NOTIMPL; }

STDMETHODIMP CHtmlSnapshot::ClientSite::QueryInterface(REFIID iid, void** out) {
    if (!out) return E_INVALIDARG;
    if (iid == IID_IUnknown || iid == IID_IOleClientSite) {
        *out = static_cast<IOleClientSite*>(this);
    } else if (iid == IID_IDispatch) {
        *out = static_cast<IDispatch*>(this);
    } else if (iid == IID_IDocHostUIHandler) {
        *out = static_cast<IDocHostUIHandler*>(this);
    } else {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP CHtmlSnapshot::ClientSite::Invoke(DISPID dispid, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result,
                                               EXCEPINFO*, UINT*) {
    if (!(flags & DISPATCH_PROPERTYGET)) return DISP_E_MEMBERNOTFOUND;
    if (!result) return E_INVALIDARG;
    bool offline = (flags_ & 1) != 0;
    switch (dispid) {
        case DISPID_AMBIENT_DLCONTROL:
            V_VT(result) = VT_I4;
            V_I4(result) = kDownloadControl | (offline ? static_cast<LONG>(DLCTL_OFFLINEIFNOTCONNECTED) : 0);
            return S_OK;
        case DISPID_AMBIENT_SILENT:
            // 1, not VARIANT_TRUE: the browser takes any non-zero value.
            V_VT(result) = VT_BOOL;
            V_BOOL(result) = 1;
            return S_OK;
        case DISPID_AMBIENT_OFFLINEIFNOTCONNECTED:
            V_VT(result) = VT_BOOL;
            V_BOOL(result) = offline ? 1 : 0;
            return S_OK;
        default: return DISP_E_MEMBERNOTFOUND;
    }
}

STDMETHODIMP CHtmlSnapshot::ClientSite::GetHostInfo(DOCHOSTUIINFO* info) {
    if (!info) return E_INVALIDARG;
    DWORD encoding = UrlEncodingOption();
    info->dwDoubleClick = DOCHOSTUIDBLCLK_DEFAULT;
    info->dwFlags |=
        DOCHOSTUIFLAG_SCROLL_NO | (encoding == URL_ENCODING_ENABLE_UTF8 ? DOCHOSTUIFLAG_URL_ENCODING_ENABLE_UTF8
                                                                        : DOCHOSTUIFLAG_URL_ENCODING_DISABLE_UTF8);
    return S_OK;
}
