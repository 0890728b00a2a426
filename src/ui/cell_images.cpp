#include "ui/cell_images.h"

#include "grid/grid_archive.h"
#include "ui/cell_dialog_result.h"
#include "ui/image_list_dialog.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellImages, CExtGridCellFile)

void CExtGridCellImages::Assign(const CExtGridCell& other) {
    CExtGridCellFile::Assign(other);
    if (other.IsKindOf(kClass)) {
        const auto& o = static_cast<const CExtGridCellImages&>(other);
        m_imageList = o.m_imageList;
        m_siteStructure = o.m_siteStructure;
    } else {
        m_imageList.clear();
        m_siteStructure = nullptr;
    }
}

void CExtGridCellImages::Serialize(CExtGridArchive& ar) {
    CExtGridCellFile::Serialize(ar);
    ar.Exchange(m_imageList);
}

void CExtGridCellImages::OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const {
    if (!IsTextRectVisible(pc, textRect)) return;
    HGDIOBJ oldFont = SelectObject(pc.dc, pc.font);
    COLORREF oldColor = SetTextColor(pc.dc, kHintColor);
    int oldMode = SetBkMode(pc.dc, TRANSPARENT);
    RECT r = textRect;
    DrawTextA(pc.dc, kHint, -1, &r, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    SetBkMode(pc.dc, oldMode);
    SetTextColor(pc.dc, oldColor);
    SelectObject(pc.dc, oldFont);
}

void CExtGridCellImages::OnButtonClick(const CExtGridCellContext& context, int index) {
    if (index != 0) {
        CExtGridCellFile::OnButtonClick(context, index);
        return;
    }
    std::string imageList = m_imageList;
    // Owned by the Properties dialog, which stays disabled while it runs.
    bool confirmed = RunImageListDialog(context.OwnerWindow(), imageList, m_siteStructure);
    ReturnFocusToGrid(context);
    if (!confirmed) return;
    m_imageList = imageList;
    CompleteDialogInput(context);
}
