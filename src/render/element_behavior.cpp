#include "render/element_behavior.h"

CElementBehavior::CElementBehavior() = default;

CElementBehavior::~CElementBehavior() {
    if (paintSite_) paintSite_->Release();
}

STDMETHODIMP CElementBehavior::QueryInterface(REFIID iid, void** out) {
    if (!out) return E_POINTER;
    if (iid == IID_IUnknown || iid == __uuidof(IElementBehavior)) {
        *out = static_cast<IElementBehavior*>(this);
    } else if (iid == __uuidof(IElementBehaviorFactory)) {
        *out = static_cast<IElementBehaviorFactory*>(this);
    } else if (iid == __uuidof(IHTMLPainter)) {
        *out = static_cast<IHTMLPainter*>(this);
    } else {
        *out = nullptr;
        return E_NOTIMPL;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) CElementBehavior::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&references_)); }

STDMETHODIMP_(ULONG) CElementBehavior::Release() {
    LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
}

STDMETHODIMP CElementBehavior::FindBehavior(BSTR, BSTR, IElementBehaviorSite*, IElementBehavior** behavior) {
    if (!behavior) return E_POINTER;
    *behavior = static_cast<IElementBehavior*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP CElementBehavior::Init(IElementBehaviorSite* site) {
    if (site) {
        IHTMLPaintSite* paintSite = nullptr;
        site->QueryInterface(__uuidof(IHTMLPaintSite), reinterpret_cast<void**>(&paintSite));
        if (paintSite_) paintSite_->Release();
        paintSite_ = paintSite;
        if (paintSite_) paintSite_->InvalidateRect(nullptr);
    }
    site_ = site;
    return S_OK;
}

STDMETHODIMP CElementBehavior::Notify(LONG, VARIANT* argument) { return argument ? E_NOTIMPL : E_POINTER; }

STDMETHODIMP CElementBehavior::Detach() {
    if (paintSite_) {
        paintSite_->InvalidateRect(nullptr);
        paintSite_->Release();
        paintSite_ = nullptr;
    }
    return S_OK;
}

STDMETHODIMP CElementBehavior::Draw(RECT bounds, RECT, LONG, HDC dc, void*) {
    PaintBackground(bounds.left, bounds.top, bounds.right, bounds.bottom, dc);
    return S_OK;
}

STDMETHODIMP CElementBehavior::OnResize(SIZE) { return S_OK; }

STDMETHODIMP CElementBehavior::GetPainterInfo(HTML_PAINTER_INFO* info) {
    if (!info) return E_POINTER;
    info->lFlags = painterFlags_;
    info->lZOrder = painterZOrder_;
    info->iidDrawObject = GUID_NULL;
    info->rcExpand = expand_;
    return S_OK;
}

STDMETHODIMP CElementBehavior::HitTestPoint(POINT, WINBOOL* hit, LONG*) {
    if (hit) *hit = FALSE;
    return S_OK;
}

CBackgroundBehavior::~CBackgroundBehavior() { DropBackground(); }

void CBackgroundBehavior::DropBackground() {
    if (!memoryDc_) return;
    SelectObject(memoryDc_, bitmapBefore_);
    DeleteDC(memoryDc_);
    if (bitmap_) DeleteObject(bitmap_);
    memoryDc_ = nullptr;
    bitmap_ = nullptr;
    bitmapBefore_ = nullptr;
}

void CBackgroundBehavior::Capture(HDC dc, int x, int y, int width, int height) {
    DropBackground();
    memoryDc_ = CreateCompatibleDC(dc);
    if (!memoryDc_) return;
    bitmap_ = CreateCompatibleBitmap(dc, width, height);
    bitmapBefore_ = SelectObject(memoryDc_, bitmap_);
    BitBlt(memoryDc_, 0, 0, width, height, dc, x, y, SRCCOPY);
}

void CBackgroundBehavior::PaintBackground(LONG left, LONG top, LONG right, LONG bottom, HDC dc) {
    if (memoryDc_) BitBlt(dc, left, top, right - left, bottom - top, memoryDc_, 0, 0, SRCCOPY);
}
