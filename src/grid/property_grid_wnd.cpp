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

bool ContainsNoCase(const std::string& text, const std::string& part) {
    if (part.empty()) return true;
    std::string t = ascii::Lower(text), p = ascii::Lower(part);
    return t.find(p) != std::string::npos;
}

bool NameLess(const CExtPropertyItem* a, const CExtPropertyItem* b) {
    std::string la = ascii::Lower(a->NameGet()), lb = ascii::Lower(b->NameGet());
    if (la != lb) return la < lb;
    return a->NameGet() < b->NameGet();
}
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
    BuildRows();
    TakeDefaults();
    m_focus = focusItem ? FindRow(focusItem) : -1;
    if (m_focus < 0 && !m_rows.empty() && focusItem) m_focus = 0;
    UpdateScrollBar();
    EnsureVisible(m_focus);
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
    NotifyFocus();
}

void CExtPropertyGridWnd::TakeDefaults() {
    // The value an item has when the grid first reads the store is the one
    // "modified" is measured against, whether the item is shown yet or not.
    if (!m_store) return;
    std::vector<CExtPropertyItem*> pending{m_store};
    while (!pending.empty()) {
        CExtPropertyItem* item = pending.back();
        pending.pop_back();
        if (item->IsValue()) {
            auto* value = static_cast<CExtPropertyValue*>(item);
            if (!value->HasDefault()) value->ValueDefaultFromActive();
        }
        for (int i = 0; i < item->ItemGetCount(); ++i) pending.push_back(item->ItemGetAt(i));
    }
}

bool CExtPropertyGridWnd::MatchesFilter(const CExtPropertyItem* item) const {
    if (m_filter.empty()) return true;
    if (item->IsValue() &&
        (ContainsNoCase(item->NameGet(), m_filter) || ContainsNoCase(item->DescriptionGet(), m_filter)))
        return true;
    for (int i = 0; i < item->ItemGetCount(); ++i)
        if (MatchesFilter(item->ItemGetAt(i))) return true;
    return false;
}

void CExtPropertyGridWnd::AddValueRows(CExtPropertyItem* item, int depth) {
    if (!MatchesFilter(item)) return;
    m_rows.push_back({item, depth});
    // While filtering every match is shown, whatever was collapsed.
    if (!item->IsExpanded() && m_filter.empty()) return;
    for (int i = 0; i < item->ItemGetCount(); ++i) AddValueRows(item->ItemGetAt(i), depth + 1);
}

void CExtPropertyGridWnd::BuildRows() {
    m_rows.clear();
    m_tipRow = m_tipColumn = -1;   // the tip's text is worked out again
    if (!m_store) return;
    if (m_sorted) {
        std::vector<CExtPropertyItem*> values;
        for (int i = 0; i < m_store->ItemGetCount(); ++i) {
            CExtPropertyItem* top = m_store->ItemGetAt(i);
            if (top->IsValue()) {
                values.push_back(top);
                continue;
            }
            for (int j = 0; j < top->ItemGetCount(); ++j) values.push_back(top->ItemGetAt(j));
        }
        std::stable_sort(values.begin(), values.end(), NameLess);
        for (CExtPropertyItem* value : values) AddValueRows(value, 0);
        return;
    }
    for (int i = 0; i < m_store->ItemGetCount(); ++i) {
        CExtPropertyItem* top = m_store->ItemGetAt(i);
        if (top->IsValue()) {
            AddValueRows(top, 0);
            continue;
        }
        if (!MatchesFilter(top) || (!m_filter.empty() && top->ItemGetCount() == 0)) continue;
        m_rows.push_back({top, 0});
        if (!top->IsExpanded() && m_filter.empty()) continue;
        for (int j = 0; j < top->ItemGetCount(); ++j) AddValueRows(top->ItemGetAt(j), 0);
    }
}

// ---- rows -----------------------------------------------------------------------

CExtPropertyItem* CExtPropertyGridWnd::RowItem(int row) const {
    return row >= 0 && row < RowCount() ? m_rows[row].item : nullptr;
}

int CExtPropertyGridWnd::RowDepth(int row) const { return row >= 0 && row < RowCount() ? m_rows[row].depth : 0; }

int CExtPropertyGridWnd::FindRow(const CExtPropertyItem* item) const {
    for (int i = 0; i < RowCount(); ++i)
        if (m_rows[i].item == item) return i;
    return -1;
}

bool CExtPropertyGridWnd::RowHasChildren(int row) const {
    CExtPropertyItem* item = RowItem(row);
    return item && item->ItemGetCount() > 0;
}

