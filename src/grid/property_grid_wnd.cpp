// The grid window: creation, the focus row and the window procedure. Its other
// jobs live beside it: grid_rows.cpp (which rows, window-free), _layout (geometry),
// _edit (in-place editing), _paint (painting, tool tips), _input (keys, mouse).
#include "grid/property_grid_wnd.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <cstdlib>

#include "grid/cell_combo.h"
#include "grid/grid_accessible.h"
#include "grid/inplace_editor.h"
#include "grid/window_class.h"
#include "xml/ascii.h"

namespace {
const char kClassName[] = "PwPropertyGridRows";
}  // namespace

CExtPropertyGridWnd::CExtPropertyGridWnd(CExtGridPaintManager& pm, CExtPropertyGridEvents* events)
    : m_pm(pm), m_events(events), m_editor(std::make_unique<CExtGridInplaceEditor>(*this)) {}

CExtPropertyGridWnd::~CExtPropertyGridWnd() {
    m_editor.reset();
    if (m_hwnd) DestroyWindow(m_hwnd);
}

bool CExtPropertyGridWnd::Create(HWND parent, const RECT& rect, int id) {
    if (!EnsureGridWindowClass(kClassName, BoundWindowProc<CExtPropertyGridWnd>, CS_DBLCLKS)) return false;
    m_hwnd = CreateWindowExA(0, kClassName, "", WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP | WS_CLIPCHILDREN,
                             rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, parent,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), OwnModule(), this);
    return m_hwnd != nullptr;
}

void CExtPropertyGridWnd::FocusSet(int row, int column) {
    if (row >= RowCount()) row = RowCount() - 1;
    if (row < -1) row = -1;
    if (row == m_focus && column == m_focusColumn) return;
    if (IsEditing() && row != m_focus) {
        if (!CommitEdit()) CancelEdit();
    }
    int old = m_focus;
    m_focus = row;
    m_focusColumn = column;
    m_hotButton = -1;
    InvalidateRow(old);
    InvalidateRow(row);
    EnsureVisible(row);
    NotifyFocus();
}

void CExtPropertyGridWnd::NotifyFocus() {
    if (m_events) m_events->OnGridFocusChanged(FocusItem());
    if (m_hwnd && m_focus >= 0) NotifyWinEvent(EVENT_OBJECT_FOCUS, m_hwnd, OBJID_CLIENT, m_focus + 1);
}

void CExtPropertyGridWnd::MoveFocusBy(int delta) {
    if (RowCount() == 0) return;
    int row = m_focus < 0 ? (delta > 0 ? 0 : RowCount() - 1) : std::clamp(m_focus + delta, 0, RowCount() - 1);
    FocusSet(row);
}

void CExtPropertyGridWnd::Expand(int row, bool expand) {
    CExtPropertyItem* item = RowItem(row);
    if (!item || item->ItemGetCount() == 0 || item->IsExpanded() == expand) return;
    item->SetExpanded(expand);
    CExtPropertyItem* focus = FocusItem();
    CancelEdit();
    RebuildRows();
    // A collapsed category takes the focus of a row it hid.
    int newFocus = focus ? FindRow(focus) : -1;
    if (focus && newFocus < 0) newFocus = FindRow(item);
    m_focus = newFocus;
    UpdateScrollBar();
    InvalidateRect(m_hwnd, nullptr, FALSE);
    NotifyFocus();
}

void CExtPropertyGridWnd::ExpandAll(bool expand) {
    if (!m_store) return;
    std::vector<CExtPropertyItem*> pending{m_store};
    while (!pending.empty()) {
        CExtPropertyItem* item = pending.back();
        pending.pop_back();
        if (item != m_store) item->SetExpanded(expand);
        for (int i = 0; i < item->ItemGetCount(); ++i) pending.push_back(item->ItemGetAt(i));
    }
    Rebuild();
}

void CExtPropertyGridWnd::InvalidateRow(int row) {
    RECT rect;
    if (m_hwnd && GetRowRect(row, &rect)) InvalidateRect(m_hwnd, &rect, FALSE);
}

