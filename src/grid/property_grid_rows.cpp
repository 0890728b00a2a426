// The grid's rows: which items show, in which order, and what they start as.
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
    m_tipRow = m_tipColumn = -1;  // the tip's text is worked out again
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