bool CExtPropertyGridWnd::GetRowRect(int row, RECT* rect) const {
    if (row < 0 || row >= RowCount() || !m_hwnd) return false;
    RECT client;
    GetClientRect(m_hwnd, &client);
    int h = m_pm.RowHeight();
    *rect = {0, (row - m_top) * h, client.right, (row - m_top + 1) * h};
    return true;
}

int CExtPropertyGridWnd::SplitterGet() const {
    RECT client{};
    if (m_hwnd) GetClientRect(m_hwnd, &client);
    int width = client.right;
    int x = static_cast<int>(width * m_splitRatio + 0.5);
    int minimum = m_pm.Scale(40);
    if (width > 2 * minimum) x = std::clamp(x, minimum, width - minimum);
    return x;
}

void CExtPropertyGridWnd::FitSplitterToNames() {
    if (!m_hwnd) return;
    HDC dc = GetDC(m_hwnd);
    HGDIOBJ old = SelectObject(dc, m_pm.NormalFont());
    int widest = 0;
    for (int row = 0; row < RowCount(); ++row) {
        if (!m_rows[row].item->IsValue()) continue;
        const std::string& name = m_rows[row].item->NameGet();
        SIZE extent{};
        GetTextExtentPoint32A(dc, name.c_str(), static_cast<int>(name.size()), &extent);
        widest = (std::max)(widest, NameLeft(row) + static_cast<int>(extent.cx));
    }
    SelectObject(dc, old);
    ReleaseDC(m_hwnd, dc);
    if (widest > 0) SplitterSet(widest + m_pm.Scale(8));
}

void CExtPropertyGridWnd::SplitterSet(int x) {
    RECT client{};
    if (m_hwnd) GetClientRect(m_hwnd, &client);
    if (client.right <= 0) return;
    m_splitRatio = std::clamp(static_cast<double>(x) / client.right, 0.1, 0.9);
    if (IsEditing()) CommitEdit();
    InvalidateRect(m_hwnd, nullptr, FALSE);
}

int CExtPropertyGridWnd::NameLeft(int row) const {
    int gutter = m_pm.Scale(14);
    if (RowItem(row) && RowItem(row)->IsCategory()) return gutter + m_pm.Scale(2);
    return gutter + RowDepth(row) * m_pm.Scale(12) + m_pm.Scale(3);
}

RECT CExtPropertyGridWnd::ExpanderRect(int row) const {
    RECT rect{};
    GetRowRect(row, &rect);
    int right = NameLeft(row) - m_pm.Scale(2);
    if (RowItem(row) && RowItem(row)->IsCategory()) right = m_pm.Scale(14);
    return {right - m_pm.Scale(14), rect.top, right, rect.bottom};
}

RECT CExtPropertyGridWnd::GetValueRect(int row) const {
    RECT rect{};
    if (!GetRowRect(row, &rect)) return rect;
    rect.left = SplitterGet() + 1;
    rect.bottom -= 1;   // the row's bottom line
    return rect;
}

RECT CExtPropertyGridWnd::GetButtonRect(int row, int button) const {
    RECT value = GetValueRect(row);
    CExtPropertyItem* item = RowItem(row);
    CExtGridCell* cell = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
    if (!cell || button < 0 || button >= cell->GetButtonCount()) return RECT{};
    int width = m_pm.ButtonWidth();
    bool spin = cell->GetButtonKind(0) == CExtGridCell::ButtonKind::SpinUp;
    if (spin) {
        // Up and down share one column, one above the other.
        int middle = (value.top + value.bottom) / 2;
        RECT r{value.right - width, value.top, value.right, value.bottom};
        if (button == 0) r.bottom = middle; else r.top = middle;
        return r;
    }
    int right = value.right - (cell->GetButtonCount() - 1 - button) * width;
    return {right - width, value.top, right, value.bottom};
}

int CExtPropertyGridWnd::HitTestRow(POINT point) const {
    if (point.y < 0) return -1;
    int row = m_top + point.y / m_pm.RowHeight();
    return row < RowCount() ? row : -1;
}

int CExtPropertyGridWnd::HitTestButton(int row, POINT point) const {
    CExtPropertyItem* item = RowItem(row);
    if (row != m_focus || !item || !item->IsValue()) return -1;
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell) return -1;
    for (int b = 0; b < cell->GetButtonCount(); ++b) {
        RECT r = GetButtonRect(row, b);
        if (PtInRect(&r, point)) return b;
    }
    return -1;
}

