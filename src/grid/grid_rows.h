#pragma once
// The rows a property grid shows for a store, without any window: which
// items, in which order and at which depth. Categorized order follows the
// store (categories, then their values); alphabetical order lists every
// value of every category by name. A filter keeps the values whose name or
// description contains it (ignoring case), with their categories, and shows
// them whatever was collapsed.
#include <string>
#include <vector>

#include "grid/property_store.h"

class CExtGridRows {
public:
    void Build(CExtPropertyStore* store, bool sorted, const std::string& filter);

    int Count() const { return static_cast<int>(m_rows.size()); }
    // The row's item, or null outside the rows.
    CExtPropertyItem* Item(int row) const { return Valid(row) ? m_rows[row].item : nullptr; }
    // Nesting below the category (categories and top values: 0).
    int Depth(int row) const { return Valid(row) ? m_rows[row].depth : 0; }
    // The row of an item, or -1 when it is not shown.
    int Find(const CExtPropertyItem* item) const;

    // Gives every value of the store that has no default its current value
    // as the default ("modified" is measured against it), shown or not.
    static void TakeDefaults(CExtPropertyStore* store);

private:
    struct Row {
        CExtPropertyItem* item;
        int depth;
    };
    bool Valid(int row) const { return row >= 0 && row < Count(); }
    bool MatchesFilter(const CExtPropertyItem* item) const;
    void AddValueRows(CExtPropertyItem* item, int depth);

    std::vector<Row> m_rows;
    std::string m_filter;
};
