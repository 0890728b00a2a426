#include "ui/cell_url.h"

#include "grid/property_grid_wnd.h"
#include "ui/link_dialog.h"
#include "ui/cell_dialog_result.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellURL, CExtGridCellFile)

void CExtGridCellURL::Assign(const CExtGridCell& other) {
    CExtGridCellFile::Assign(other);
    m_siteStructure = other.IsKindOf(kClass) ? static_cast<const CExtGridCellURL&>(other).m_siteStructure : nullptr;
}

void CExtGridCellURL::OnButtonClick(const CExtGridCellContext& context, int index) {
    if (index != 0) {
        CExtGridCellFile::OnButtonClick(context, index);
        return;
    }
    std::string link = GetText();
    if (!RunLinkDialog(nullptr, link, m_siteStructure)) return;
    SetText(link);
    CompleteDialogInput(context);
}