int CExtPropertyGridWnd::VisibleRowCount() const {
    RECT client{};
    if (m_hwnd) GetClientRect(m_hwnd, &client);
    return (std::max)(1, static_cast<int>(client.bottom) / m_pm.RowHeight());
}

void CExtPropertyGridWnd::EnsureVisible(int row) {
    if (row < 0 || row >= RowCount()) return;
    if (row < m_top) ScrollTo(row);
    else if (row >= m_top + VisibleRowCount()) ScrollTo(row - VisibleRowCount() + 1);
}

void CExtPropertyGridWnd::UpdateScrollBar() {
    if (!m_hwnd) return;
    int page = VisibleRowCount();
    m_top = std::clamp(m_top, 0, (std::max)(0, RowCount() - page));
    SCROLLINFO si{};
    si.cbSize = sizeof(si);
    si.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    si.nMin = 0;
    si.nMax = (std::max)(0, RowCount() - 1);
    si.nPage = page;
    si.nPos = m_top;
    SetScrollInfo(m_hwnd, SB_VERT, &si, TRUE);
}

void CExtPropertyGridWnd::ScrollTo(int top) {
    top = std::clamp(top, 0, (std::max)(0, RowCount() - VisibleRowCount()));
    if (top == m_top) return;
    if (IsEditing()) CommitEdit();
    m_top = top;
    UpdateScrollBar();
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
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
    BuildRows();
    TakeDefaults();
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

// ---- editing ----------------------------------------------------------------------

bool CExtPropertyGridWnd::IsEditing() const { return m_editor && m_editor->IsOpen(); }

HWND CExtPropertyGridWnd::EditorHwnd() const { return IsEditing() ? m_editor->FocusHwnd() : nullptr; }

bool CExtPropertyGridWnd::BeginEdit(const std::string* initialText) {
    CExtPropertyItem* item = FocusItem();
    if (!item || !item->IsValue() || !m_hwnd) return false;
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell || cell->GetEditorKind() == CExtGridCell::EditorKind::None) return false;
    EnsureVisible(m_focus);
    RECT value = GetValueRect(m_focus);
    RECT text = value;
    text.left += m_pm.Scale(4);
    if (int icon = cell->GetIconWidth(m_pm)) text.left += icon + m_pm.Scale(4);
    if (cell->GetButtonCount() > 0 && cell->GetEditorKind() != CExtGridCell::EditorKind::ComboBox &&
        cell->GetEditorKind() != CExtGridCell::EditorKind::DropList) {
        RECT first = GetButtonRect(m_focus, 0);
        text.right = first.left - m_pm.Scale(2);
    }
    InvalidateRow(m_focus);
    return m_editor->Open(*cell, text, value, initialText);
}

bool CExtPropertyGridWnd::CommitEdit() {
    if (!IsEditing()) return true;
    CExtPropertyItem* item = FocusItem();
    CExtGridCell* cell = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
    if (!cell) {
        m_editor->Close();
        return true;
    }
    std::string text = m_editor->GetText();
    if (!cell->ValidateText(text)) {
        MessageBeep(MB_ICONWARNING);
        m_editor->SelectAll();
        return false;
    }
    bool changed = text != cell->GetText();
    m_editor->Close();
    InvalidateRow(m_focus);
    if (changed) {
        cell->SetText(text);
        OnCellInputComplete(*static_cast<CExtPropertyValue*>(item));
    }
    return true;
}

void CExtPropertyGridWnd::CancelEdit() {
    if (!IsEditing()) return;
    m_editor->Close();
    InvalidateRow(m_focus);
}

void CExtPropertyGridWnd::OnEditorKey(WPARAM key, bool shift) {
    switch (key) {
    case VK_RETURN: CommitEdit(); break;
    case VK_ESCAPE: CancelEdit(); break;
    case VK_TAB: {
        // Commit and edit the next (or previous) value that has an editor.
        if (!CommitEdit()) return;
        for (int row = m_focus + (shift ? -1 : 1); row >= 0 && row < RowCount(); row += shift ? -1 : 1) {
            CExtPropertyItem* item = RowItem(row);
            CExtGridCell* cell = item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
            if (cell && cell->GetEditorKind() != CExtGridCell::EditorKind::None) {
                FocusSet(row);
                BeginEdit();
                return;
            }
        }
        break;
    }
    case VK_UP:
    case VK_DOWN: {
        CExtPropertyItem* item = FocusItem();
        CExtGridCell* cell = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
        if (cell && cell->GetButtonCount() == 2 && cell->GetButtonKind(0) == CExtGridCell::ButtonKind::SpinUp) {
            // Spin cells step while they are edited.
            if (!CommitEdit()) return;
            ClickButton(key == VK_UP ? 0 : 1);
            BeginEdit();
            return;
        }
        if (!CommitEdit()) return;
        MoveFocusBy(key == VK_UP ? -1 : 1);
        break;
    }
    case VK_PRIOR:
    case VK_NEXT:
        if (!CommitEdit()) return;
        MoveFocusBy((key == VK_PRIOR ? -1 : 1) * (std::max)(1, VisibleRowCount() - 1));
        break;
    case VK_F4:
        if (!CommitEdit()) return;
        ClickButton(0);
        break;
    }
}

