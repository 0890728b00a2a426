#pragma once
// A colour: a swatch and the "#RRGGBB" text. Its drop-down button opens the
// colour popup (palette, optional "Automatic" entry, and a command that opens
// the system colour dialog). The text can also be typed.
#include "grid/color_text.h"
#include "grid/grid_cell.h"

class CExtGridCellColor : public CExtGridCell {
    PWGRID_DECLARE_CELL(CExtGridCellColor)
public:
    explicit CExtGridCellColor(CExtGridAllocator* allocator = nullptr) : CExtGridCell(allocator) {}

    // -1 (kNoColor) for no colour.
    COLORREF GetColor() const { return m_color; }
    void SetColor(COLORREF color) { m_color = color; }

    // The popup's "Automatic" entry: shown only when enabled; picking it sets
    // the automatic colour.
    void EnableAutomatic(bool enable, COLORREF automaticColor = kNoColor) {
        m_automaticEnabled = enable;
        m_automaticColor = automaticColor;
    }
    bool IsAutomaticEnabled() const { return m_automaticEnabled; }
    COLORREF GetAutomaticColor() const { return m_automaticColor; }
    // Whether the empty text (no colour, shown as "None") may be typed. A
    // colour that something needs as "#RRGGBB" cannot be empty.
    void AllowNoColor(bool allow) { m_noColorAllowed = allow; }
    // The caption of the popup's command that opens the colour dialog.
    void SetCustomColorCaption(const std::string& caption) { m_customCaption = caption; }
    const std::string& GetCustomColorCaption() const { return m_customCaption; }

    std::string GetText() const override { return FormatColorText(m_color); }
    void SetText(const std::string& text) override { ParseColorText(text, &m_color); }
    bool ValidateText(const std::string& text) const override;
    std::string GetDisplayText() const override;

    void Assign(const CExtGridCell& other) override;
    void Serialize(CExtGridArchive& ar) override;

    EditorKind GetEditorKind() const override { return IsReadOnly() ? EditorKind::kNone : EditorKind::kText; }
    int GetButtonCount() const override { return 1; }
    ButtonKind GetButtonKind(int) const override { return ButtonKind::kDropDown; }
    void OnButtonClick(const CExtGridCellContext& context, int index) override;

    int GetIconWidth(const CExtGridPaintManager& pm) const override;
    void PaintIcon(const CExtGridPaintContext& pc, const RECT& iconRect) const override;

    // Sets a colour the user chose and raises the applied notification when it changed.
    void ApplyColor(const CExtGridCellContext& context, COLORREF color);

protected:
    // Runs the system colour dialog; true with *color set when confirmed.
    virtual bool RunColorDialog(HWND owner, COLORREF* color);

private:
    COLORREF m_color = kNoColor;
    bool m_noColorAllowed = true;
    bool m_automaticEnabled = true;
    COLORREF m_automaticColor = kNoColor;
    std::string m_customCaption = "More colors...";
};
