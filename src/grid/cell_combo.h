#pragma once
// Cells with a list of entries: an editable combo box and a drop-down list.
// The selection follows the text whenever the text equals an entry. In
// list-bound mode a text that is no entry is refused by validation, so the
// value is always one of the entries.
#include "grid/grid_cell.h"

class CExtGridCellComboBox : public CExtGridCell {
    PWGRID_DECLARE_CELL(CExtGridCellComboBox)
public:
    explicit CExtGridCellComboBox(CExtGridAllocator* allocator = nullptr) : CExtGridCell(allocator) {}

    // Appends an entry; returns its index.
    int AddString(const std::string& entry);
    // Inserts before `index`; a negative or too large index appends.
    int InsertString(int index, const std::string& entry);
    void ResetContent();
    int GetCount() const { return static_cast<int>(m_entries.size()); }
    std::string GetString(int index) const;
    // The first entry equal to the text (case-sensitive), or -1.
    int FindStringExact(const std::string& entry) const;
    // The first entry equal to the text ignoring ASCII case, or -1.
    int FindStringNoCase(const std::string& entry) const;

    int GetCurSel() const { return m_selection; }
    // Selects an entry (and takes its text); -1 clears the selection only.
    void SetCurSel(int index);
    // The selected entry's text; empty when nothing is selected.
    std::string GetSelectedText() const;

    bool IsListBound() const { return m_listBound; }
    void SetListBound(bool listBound) { m_listBound = listBound; }

    void SetText(const std::string& text) override;
    bool ValidateText(const std::string& text) const override;

    void Assign(const CExtGridCell& other) override;
    void Serialize(CExtGridArchive& ar) override;

    EditorKind GetEditorKind() const override;
    std::vector<std::string> GetListEntries() const override { return m_entries; }
    int GetButtonCount() const override { return 1; }
    ButtonKind GetButtonKind(int) const override { return ButtonKind::kDropDown; }
    // A double click steps to the next entry, as property grids do.
    bool OnToggle(const CExtGridCellContext& context) override;
    // Picks an entry chosen in the drop-down and raises the applied notification.
    void ApplySelection(const CExtGridCellContext& context, int index);

private:
    std::vector<std::string> m_entries;
    int m_selection = -1;
    bool m_listBound = false;
};

// The same list, but the text cannot be typed: only entries can be picked.
class CExtGridCellDropListComboBox : public CExtGridCellComboBox {
    PWGRID_DECLARE_CELL(CExtGridCellDropListComboBox)
public:
    explicit CExtGridCellDropListComboBox(CExtGridAllocator* allocator = nullptr) : CExtGridCellComboBox(allocator) {
        SetListBound(true);
    }
    EditorKind GetEditorKind() const override { return IsReadOnly() ? EditorKind::kNone : EditorKind::kDropList; }
};

// Font face names: the installed TrueType faces, listed when the list is
// first needed (or filled by the owner), each drawn in its own face.
class CExtGridCellFontName : public CExtGridCellComboBox {
    PWGRID_DECLARE_CELL(CExtGridCellFontName)
public:
    explicit CExtGridCellFontName(CExtGridAllocator* allocator = nullptr) : CExtGridCellComboBox(allocator) {}
    // Fills the list with the installed faces, sorted, without vertical or symbol faces.
    void AddInstalledFonts();
    std::vector<std::string> GetListEntries() const override;
    void OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const override;
    bool PaintsListEntries() const override { return true; }
    void PaintListEntry(const CExtGridPaintContext& pc, const RECT& rect, const std::string& entry) const override;

private:
    // Draws a face name in that face, at the size of the given font.
    static void PaintInOwnFace(const CExtGridPaintContext& pc, const RECT& rect, const std::string& face);
};