void CExtPropertyGridWnd::OnEditorFocusLost(HWND newFocus) {
    // Leaving the editor keeps a valid text and drops a refused one.
    if (!CommitEdit()) CancelEdit();
}

void CExtPropertyGridWnd::OnEditorListPicked(int index) {
    CExtPropertyItem* item = FocusItem();
    if (!item || !item->IsValue()) return;
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell) return;
    std::vector<std::string> entries = cell->GetListEntries();
    if (index < 0 || index >= static_cast<int>(entries.size())) return;
    CExtGridCellContext context = ContextForRow(m_focus);
    if (cell->IsKindOf(CExtGridCellComboBox::kClass) && index < static_cast<CExtGridCellComboBox*>(cell)->GetCount()) {
        // List cells pick by index, so that equal entries keep their position.
        static_cast<CExtGridCellComboBox*>(cell)->ApplySelection(context, index);
    } else if (entries[index] != cell->GetText()) {
        cell->SetText(entries[index]);
        InvalidateRow(m_focus);
        OnCellValueApplied(*static_cast<CExtPropertyValue*>(item));
    }
}

void CExtPropertyGridWnd::ClickButton(int button) {
    CExtPropertyItem* item = FocusItem();
    if (!item || !item->IsValue()) return;
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell || button < 0 || button >= cell->GetButtonCount() || !cell->IsButtonEnabled(button)) return;
    CExtGridCell::EditorKind kind = cell->GetEditorKind();
    if (button == 0 && (kind == CExtGridCell::EditorKind::ComboBox || kind == CExtGridCell::EditorKind::DropList)) {
        // List cells drop their list in the in-place combo box.
        if (!IsEditing() && !BeginEdit()) return;
        m_editor->ShowDropDown(true);
        return;
    }
    if (IsEditing() && !CommitEdit()) return;
    cell->OnButtonClick(ContextForRow(m_focus), button);
    InvalidateRow(m_focus);
}

void CExtPropertyGridWnd::ToggleFocus() {
    CExtPropertyItem* item = FocusItem();
    if (!item) return;
    if (!item->IsValue()) {
        Expand(m_focus, !item->IsExpanded());
        return;
    }
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell) return;
    if (IsEditing() && !CommitEdit()) return;
    if (!cell->OnToggle(ContextForRow(m_focus))) BeginEdit();
}

void CExtPropertyGridWnd::OnCellInputComplete(CExtPropertyValue& item) {
    InvalidateRow(FindRow(&item));
    if (m_hwnd) NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, m_hwnd, OBJID_CLIENT, FindRow(&item) + 1);
    if (m_events) m_events->OnGridInputComplete(item);
}

void CExtPropertyGridWnd::OnCellValueApplied(CExtPropertyValue& item) {
    InvalidateRow(FindRow(&item));
    if (m_hwnd) NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, m_hwnd, OBJID_CLIENT, FindRow(&item) + 1);
    if (m_events) m_events->OnGridValueApplied(item);
}

// ---- tool tips ------------------------------------------------------------------

void CExtPropertyGridWnd::EnableToolTips(bool enable) {
    m_toolTipsEnabled = enable;
    if (!enable && m_toolTip) {
        DestroyWindow(m_toolTip);
        m_toolTip = nullptr;
    }
    m_tipRow = m_tipColumn = -1;
}

