#include "grid/cell_string.h"

#include "grid/paint_manager.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellString, CExtGridCell)
PWGRID_IMPLEMENT_CELL(CExtGridCellPassword, CExtGridCellString)
PWGRID_IMPLEMENT_CELL(CExtGridCellHeader, CExtGridCell)

std::string CExtGridCellPassword::GetDisplayText() const { return std::string(m_text.size(), '*'); }

void CExtGridCellPassword::OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const {
    if (!IsTextRectVisible(pc, textRect)) return;
    // Black circles, the way password boxes show hidden text.
    std::wstring dots(m_text.size(), L'\x25CF');
    HGDIOBJ oldFont = SelectObject(pc.dc, pc.font);
    COLORREF oldColor = SetTextColor(pc.dc, pc.textColor);
    int oldMode = SetBkMode(pc.dc, TRANSPARENT);
    RECT rc = textRect;
    DrawTextW(pc.dc, dots.c_str(), static_cast<int>(dots.size()), &rc,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    SetBkMode(pc.dc, oldMode);
    SetTextColor(pc.dc, oldColor);
    SelectObject(pc.dc, oldFont);
}

void CExtGridCellHeader::PaintValue(const CExtGridPaintContext& pc, const RECT& valueRect) const {
    CExtGridPaintManager::FillSolid(pc.dc, valueRect, GetSysColor(COLOR_3DFACE));
    CExtGridPaintContext bold = pc;
    bold.font = pc.pm->BoldFont();
    bold.textColor = GetSysColor(COLOR_BTNTEXT);
    RECT textRect = valueRect;
    textRect.left += pc.pm->Scale(4);
    OnPaintText(bold, textRect);
}
