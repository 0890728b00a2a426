#include "grid/grid_accessible.h"

#include <string>

#include "grid/property_grid_wnd.h"

namespace {
BSTR ToBstr(const std::string& text) {
    int length = MultiByteToWideChar(CP_ACP, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0);
    BSTR result = SysAllocStringLen(nullptr, length);
    if (result && length) MultiByteToWideChar(CP_ACP, 0, text.c_str(), static_cast<int>(text.size()), result, length);
    return result;
}

std::string FromBstr(BSTR text) {
    if (!text) return std::string();
    int length = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string result(length > 0 ? length : 0, '\0');
    if (length > 0) WideCharToMultiByte(CP_ACP, 0, text, -1, result.data(), length, nullptr, nullptr);
    if (!result.empty()) result.pop_back();
    return result;
}

CExtGridCell* CellOf(CExtPropertyItem* item) {
    return item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
}

void SetChildId(VARIANT* v, long id) {
    VariantInit(v);
    v->vt = VT_I4;
    v->lVal = id;
}
}  // namespace

// ---- the grid's side --------------------------------------------------------

LRESULT CExtPropertyGridWnd::AccessibleResult(WPARAM wParam) {
    if (!m_accessible) m_accessible = new CExtGridAccessible(this);
    return LresultFromObject(IID_IAccessible, wParam, m_accessible);
}

void CExtPropertyGridWnd::ReleaseAccessible() {
    if (!m_accessible) return;
    m_accessible->Disconnect();
    m_accessible->Release();
    m_accessible = nullptr;
}

// ---- IUnknown -----------------------------------------------------------------

CExtGridAccessible::CExtGridAccessible(CExtPropertyGridWnd* grid) : m_grid(grid) {}

HRESULT CExtGridAccessible::QueryInterface(REFIID iid, void** out) {
    if (!out) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID_IAccessible) {
        *out = static_cast<IAccessible*>(this);
        AddRef();
        return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
}

ULONG CExtGridAccessible::AddRef() { return InterlockedIncrement(&m_refs); }

ULONG CExtGridAccessible::Release() {
    LONG refs = InterlockedDecrement(&m_refs);
    if (refs == 0) delete this;
    return refs;
}

HRESULT CExtGridAccessible::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}

// ---- IAccessible -----------------------------------------------------------------

int CExtGridAccessible::RowOf(const VARIANT& child) const {
    if (child.vt != VT_I4 || !m_grid) return -2;
    if (child.lVal == CHILDID_SELF) return -1;
    int row = child.lVal - 1;
    return row >= 0 && row < m_grid->RowCount() ? row : -2;
}

HRESULT CExtGridAccessible::get_accParent(IDispatch** parent) {
    if (!parent) return E_POINTER;
    *parent = nullptr;
    if (!m_grid) return RPC_E_DISCONNECTED;
    return AccessibleObjectFromWindow(m_grid->GetHwnd(), static_cast<DWORD>(OBJID_WINDOW), IID_IDispatch,
                                      reinterpret_cast<void**>(parent));
}

HRESULT CExtGridAccessible::get_accChildCount(long* count) {
    if (!count) return E_POINTER;
    if (!m_grid) return RPC_E_DISCONNECTED;
    *count = m_grid->RowCount();
    return S_OK;
}

HRESULT CExtGridAccessible::get_accChild(VARIANT child, IDispatch** out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    return RowOf(child) >= 0 ? S_FALSE : E_INVALIDARG;  // rows are simple elements
}

HRESULT CExtGridAccessible::get_accName(VARIANT child, BSTR* name) {
    if (!name) return E_POINTER;
    *name = nullptr;
    int row = RowOf(child);
    if (row == -2) return E_INVALIDARG;
    *name = ToBstr(row == -1 ? std::string("Properties") : m_grid->RowItem(row)->NameGet());
    return S_OK;
}

