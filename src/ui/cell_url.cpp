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
    // Owned by the Properties dialog, which stays disabled while it runs.
    bool confirmed = RunLinkDialog(context.OwnerWindow(), link, m_siteStructure);
    ReturnFocusToGrid(context);
    if (!confirmed) return;
    SetText(link);
    CompleteDialogInput(context);
}
