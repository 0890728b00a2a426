#pragma once
// The element behavior that the HTML snapshot attaches to its document's
// body. CElementBehavior is a rendering behavior that paints beneath the
// element's content: it is its own factory, its painter is transparent and
// drawn below the content, and whatever it paints comes from the virtual
// PaintBackground. CBackgroundBehavior paints there a copy of what the host
// had drawn at that place, so the snapshot blends into the host's page.
//
// The three interfaces share one reference count, which starts at 1 for the
// owner: Release() of that reference ends the object once the browser has
// let go of it too. An unknown interface gives E_NOTIMPL, not E_NOINTERFACE,
// as the browser expects of this behavior.
#include <windows.h>
#include <mshtml.h>

class CElementBehavior : public IHTMLPainter, public IElementBehavior, public IElementBehaviorFactory {
public:
    CElementBehavior();
    CElementBehavior(const CElementBehavior&) = delete;
    CElementBehavior& operator=(const CElementBehavior&) = delete;

    // IUnknown (through any of the three interfaces)
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    // IElementBehaviorFactory: hands out this object's IElementBehavior.
    STDMETHODIMP FindBehavior(BSTR name, BSTR url, IElementBehaviorSite* site, IElementBehavior** behavior) override;

    // IElementBehavior: Init keeps the site (without a reference) and its
    // paint site, and has the whole element repainted; Detach repaints and
    // lets the paint site go.
    STDMETHODIMP Init(IElementBehaviorSite* site) override;
    STDMETHODIMP Notify(LONG event, VARIANT* argument) override;
    STDMETHODIMP Detach() override;

    // IHTMLPainter
    STDMETHODIMP Draw(RECT bounds, RECT update, LONG drawFlags, HDC dc, void* drawObject) override;
    STDMETHODIMP OnResize(SIZE size) override;
    STDMETHODIMP GetPainterInfo(HTML_PAINTER_INFO* info) override;
    STDMETHODIMP HitTestPoint(POINT point, WINBOOL* hit, LONG* partId) override;

    // What is painted beneath the content, in the element's bounds on dc.
    virtual void PaintBackground(LONG left, LONG top, LONG right, LONG bottom, HDC dc) = 0;

protected:
    virtual ~CElementBehavior();

private:
    LONG references_ = 1;
    IElementBehaviorSite* site_ = nullptr;  // no reference held
    IHTMLPaintSite* paintSite_ = nullptr;
    LONG painterFlags_ = HTMLPAINTER_TRANSPARENT;
    LONG painterZOrder_ = HTMLPAINT_ZORDER_BELOW_CONTENT;
    RECT expand_ = {0, 0, 0, 0};
};

class CBackgroundBehavior : public CElementBehavior {
public:
    // Copies width × height of dc from (x, y) as the background, replacing
    // the one held.
    void Capture(HDC dc, int x, int y, int width, int height);
    bool HasBackground() const { return memoryDc_ != nullptr; }

    // Copies the captured background from its origin to (left, top) of dc;
    // nothing before a capture.
    void PaintBackground(LONG left, LONG top, LONG right, LONG bottom, HDC dc) override;

protected:
    ~CBackgroundBehavior() override;

private:
    void DropBackground();

    HDC memoryDc_ = nullptr;
    // The captured bitmap stays selected into memoryDc_ for as long as that
    // DC lives; bitmapBefore_ goes back in before both are deleted.
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ bitmapBefore_ = nullptr;
};
