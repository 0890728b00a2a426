#pragma once
// The text cells: free text, a password shown as dots, and a read-only
// heading painted like a column header.
#include "grid/grid_cell.h"

class CExtGridCellString : public CExtGridCell {
    PWGRID_DECLARE_CELL(CExtGridCellString)
public:
    explicit CExtGridCellString(CExtGridAllocator* allocator = nullptr) : CExtGridCell(allocator) {}
    EditorKind GetEditorKind() const override { return IsReadOnly() ? EditorKind::kNone : EditorKind::kText; }
};

class CExtGridCellPassword : public CExtGridCellString {
    PWGRID_DECLARE_CELL(CExtGridCellPassword)
public:
    explicit CExtGridCellPassword(CExtGridAllocator* allocator = nullptr) : CExtGridCellString(allocator) {}
    EditorKind GetEditorKind() const override { return IsReadOnly() ? EditorKind::kNone : EditorKind::kPassword; }
    // Never the password itself: one dot per character.
    std::string GetDisplayText() const override;
    void OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const override;
};

class CExtGridCellHeader : public CExtGridCell {
    PWGRID_DECLARE_CELL(CExtGridCellHeader)
public:
    explicit CExtGridCellHeader(CExtGridAllocator* allocator = nullptr) : CExtGridCell(allocator) { SetReadOnly(true); }
    void PaintValue(const CExtGridPaintContext& pc, const RECT& valueRect) const override;
};
