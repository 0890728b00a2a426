#include "ui/cell_updown_range.h"

#include "grid/grid_archive.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellUpDownRange, CExtGridCellUpDown)

void CExtGridCellUpDownRange::Assign(const CExtGridCell& other) {
    CExtGridCellUpDown::Assign(other);
    if (!other.IsKindOf(kClass)) return;
    const auto& o = static_cast<const CExtGridCellUpDownRange&>(other);
    m_lower = o.m_lower;
    m_upper = o.m_upper;
}

void CExtGridCellUpDownRange::Serialize(CExtGridArchive& ar) {
    CExtGridCellUpDown::Serialize(ar);
    ar.Exchange(m_lower);
    ar.Exchange(m_upper);
}