void CExtPropertyGridWnd::RefreshCellExtents() {
    UpdateScrollBar();
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
}

CExtGridCellContext CExtPropertyGridWnd::ContextForRow(int row) {
    CExtGridCellContext context;
    context.grid = this;
    CExtPropertyItem* item = RowItem(row);
    context.item = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item) : nullptr;
    context.row = row;
    context.valueRect = GetValueRect(row);
    return context;
}

void CExtPropertyGridWnd::OnBindWindow(HWND hwnd) { m_hwnd = hwnd; }

void CExtPropertyGridWnd::OnUnbindWindow() {
    ReleaseAccessible();
    m_hwnd = nullptr;
}

LRESULT CExtPropertyGridWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ERASEBKGND: return 1;
        case WM_PAINT:
            // Painted into a bitmap first, so rows never flicker.
            CExtGridPaintManager::PaintBuffered(m_hwnd, [this](HDC dc, const RECT& dirty) { Paint(dc, dirty); });
            return 0;
        case WM_PRINTCLIENT: {
            RECT client;
            GetClientRect(m_hwnd, &client);
            Paint(reinterpret_cast<HDC>(wParam), client);
            return 0;
        }
        case WM_SIZE:
            if (IsEditing()) CommitEdit();
            UpdateScrollBar();
            InvalidateRect(m_hwnd, nullptr, FALSE);
            return 0;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            InvalidateRow(m_focus);
            if (message == WM_SETFOCUS && m_focus < 0 && RowCount() > 0) FocusSet(0);
            return 0;
        case WM_GETDLGCODE: {
            LRESULT code = DLGC_WANTARROWS | DLGC_WANTCHARS;
            const MSG* msg = reinterpret_cast<const MSG*>(lParam);
            if (msg && msg->message == WM_KEYDOWN && msg->wParam == VK_RETURN && FocusItem()) code |= DLGC_WANTMESSAGE;
            return code;
        }
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            if (message == WM_SYSKEYDOWN && wParam != VK_DOWN && wParam != VK_UP) break;
            OnKeyDown(wParam);
            return 0;
        case WM_CHAR: OnChar(wParam); return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            OnLButtonDown({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}, message == WM_LBUTTONDBLCLK);
            return 0;
        case WM_RBUTTONDOWN: {
            // The context menu (WM_CONTEXTMENU, passed on to the control) acts on the clicked row.
            if (GetFocus() != m_hwnd) SetFocus(m_hwnd);
            int row = HitTestRow({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
            if (row >= 0) FocusSet(row, GET_X_LPARAM(lParam) > SplitterGet() ? 1 : 0);
            return 0;
        }
        case WM_LBUTTONUP:
            if (m_draggingSplitter) {
                m_draggingSplitter = false;
                ReleaseCapture();
            }
            return 0;
        case WM_CAPTURECHANGED: m_draggingSplitter = false; return 0;
        case WM_MOUSEMOVE:
            if (m_draggingSplitter) {
                SplitterSet(GET_X_LPARAM(lParam));
                UpdateWindow(m_hwnd);
                return 0;
            }
            {
                POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
                UpdateToolTip(p);
                int hot = HitTestButton(HitTestRow(p), p);
                if (hot != m_hotButton) {
                    m_hotButton = hot;
                    InvalidateRow(m_focus);
                    TRACKMOUSEEVENT tme{sizeof(tme), TME_LEAVE, m_hwnd, 0};
                    TrackMouseEvent(&tme);
                }
                return 0;
            }
        case WM_MOUSELEAVE:
            if (m_hotButton >= 0) {
                m_hotButton = -1;
                InvalidateRow(m_focus);
            }
            return 0;
        case WM_SETCURSOR:
            if (LOWORD(lParam) == HTCLIENT) {
                POINT p;
                GetCursorPos(&p);
                ScreenToClient(m_hwnd, &p);
                int row = HitTestRow(p);
                if (m_draggingSplitter ||
                    (row >= 0 && !RowItem(row)->IsCategory() && std::abs(p.x - SplitterGet()) <= m_pm.Scale(3))) {
                    SetCursor(LoadCursor(nullptr, IDC_SIZEWE));
                    return TRUE;
                }
            }
            break;
        case WM_MOUSEWHEEL: {
            UINT lines = 3;
            SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
            if (lines == WHEEL_PAGESCROLL) lines = VisibleRowCount();
            m_wheelRemainder += GET_WHEEL_DELTA_WPARAM(wParam);
            int notches = m_wheelRemainder / WHEEL_DELTA;
            m_wheelRemainder -= notches * WHEEL_DELTA;
            if (notches) ScrollTo(m_top - notches * static_cast<int>(lines));
            return 0;
        }
        case WM_VSCROLL: {
            SCROLLINFO si{};
            si.cbSize = sizeof(si);
            si.fMask = SIF_ALL;
            GetScrollInfo(m_hwnd, SB_VERT, &si);
            int top = m_top;
            switch (LOWORD(wParam)) {
                case SB_LINEUP: --top; break;
                case SB_LINEDOWN: ++top; break;
                case SB_PAGEUP: top -= VisibleRowCount(); break;
                case SB_PAGEDOWN: top += VisibleRowCount(); break;
                case SB_THUMBTRACK:
                case SB_THUMBPOSITION: top = si.nTrackPos; break;
                case SB_TOP: top = 0; break;
                case SB_BOTTOM: top = RowCount(); break;
            }
            ScrollTo(top);
            return 0;
        }
        case WM_COMMAND:
            if (IsEditing() && reinterpret_cast<HWND>(lParam) == m_editor->ControlHwnd() &&
                HIWORD(wParam) == CBN_SELENDOK)
                OnEditorListPicked(m_editor->GetListSelection());
            return 0;
        case WM_MEASUREITEM: {
            // The in-place combo of a cell that paints its own list entries.
            auto* mis = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
            if (mis->CtlType != ODT_COMBOBOX) break;
            mis->itemHeight = m_pm.TextHeight() + m_pm.Scale(2);
            return TRUE;
        }
        case WM_DRAWITEM: {
            auto* dis = reinterpret_cast<DRAWITEMSTRUCT*>(lParam);
            if (dis->CtlType != ODT_COMBOBOX || !IsEditing() || dis->hwndItem != m_editor->ControlHwnd()) break;
            PaintEditorListEntry(*dis);
            return TRUE;
        }
        case WM_GETOBJECT:
            if (static_cast<LONG>(lParam) == static_cast<LONG>(OBJID_CLIENT)) return AccessibleResult(wParam);
            break;
    }
    return DefWindowProcA(m_hwnd, message, wParam, lParam);
}