void CExtPropertyGridWnd::UpdateToolTip(POINT point) {
    if (!m_toolTipsEnabled || !m_hwnd) return;
    int row = HitTestRow(point);
    int column = point.x > SplitterGet() ? 1 : 0;
    if (row == m_tipRow && column == m_tipColumn) return;
    m_tipRow = row;
    m_tipColumn = column;
    if (!m_toolTip) {
        INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_WIN95_CLASSES};
        InitCommonControlsEx(&icc);
        m_toolTip = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                                    0, 0, 0, 0, m_hwnd, nullptr, GetModuleHandleA(nullptr), nullptr);
        if (!m_toolTip) return;
        TTTOOLINFOA tool{};
        tool.cbSize = TTTOOLINFOA_V1_SIZE;
        tool.uFlags = TTF_SUBCLASS;
        tool.hwnd = m_hwnd;
        tool.uId = 1;
        tool.lpszText = const_cast<char*>("");
        SendMessageA(m_toolTip, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
        SendMessageA(m_toolTip, WM_SETFONT, reinterpret_cast<WPARAM>(m_pm.NormalFont()), FALSE);
    }
    // The tip holds the whole text only when the cell cuts it off; an empty
    // tip is never shown.
    std::string text;
    RECT area{};
    CExtPropertyItem* item = RowItem(row);
    if (item && GetRowRect(row, &area)) {
        int available;
        HFONT font = m_pm.NormalFont();
        if (column == 0 || !item->IsValue()) {
            text = item->NameGet();
            available = SplitterGet() - NameLeft(row) - m_pm.Scale(3);
            if (!item->IsValue()) {
                font = m_pm.BoldFont();
                available = area.right - NameLeft(row) - m_pm.Scale(4);
            }
            area.right = SplitterGet();
        } else {
            CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
            text = cell ? cell->GetDisplayText() : std::string();
            area = GetValueRect(row);
            available = area.right - area.left - m_pm.Scale(8) - (cell ? cell->GetIconWidth(m_pm) : 0);
        }
        HDC dc = GetDC(m_hwnd);
        HGDIOBJ old = SelectObject(dc, font);
        SIZE extent{};
        GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &extent);
        SelectObject(dc, old);
        ReleaseDC(m_hwnd, dc);
        if (extent.cx <= available) text.clear();
    }
    TTTOOLINFOA tool{};
    tool.cbSize = TTTOOLINFOA_V1_SIZE;
    tool.hwnd = m_hwnd;
    tool.uId = 1;
    tool.rect = area;
    SendMessageA(m_toolTip, TTM_NEWTOOLRECTA, 0, reinterpret_cast<LPARAM>(&tool));
    tool.lpszText = const_cast<char*>(text.c_str());
    SendMessageA(m_toolTip, TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&tool));
    if (text.empty()) SendMessageA(m_toolTip, TTM_POP, 0, 0);
}

