#include "grid/cell_bool.h"

#include "grid/grid_archive.h"
#include "grid/paint_manager.h"
#include "grid/property_grid_wnd.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellBool, CExtGridCell)

void CExtGridCellBool::Assign(const CExtGridCell& other) {
    CExtGridCell::Assign(other);
    if (other.IsKindOf(kClass)) m_checked = static_cast<const CExtGridCellBool&>(other).m_checked;
}

void CExtGridCellBool::Serialize(CExtGridArchive& ar) {
    CExtGridCell::Serialize(ar);
    ar.Exchange(m_checked);
}

bool CExtGridCellBool::OnToggle(const CExtGridCellContext& context) {
    if (IsReadOnly()) return true;
    m_checked = !m_checked;
    context.Invalidate();
    context.ValueApplied();
    return true;
}

bool CExtGridCellBool::OnValueClick(const CExtGridCellContext& context, POINT point) {
    // A click on the box (or just around it) toggles; elsewhere the value is
    // only selected, so that choosing a row never changes it by accident.
    if (!context.grid) return OnToggle(context);
    const CExtGridPaintManager& pm = context.grid->PaintManager();
    if (point.x < context.valueRect.left + pm.Scale(4 + 13 + 4)) return OnToggle(context);
    return false;
}

int CExtGridCellBool::GetIconWidth(const CExtGridPaintManager& pm) const { return pm.Scale(13); }

void CExtGridCellBool::PaintIcon(const CExtGridPaintContext& pc, const RECT& iconRect) const {
    pc.pm->DrawCheckBox(pc.dc, iconRect, m_checked, pc.enabled && !IsReadOnly());
}