HRESULT CExtGridAccessible::get_accValue(VARIANT child, BSTR* value) {
    if (!value) return E_POINTER;
    *value = nullptr;
    int row = RowOf(child);
    if (row == -2) return E_INVALIDARG;
    CExtGridCell* cell = row >= 0 ? CellOf(m_grid->RowItem(row)) : nullptr;
    if (!cell) return S_FALSE;
    *value = ToBstr(cell->GetDisplayText());
    return S_OK;
}

HRESULT CExtGridAccessible::get_accDescription(VARIANT child, BSTR* description) {
    if (!description) return E_POINTER;
    *description = nullptr;
    int row = RowOf(child);
    if (row == -2) return E_INVALIDARG;
    if (row == -1) return S_FALSE;
    *description = ToBstr(m_grid->RowItem(row)->DescriptionGet());
    return S_OK;
}

HRESULT CExtGridAccessible::get_accRole(VARIANT child, VARIANT* role) {
    if (!role) return E_POINTER;
    int row = RowOf(child);
    if (row == -2) return E_INVALIDARG;
    long value = ROLE_SYSTEM_OUTLINE;
    if (row >= 0) value = m_grid->RowItem(row)->IsValue() ? ROLE_SYSTEM_ROW : ROLE_SYSTEM_OUTLINEITEM;
    SetChildId(role, value);
    return S_OK;
}

HRESULT CExtGridAccessible::get_accState(VARIANT child, VARIANT* state) {
    if (!state) return E_POINTER;
    int row = RowOf(child);
    if (row == -2) return E_INVALIDARG;
    HWND hwnd = m_grid->GetHwnd();
    long value = STATE_SYSTEM_FOCUSABLE;
    if (row == -1) {
        if (GetFocus() == hwnd) value |= STATE_SYSTEM_FOCUSED;
    } else {
        CExtPropertyItem* item = m_grid->RowItem(row);
        value |= STATE_SYSTEM_SELECTABLE;
        if (row == m_grid->FocusGet()) {
            value |= STATE_SYSTEM_SELECTED;
            if (GetFocus() == hwnd || IsChild(hwnd, GetFocus())) value |= STATE_SYSTEM_FOCUSED;
        }
        if (item->ItemGetCount() > 0) value |= item->IsExpanded() ? STATE_SYSTEM_EXPANDED : STATE_SYSTEM_COLLAPSED;
        CExtGridCell* cell = CellOf(item);
        if (cell && cell->IsReadOnly()) value |= STATE_SYSTEM_READONLY;
        RECT rect, client;
        m_grid->GetRowRect(row, &rect);
        GetClientRect(hwnd, &client);
        if (rect.bottom <= 0 || rect.top >= client.bottom) value |= STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN;
    }
    SetChildId(state, value);
    return S_OK;
}

HRESULT CExtGridAccessible::get_accHelp(VARIANT, BSTR* help) {
    if (help) *help = nullptr;
    return S_FALSE;
}

HRESULT CExtGridAccessible::get_accKeyboardShortcut(VARIANT, BSTR* shortcut) {
    if (shortcut) *shortcut = nullptr;
    return S_FALSE;
}

HRESULT CExtGridAccessible::get_accFocus(VARIANT* child) {
    if (!child) return E_POINTER;
    VariantInit(child);
    if (!m_grid) return RPC_E_DISCONNECTED;
    HWND hwnd = m_grid->GetHwnd();
    if (GetFocus() != hwnd && !IsChild(hwnd, GetFocus())) return S_FALSE;
    SetChildId(child, m_grid->FocusGet() >= 0 ? m_grid->FocusGet() + 1 : CHILDID_SELF);
    return S_OK;
}

HRESULT CExtGridAccessible::get_accSelection(VARIANT* children) {
    if (!children) return E_POINTER;
    VariantInit(children);
    if (!m_grid) return RPC_E_DISCONNECTED;
    if (m_grid->FocusGet() < 0) return S_FALSE;
    SetChildId(children, m_grid->FocusGet() + 1);
    return S_OK;
}