void CExtPropertyGridWnd::PaintEditorListEntry(const DRAWITEMSTRUCT& dis) {
    bool selected = (dis.itemState & ODS_SELECTED) != 0;
    CExtGridPaintManager::FillSolid(dis.hDC, dis.rcItem, GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    CExtPropertyItem* item = FocusItem();
    CExtGridCell* cell = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
    if (!cell || static_cast<int>(dis.itemID) < 0) return;
    LRESULT length = SendMessageA(dis.hwndItem, CB_GETLBTEXTLEN, dis.itemID, 0);
    if (length == CB_ERR) return;
    std::string entry(length + 1, '\0');
    SendMessageA(dis.hwndItem, CB_GETLBTEXT, dis.itemID, reinterpret_cast<LPARAM>(entry.data()));
    entry.resize(length);
    CExtGridPaintContext pc;
    pc.dc = dis.hDC;
    pc.pm = &m_pm;
    pc.font = m_pm.NormalFont();
    pc.textColor = GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
    pc.selected = selected;
    cell->PaintListEntry(pc, dis.rcItem, entry);
    if (dis.itemState & ODS_FOCUS) DrawFocusRect(dis.hDC, &dis.rcItem);
}

// ---- painting -------------------------------------------------------------------

void CExtPropertyGridWnd::PaintRow(HDC dc, int row, const RECT& rect, const RECT& clip) {
    CExtPropertyItem* item = m_rows[row].item;
    bool focusRow = row == m_focus;
    bool hasFocus = m_hwnd && (GetFocus() == m_hwnd || IsChild(m_hwnd, GetFocus()));
    int gutter = m_pm.Scale(14);
    int split = SplitterGet();
    int nameLeft = NameLeft(row);
    COLORREF window = GetSysColor(COLOR_WINDOW);
    COLORREF gutterColor = CExtGridPaintManager::GutterColor();

    if (item->IsCategory()) {
        CExtGridPaintManager::FillSolid(dc, rect, gutterColor);
        HGDIOBJ oldFont = SelectObject(dc, m_pm.BoldFont());
        SetBkMode(dc, TRANSPARENT);
        RECT text{nameLeft, rect.top, rect.right - m_pm.Scale(4), rect.bottom};
        SIZE extent{};
        GetTextExtentPoint32A(dc, item->NameGet().c_str(), static_cast<int>(item->NameGet().size()), &extent);
        if (focusRow) {
            RECT mark{nameLeft - m_pm.Scale(2), rect.top + 1, (std::min)(nameLeft + static_cast<int>(extent.cx) + m_pm.Scale(2), static_cast<int>(rect.right)),
                      rect.bottom - 1};
            CExtGridPaintManager::FillSolid(dc, mark, GetSysColor(hasFocus ? COLOR_HIGHLIGHT : COLOR_3DSHADOW));
        }
        SetTextColor(dc, focusRow ? GetSysColor(COLOR_HIGHLIGHTTEXT) : GetSysColor(COLOR_BTNTEXT));
        DrawTextA(dc, item->NameGet().c_str(), -1, &text, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
        SelectObject(dc, oldFont);
        if (item->ItemGetCount() > 0) m_pm.DrawExpander(dc, ExpanderRect(row), item->IsExpanded() || !m_filter.empty());
        return;
    }

    // A value row: gutter, name, splitter, value, bottom line.
    RECT gutterRect{rect.left, rect.top, gutter, rect.bottom};
    CExtGridPaintManager::FillSolid(dc, gutterRect, gutterColor);
    RECT nameRect{gutter, rect.top, split, rect.bottom - 1};
    CExtGridPaintManager::FillSolid(dc, nameRect, window);
    if (focusRow) {
        RECT mark{nameLeft - m_pm.Scale(2), nameRect.top, nameRect.right, nameRect.bottom};
        CExtGridPaintManager::FillSolid(dc, mark, GetSysColor(hasFocus ? COLOR_HIGHLIGHT : COLOR_3DFACE));
    }
    auto* value = static_cast<CExtPropertyValue*>(item);
    CExtGridCell* cell = value->ValueActiveGet();
    bool readOnly = !cell || cell->IsReadOnly();
    HGDIOBJ oldFont = SelectObject(dc, m_pm.NormalFont());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, focusRow && hasFocus ? GetSysColor(COLOR_HIGHLIGHTTEXT)
                                          : GetSysColor(readOnly ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT));
    RECT nameText{nameLeft, rect.top, split - m_pm.Scale(3), rect.bottom - 1};
    DrawTextA(dc, item->NameGet().c_str(), -1, &nameText, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(dc, oldFont);
    if (item->ItemGetCount() > 0) m_pm.DrawExpander(dc, ExpanderRect(row), item->IsExpanded() || !m_filter.empty());

    RECT valueRect = GetValueRect(row);
    CExtGridPaintManager::FillSolid(dc, valueRect, window);
    if (cell && !(focusRow && IsEditing() && m_editor->IsCombo())) {
        CExtGridPaintContext pc;
        pc.dc = dc;
        pc.pm = &m_pm;
        pc.font = value->IsModified() ? m_pm.BoldFont() : m_pm.NormalFont();
        pc.textColor = GetSysColor(readOnly ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT);
        pc.selected = focusRow;
        pc.focused = focusRow && hasFocus;
        pc.enabled = IsWindowEnabled(m_hwnd) != FALSE;
        pc.clip = clip;
        RECT cellRect = valueRect;
        if (focusRow && cell->GetButtonCount() > 0) cellRect.right = GetButtonRect(row, 0).left;
        int saved = SaveDC(dc);
        IntersectClipRect(dc, cellRect.left, cellRect.top, cellRect.right, cellRect.bottom);
        if (!(focusRow && IsEditing())) cell->PaintValue(pc, cellRect);
        else if (int icon = cell->GetIconWidth(m_pm)) {
            // The editor covers the text; the picture stays visible beside it.
            RECT iconRect{cellRect.left + m_pm.Scale(4), cellRect.top, cellRect.left + m_pm.Scale(4) + icon, cellRect.bottom};
            cell->PaintIcon(pc, iconRect);
        }
        RestoreDC(dc, saved);
        if (focusRow && !readOnly)
            for (int b = 0; b < cell->GetButtonCount(); ++b)
                m_pm.DrawCellButton(dc, GetButtonRect(row, b), cell->GetButtonKind(b), m_pressedButton == b,
                                    cell->IsButtonEnabled(b), m_hotButton == b);
    }
    // Grid lines: the splitter and the line under the row.
    RECT splitLine{split, rect.top, split + 1, rect.bottom};
    CExtGridPaintManager::FillSolid(dc, splitLine, CExtGridPaintManager::LineColor());
    RECT bottomLine{gutter, rect.bottom - 1, rect.right, rect.bottom};
    CExtGridPaintManager::FillSolid(dc, bottomLine, CExtGridPaintManager::LineColor());
}

void CExtPropertyGridWnd::Paint(HDC dc, const RECT& clip) {
    RECT client;
    GetClientRect(m_hwnd, &client);
    int h = m_pm.RowHeight();
    int y = 0;
    for (int row = m_top; row < RowCount() && y < client.bottom; ++row, y += h) {
        RECT rect{0, y, client.right, y + h};
        RECT overlap;
        if (IntersectRect(&overlap, &rect, &clip)) PaintRow(dc, row, rect, clip);
    }
    if (y < client.bottom) {
        RECT rest{0, y, client.right, client.bottom};
        CExtGridPaintManager::FillSolid(dc, rest, GetSysColor(COLOR_WINDOW));
        RECT gutter{0, y, m_pm.Scale(14), client.bottom};
        CExtGridPaintManager::FillSolid(dc, gutter, CExtGridPaintManager::GutterColor());
        if (RowCount() == 0) {
            // Say why the grid is empty rather than showing nothing.
            std::string note = m_filter.empty() ? "No properties" : "No properties match \"" + m_filter + "\"";
            HGDIOBJ oldFont = SelectObject(dc, m_pm.NormalFont());
            SetBkMode(dc, TRANSPARENT);
            SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
            RECT text{m_pm.Scale(14), m_pm.Scale(12), client.right, m_pm.Scale(12) + h};
            DrawTextA(dc, note.c_str(), -1, &text, DT_CENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
            SelectObject(dc, oldFont);
        }
    }
}

// ---- input ----------------------------------------------------------------------

void CExtPropertyGridWnd::OnKeyDown(WPARAM key) {
    bool alt = GetKeyState(VK_MENU) < 0;
    CExtPropertyItem* item = FocusItem();
    switch (key) {
    case VK_UP:
        if (alt) { ClickButton(0); break; }
        MoveFocusBy(-1);
        break;
    case VK_DOWN:
        if (alt) { ClickButton(0); break; }
        MoveFocusBy(1);
        break;
    case VK_PRIOR: MoveFocusBy(-(std::max)(1, VisibleRowCount() - 1)); break;
    case VK_NEXT: MoveFocusBy((std::max)(1, VisibleRowCount() - 1)); break;
    case VK_HOME: if (RowCount()) FocusSet(0); break;
    case VK_END: if (RowCount()) FocusSet(RowCount() - 1); break;
    case VK_LEFT:
        if (!item) break;
        if (item->ItemGetCount() > 0 && item->IsExpanded()) Expand(m_focus, false);
        else if (item->ItemParentGet() && item->ItemParentGet() != m_store) {
            int parent = FindRow(item->ItemParentGet());
            if (parent >= 0) FocusSet(parent);
        }
        break;
    case VK_RIGHT:
        if (!item || item->ItemGetCount() == 0) break;
        if (!item->IsExpanded()) Expand(m_focus, true);
        else if (m_focus + 1 < RowCount()) FocusSet(m_focus + 1);
        break;
    case VK_ADD:
    case VK_OEM_PLUS:
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
        if (item && item->ItemGetCount() > 0) {
            Expand(m_focus, key == VK_ADD || key == VK_OEM_PLUS);
            bool shift = GetKeyState(VK_SHIFT) < 0;
            m_swallowChar = key == VK_ADD ? '+' : key == VK_SUBTRACT ? '-'
                          : key == VK_OEM_PLUS ? (shift ? '+' : '=') : (shift ? '_' : '-');
        }
        break;
    case VK_MULTIPLY:
        ExpandAll(true);
        m_swallowChar = '*';
        break;
    case VK_DIVIDE:
        ExpandAll(false);
        m_swallowChar = '/';
        break;
    case VK_RETURN:
        if (!item) break;
        if (!item->IsValue()) Expand(m_focus, !item->IsExpanded());
        else if (!BeginEdit()) ToggleFocus();
        break;
    case VK_F2: BeginEdit(); break;
    case 'F':
        if (GetKeyState(VK_CONTROL) < 0 && m_events) m_events->OnGridFindRequested();
        break;
    case VK_F4: ClickButton(0); break;
    case VK_DELETE: {
        // Delete starts a fresh text, to be confirmed with Enter.
        CExtGridCell* cell = item && item->IsValue() ? static_cast<CExtPropertyValue*>(item)->ValueActiveGet() : nullptr;
        if (cell && (cell->GetEditorKind() == CExtGridCell::EditorKind::Text ||
                     cell->GetEditorKind() == CExtGridCell::EditorKind::Password)) {
            std::string empty;
            BeginEdit(&empty);
        }
        break;
    }
    }
}

void CExtPropertyGridWnd::OnChar(WPARAM ch) {
    char swallow = m_swallowChar;
    m_swallowChar = 0;
    if (swallow && static_cast<char>(ch) == swallow) return;
    if (ch < 32 || ch == 127) return;
    CExtPropertyItem* item = FocusItem();
    if (!item) return;
    if (!item->IsValue()) {
        if (ch == ' ') Expand(m_focus, !item->IsExpanded());
        return;
    }
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell || cell->IsReadOnly()) return;
    switch (cell->GetEditorKind()) {
    case CExtGridCell::EditorKind::None:
        if (ch == ' ') cell->OnToggle(ContextForRow(m_focus));
        break;
    case CExtGridCell::EditorKind::DropList: {
        // Typing picks the next entry that starts with the letter.
        std::vector<std::string> entries = cell->GetListEntries();
        if (entries.empty()) break;
        int count = static_cast<int>(entries.size());
        int start = static_cast<int>(std::find(entries.begin(), entries.end(), cell->GetText()) - entries.begin());
        for (int i = 1; i <= count; ++i) {
            int index = (start + i) % count;
            if (!entries[index].empty() && ascii::ToLower(entries[index][0]) == ascii::ToLower(static_cast<char>(ch))) {
                OnEditorListPicked(index);
                break;
            }
        }
        break;
    }
    default: {
        std::string typed(1, static_cast<char>(ch));
        BeginEdit(&typed);
        break;
    }
    }
}

void CExtPropertyGridWnd::OnLButtonDown(POINT point, bool doubleClick) {
    if (GetFocus() != m_hwnd) SetFocus(m_hwnd);   // also ends an open edit
    int split = SplitterGet();
    if (std::abs(point.x - split) <= m_pm.Scale(3) && HitTestRow(point) >= 0 &&
        !(RowItem(HitTestRow(point)) && RowItem(HitTestRow(point))->IsCategory())) {
        if (doubleClick) {
            FitSplitterToNames();
            return;
        }
        m_draggingSplitter = true;
        SetCapture(m_hwnd);
        return;
    }
    int row = HitTestRow(point);
    if (row < 0) return;
    CExtPropertyItem* item = RowItem(row);
    RECT expander = ExpanderRect(row);
    if (item->ItemGetCount() > 0 && PtInRect(&expander, point)) {
        FocusSet(row, 0);
        Expand(row, !item->IsExpanded());
        return;
    }
    if (!item->IsValue()) {
        FocusSet(row, 0);
        if (doubleClick) Expand(row, !item->IsExpanded());
        return;
    }
    int button = HitTestButton(row, point);
    if (button >= 0) {
        m_pressedButton = button;
        InvalidateRow(row);
        UpdateWindow(m_hwnd);
        ClickButton(button);
        m_pressedButton = -1;
        InvalidateRow(m_focus);
        return;
    }
    int column = point.x > split ? 1 : 0;
    FocusSet(row, column);
    if (column == 0) {
        if (doubleClick) ToggleFocus();
        return;
    }
    CExtGridCell* cell = static_cast<CExtPropertyValue*>(item)->ValueActiveGet();
    if (!cell) return;
    if (cell->OnValueClick(ContextForRow(row), point)) return;
    if (doubleClick) {
        ToggleFocus();
        return;
    }
    if (!BeginEdit()) return;
    if (m_editor->Kind() == CExtGridCell::EditorKind::DropList) {
        m_editor->ShowDropDown(true);
    } else if (!m_editor->IsCombo()) {
        // Put the caret where the user clicked.
        HWND edit = m_editor->FocusHwnd();
        POINT p = point;
        MapWindowPoints(m_hwnd, edit, &p, 1);
        LRESULT hit = SendMessageA(edit, EM_CHARFROMPOS, 0, MAKELPARAM(p.x, p.y));
        int index = LOWORD(hit);
        RECT editRect;
        GetClientRect(edit, &editRect);
        if (p.x >= 0 && p.x < editRect.right) SendMessageA(edit, EM_SETSEL, index, index);
    }
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
    case WM_CHAR:
        OnChar(wParam);
        return 0;
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
    case WM_CAPTURECHANGED:
        m_draggingSplitter = false;
        return 0;
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
        if (IsEditing() && reinterpret_cast<HWND>(lParam) == m_editor->ControlHwnd() && HIWORD(wParam) == CBN_SELENDOK)
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
