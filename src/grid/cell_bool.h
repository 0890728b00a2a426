#pragma once
// A check box. Its text form is "true" or "false"; only "true" checks it.
#include "grid/grid_cell.h"

class CExtGridCellBool : public CExtGridCell {
    PWGRID_DECLARE_CELL(CExtGridCellBool)
public:
    explicit CExtGridCellBool(CExtGridAllocator* allocator = nullptr) : CExtGridCell(allocator) {}

    bool GetChecked() const { return m_checked; }
    void SetChecked(bool checked) { m_checked = checked; }

    std::string GetText() const override { return m_checked ? "true" : "false"; }
    void SetText(const std::string& text) override { m_checked = text == "true"; }
    std::string GetDisplayText() const override { return m_checked ? "Yes" : "No"; }

    void Assign(const CExtGridCell& other) override;
    void Serialize(CExtGridArchive& ar) override;

    bool OnToggle(const CExtGridCellContext& context) override;
    bool OnValueClick(const CExtGridCellContext& context, POINT point) override;
    int GetIconWidth(const CExtGridPaintManager& pm) const override;
    void PaintIcon(const CExtGridPaintContext& pc, const RECT& iconRect) const override;

private:
    bool m_checked = false;
};