HRESULT CExtGridAccessible::get_accDefaultAction(VARIANT child, BSTR* action) {
    if (!action) return E_POINTER;
    *action = nullptr;
    int row = RowOf(child);
    if (row == -2) return E_INVALIDARG;
    if (row == -1) return S_FALSE;
    CExtPropertyItem* item = m_grid->RowItem(row);
    if (!item->IsValue())
        *action = ToBstr(item->IsExpanded() ? "Collapse" : "Expand");
    else
        *action = ToBstr("Edit");
    return S_OK;
}

HRESULT CExtGridAccessible::accSelect(long flags, VARIANT child) {
    int row = RowOf(child);
    if (row < 0) return E_INVALIDARG;
    if (flags & (SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION)) {
        if (flags & SELFLAG_TAKEFOCUS) SetFocus(m_grid->GetHwnd());
        m_grid->FocusSet(row);
    }
    return S_OK;
}

HRESULT CExtGridAccessible::accLocation(long* left, long* top, long* width, long* height, VARIANT child) {
    if (!left || !top || !width || !height) return E_POINTER;
    int row = RowOf(child);
    if (row == -2) return E_INVALIDARG;
    RECT rect;
    if (row == -1)
        GetClientRect(m_grid->GetHwnd(), &rect);
    else
        m_grid->GetRowRect(row, &rect);
    MapWindowPoints(m_grid->GetHwnd(), nullptr, reinterpret_cast<POINT*>(&rect), 2);
    *left = rect.left;
    *top = rect.top;
    *width = rect.right - rect.left;
    *height = rect.bottom - rect.top;
    return S_OK;
}

HRESULT CExtGridAccessible::accNavigate(long direction, VARIANT start, VARIANT* end) {
    if (!end) return E_POINTER;
    VariantInit(end);
    int row = RowOf(start);
    if (row == -2) return E_INVALIDARG;
    int count = m_grid->RowCount();
    int target = -2;
    switch (direction) {
        case NAVDIR_FIRSTCHILD:
            if (row == -1 && count) target = 0;
            break;
        case NAVDIR_LASTCHILD:
            if (row == -1 && count) target = count - 1;
            break;
        case NAVDIR_NEXT:
        case NAVDIR_DOWN:
            if (row >= 0 && row + 1 < count) target = row + 1;
            break;
        case NAVDIR_PREVIOUS:
        case NAVDIR_UP:
            if (row > 0) target = row - 1;
            break;
    }
    if (target < 0) return S_FALSE;
    SetChildId(end, target + 1);
    return S_OK;
}

HRESULT CExtGridAccessible::accHitTest(long x, long y, VARIANT* child) {
    if (!child) return E_POINTER;
    VariantInit(child);
    if (!m_grid) return RPC_E_DISCONNECTED;
    POINT p{x, y};
    ScreenToClient(m_grid->GetHwnd(), &p);
    RECT client;
    GetClientRect(m_grid->GetHwnd(), &client);
    if (!PtInRect(&client, p)) return S_FALSE;
    int row = m_grid->HitTestRow(p);
    SetChildId(child, row >= 0 ? row + 1 : CHILDID_SELF);
    return S_OK;
}

HRESULT CExtGridAccessible::accDoDefaultAction(VARIANT child) {
    int row = RowOf(child);
    if (row < 0) return row == -1 ? S_FALSE : E_INVALIDARG;
    m_grid->FocusSet(row);
    CExtPropertyItem* item = m_grid->RowItem(row);
    if (!item->IsValue())
        m_grid->Expand(row, !item->IsExpanded());
    else
        m_grid->BeginEdit();
    return S_OK;
}

HRESULT CExtGridAccessible::put_accValue(VARIANT child, BSTR value) {
    int row = RowOf(child);
    if (row < 0) return E_INVALIDARG;
    CExtPropertyItem* item = m_grid->RowItem(row);
    CExtGridCell* cell = CellOf(item);
    if (!cell || cell->IsReadOnly()) return E_ACCESSDENIED;
    std::string text = FromBstr(value);
    if (!cell->ValidateText(text)) return E_INVALIDARG;
    if (text == cell->GetText()) return S_OK;
    cell->SetText(text);
    m_grid->OnCellInputComplete(*static_cast<CExtPropertyValue*>(item));
    return S_OK;
}