// ---- content ------------------------------------------------------------------

void CExtPropertyGridWnd::SetStore(CExtPropertyStore* store) {
    CancelEdit();
    m_store = store;
    m_focus = -1;
    m_top = 0;
    Rebuild();
}

void CExtPropertyGridWnd::SetSorted(bool sorted) {
    if (sorted == m_sorted) return;
    CommitEdit();
    m_sorted = sorted;
    Rebuild();
}

void CExtPropertyGridWnd::SetFilter(const std::string& filter) {
    if (filter == m_filter) return;
    CommitEdit();
    m_filter = filter;
    Rebuild();
}

void CExtPropertyGridWnd::Rebuild() {
    CExtPropertyItem* focusItem = FocusItem();
    CancelEdit();
    RebuildRows();
    m_focus = focusItem ? FindRow(focusItem) : -1;
    if (m_focus < 0 && RowCount() > 0 && focusItem) m_focus = 0;
    UpdateScrollBar();
    EnsureVisible(m_focus);
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
    NotifyFocus();
}


void CExtPropertyGridWnd::RebuildRows() {
    m_rows.Build(m_store, m_sorted, m_filter);
    m_tipRow = m_tipColumn = -1;  // the tip's text is worked out again
    CExtGridRows::TakeDefaults(m_store);
}
