#include "grid/grid_rows.h"

#include <algorithm>

#include "xml/ascii.h"

namespace {

bool ContainsNoCase(const std::string& text, const std::string& part) {
    return part.empty() || ascii::Lower(text).find(ascii::Lower(part)) != std::string::npos;
}

bool NameLess(const CExtPropertyItem* a, const CExtPropertyItem* b) {
    std::string la = ascii::Lower(a->NameGet()), lb = ascii::Lower(b->NameGet());
    if (la != lb) return la < lb;
    return a->NameGet() < b->NameGet();
}

}  // namespace

void CExtGridRows::Build(CExtPropertyStore* store, bool sorted, const std::string& filter) {
    m_rows.clear();
    m_filter = filter;
    if (!store) return;
    if (sorted) {
        std::vector<CExtPropertyItem*> values;
        for (int i = 0; i < store->ItemGetCount(); ++i) {
            CExtPropertyItem* top = store->ItemGetAt(i);
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
    for (int i = 0; i < store->ItemGetCount(); ++i) {
        CExtPropertyItem* top = store->ItemGetAt(i);
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

int CExtGridRows::Find(const CExtPropertyItem* item) const {
    for (int i = 0; i < Count(); ++i)
        if (m_rows[i].item == item) return i;
    return -1;
}

void CExtGridRows::TakeDefaults(CExtPropertyStore* store) {
    if (!store) return;
    std::vector<CExtPropertyItem*> pending{store};
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

bool CExtGridRows::MatchesFilter(const CExtPropertyItem* item) const {
    if (m_filter.empty()) return true;
    if (item->IsValue() &&
        (ContainsNoCase(item->NameGet(), m_filter) || ContainsNoCase(item->DescriptionGet(), m_filter)))
        return true;
    for (int i = 0; i < item->ItemGetCount(); ++i)
        if (MatchesFilter(item->ItemGetAt(i))) return true;
    return false;
}

void CExtGridRows::AddValueRows(CExtPropertyItem* item, int depth) {
    if (!MatchesFilter(item)) return;
    m_rows.push_back({item, depth});
    if (!item->IsExpanded() && m_filter.empty()) return;
    for (int i = 0; i < item->ItemGetCount(); ++i) AddValueRows(item->ItemGetAt(i), depth + 1);
}
