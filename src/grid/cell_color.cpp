#include "grid/cell_color.h"

#include <commdlg.h>

#include "grid/color_popup.h"
#include "grid/grid_archive.h"
#include "grid/paint_manager.h"
#include "grid/property_grid_wnd.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellColor, CExtGridCell)

bool CExtGridCellColor::ValidateText(const std::string& text) const {
    COLORREF color;
    return ParseColorText(text, &color) && (m_noColorAllowed || color != kNoColor);
}

std::string CExtGridCellColor::GetDisplayText() const {
    if (m_automaticEnabled && m_color == m_automaticColor) return "Automatic";
    if (m_color == kNoColor) return "None";
    return FormatColorText(m_color);
}

void CExtGridCellColor::Assign(const CExtGridCell& other) {
    CExtGridCell::Assign(other);
    if (!other.IsKindOf(kClass)) return;
    const auto& o = static_cast<const CExtGridCellColor&>(other);
    m_color = o.m_color;
    m_noColorAllowed = o.m_noColorAllowed;
    m_automaticEnabled = o.m_automaticEnabled;
    m_automaticColor = o.m_automaticColor;
    m_customCaption = o.m_customCaption;
}

void CExtGridCellColor::Serialize(CExtGridArchive& ar) {
    CExtGridCell::Serialize(ar);
    std::int32_t color = static_cast<std::int32_t>(m_color);
    std::int32_t automatic = static_cast<std::int32_t>(m_automaticColor);
    ar.Exchange(color);
    ar.Exchange(m_automaticEnabled);
    ar.Exchange(automatic);
    ar.Exchange(m_customCaption);
    m_color = static_cast<COLORREF>(color);
    m_automaticColor = static_cast<COLORREF>(automatic);
}

int CExtGridCellColor::GetIconWidth(const CExtGridPaintManager& pm) const { return pm.Scale(20); }

void CExtGridCellColor::PaintIcon(const CExtGridPaintContext& pc, const RECT& iconRect) const {
    pc.pm->DrawColorSwatch(pc.dc, iconRect, m_color);
}

void CExtGridCellColor::ApplyColor(const CExtGridCellContext& context, COLORREF color) {
    if (color == m_color) return;
    m_color = color;
    context.Invalidate();
    context.ValueApplied();
}

bool CExtGridCellColor::RunColorDialog(HWND owner, COLORREF* color) {
    static COLORREF customColors[16] = {RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
                                        RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
                                        RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
                                        RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255)};
    CHOOSECOLORA cc{};
    cc.lStructSize = sizeof(cc);
    cc.hwndOwner = owner;
    cc.rgbResult = *color == kNoColor ? RGB(0, 0, 0) : *color;
    cc.lpCustColors = customColors;
    cc.Flags = CC_RGBINIT | CC_FULLOPEN | CC_ANYCOLOR;
    if (!ChooseColorA(&cc)) return false;
    *color = cc.rgbResult & 0xFFFFFF;
    return true;
}

void CExtGridCellColor::OnButtonClick(const CExtGridCellContext& context, int index) {
    if (IsReadOnly() || index != 0) return;
    CExtColorPopup popup;
    popup.SetAutomatic(m_automaticEnabled, m_automaticColor);
    popup.SetCustomCaption(m_customCaption);
    if (context.grid) popup.SetPaintManager(&context.grid->PaintManager());
    HWND owner = context.grid ? context.grid->GetHwnd() : nullptr;
    POINT at{context.valueRect.left, context.valueRect.bottom};
    if (owner) ClientToScreen(owner, &at);
    int anchorRight = context.valueRect.right;
    if (owner) {
        POINT r{anchorRight, 0};
        ClientToScreen(owner, &r);
        anchorRight = r.x;
    }
    COLORREF picked = m_color;
    switch (popup.Track(owner, at, anchorRight, m_color, &picked)) {
        case CExtColorPopup::Result::kPicked: ApplyColor(context, picked); break;
        case CExtColorPopup::Result::kCustomCommand:
            if (RunColorDialog(context.OwnerWindow(), &picked)) ApplyColor(context, picked);
            break;
        case CExtColorPopup::Result::kCancelled: break;
    }
}
