#pragma once
// The live picture of render method 2: the object's body HTML loaded into an
// off-screen document of the system's HTML component ("htmlfile") and drawn
// into the host's design view on request.
//
// Render loads the page (html/snapshot_page.h) and waits for the document
// to report that it is complete, at most 90,000 ms of summed waiting. While
// it waits it runs the thread's messages itself, so the host keeps painting
// (and may call Draw, which draws nothing while a document loads), but
// keyboard and mouse-button messages are dropped: nobody can click or type
// into the host meanwhile. Then the body is made transparent and borderless,
// its margins and scroll bars are taken away and a CBackgroundBehavior is
// attached to it, which paints beneath the HTML what the host had drawn
// there. DrawSnapshot lets the document choose its size within the
// rectangle, captures the host's background into the behavior, draws the
// document into an off-screen bitmap and copies that out.
//
// The renderer is a member of the extension object and is used on the
// host's user-interface thread only. It is a COM object (the property-notify
// sink of the document's ready state, with the document's client site
// embedded) whose AddRef and Release only count: its owner ends it.
// Failures are silent: Render answers false and the design view stays as it
// was.
#include <windows.h>
#include <mshtml.h>
#include <mshtmhst.h>
#include <ocidl.h>

#include <string_view>

class CBackgroundBehavior;

class CHtmlSnapshot : public IPropertyNotifySink {
public:
    CHtmlSnapshot();
    ~CHtmlSnapshot();
    CHtmlSnapshot(const CHtmlSnapshot&) = delete;
    CHtmlSnapshot& operator=(const CHtmlSnapshot&) = delete;

    // (Re)loads the document from bodyHtml and waits for it. False when the
    // HTML component cannot be created or loaded, when the sink cannot be
    // connected, or when the document did not become complete in time (its
    // partial content is drawn all the same).
    bool Render(std::string_view bodyHtml);
    // Paints the current document into rect of dc; nothing unless a load
    // has ended.
    void DrawSnapshot(HDC dc, const RECT& rect);

    // IUnknown: IUnknown and IPropertyNotifySink only.
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    // IPropertyNotifySink: a change of the ready state is checked at once.
    STDMETHODIMP OnChanged(DISPID dispid) override;
    STDMETHODIMP OnRequestEdit(DISPID dispid) override;

    // 0 before the first render, 1 while a document loads (and after a
    // render that failed before waiting), 4 once a load has ended.
    LONG LoadState() const { return loadState_; }
    // The body's scroll size after the last load that reported one.
    int ContentWidth() const { return contentWidth_; }
    int ContentHeight() const { return contentHeight_; }

private:
    // The document's client site: ambient properties (download control,
    // offline, silent) and the host UI handler's GetHostInfo. Everything
    // else it is asked answers E_NOTIMPL. Its references count on the
    // renderer's.
    class ClientSite : public IOleClientSite, public IDispatch, public IDocHostUIHandler {
    public:
        explicit ClientSite(CHtmlSnapshot& owner) : owner_(owner) {}

        STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
        STDMETHODIMP_(ULONG) AddRef() override { return owner_.AddRef(); }
        STDMETHODIMP_(ULONG) Release() override { return owner_.Release(); }

        // IOleClientSite
        STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
        STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
        STDMETHODIMP GetContainer(IOleContainer**) override { return E_NOTIMPL; }
        STDMETHODIMP ShowObject() override { return E_NOTIMPL; }
        STDMETHODIMP OnShowWindow(WINBOOL) override { return E_NOTIMPL; }
        STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

        // IDispatch: the ambient properties, read only.
        STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
        STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
        STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
        STDMETHODIMP Invoke(DISPID dispid, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                            UINT*) override;

        // IDocHostUIHandler
        STDMETHODIMP ShowContextMenu(DWORD, POINT*, IUnknown*, IDispatch*) override { return E_NOTIMPL; }
        STDMETHODIMP GetHostInfo(DOCHOSTUIINFO* info) override;
        STDMETHODIMP ShowUI(DWORD, IOleInPlaceActiveObject*, IOleCommandTarget*, IOleInPlaceFrame*,
                            IOleInPlaceUIWindow*) override {
            return E_NOTIMPL;
        }
        STDMETHODIMP HideUI() override { return E_NOTIMPL; }
        STDMETHODIMP UpdateUI() override { return E_NOTIMPL; }
        STDMETHODIMP EnableModeless(WINBOOL) override { return E_NOTIMPL; }
        STDMETHODIMP OnDocWindowActivate(WINBOOL) override { return E_NOTIMPL; }
        STDMETHODIMP OnFrameWindowActivate(WINBOOL) override { return E_NOTIMPL; }
        STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, WINBOOL) override { return E_NOTIMPL; }
        STDMETHODIMP TranslateAccelerator(LPMSG, const GUID*, DWORD) override { return E_NOTIMPL; }
        STDMETHODIMP GetOptionKeyPath(LPOLESTR*, DWORD) override { return E_NOTIMPL; }
        STDMETHODIMP GetDropTarget(IDropTarget*, IDropTarget**) override { return E_NOTIMPL; }
        STDMETHODIMP GetExternal(IDispatch**) override { return E_NOTIMPL; }
        STDMETHODIMP TranslateUrl(DWORD, LPWSTR, LPWSTR*) override { return E_NOTIMPL; }
        STDMETHODIMP FilterDataObject(IDataObject*, IDataObject**) override { return E_NOTIMPL; }

    private:
        CHtmlSnapshot& owner_;
        // Bit 0: offline. Nothing sets it.
        BYTE flags_ = 0;
    };

    void ReleaseDocument();
    // Signals the ready event when the document says it is complete.
    HRESULT CheckReadyState();
    // Runs the thread's messages until the ready event or the time-out.
    HRESULT WaitForDocument();
    HRESULT PrepareBody();
    void CloseDocument();

    LONG references_ = 0;
    LONG behaviorCookie_ = 0;
    CBackgroundBehavior* behavior_ = nullptr;  // the owner's reference
    LONG loadState_ = 0;
    HANDLE readyEvent_ = nullptr;
    ClientSite site_{*this};
    IHTMLDocument2* document_ = nullptr;
    IOleObject* oleObject_ = nullptr;
    IConnectionPoint* connectionPoint_ = nullptr;
    IViewObject* viewObject_ = nullptr;
    DWORD timeout_ = 0;
    DWORD elapsed_ = 0;
    DWORD adviseCookie_ = 0;
    int contentWidth_ = 0;
    int contentHeight_ = 0;
};
