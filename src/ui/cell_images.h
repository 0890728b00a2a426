#pragma once
// The cell of an image-list property. Its value is the image-list document,
// kept apart from the cell's text and never shown: the cell always paints the
// hint "Click to add/remove files", and its browse button opens the image
// list dialog.
#include "grid/cell_file.h"

class CXmlDocument;

class CExtGridCellImages : public CExtGridCellFile {
    PWGRID_DECLARE_CELL(CExtGridCellImages)
public:
    static constexpr const char* kHint = "Click to add/remove files";
    static constexpr COLORREF kHintColor = RGB(0xC0, 0xC0, 0xC0);

    explicit CExtGridCellImages(CExtGridAllocator* allocator = nullptr) : CExtGridCellFile(allocator) {}

    const std::string& GetImageListText() const { return m_imageList; }
    void SetImageListText(const std::string& text) { m_imageList = text; }
    // The host's site structure (not owned), for the images' links.
    CXmlDocument* GetSiteStructure() const { return m_siteStructure; }
    void SetSiteStructure(CXmlDocument* siteStructure) { m_siteStructure = siteStructure; }

    void Assign(const CExtGridCell& other) override;
    // The base part, then the image-list text.
    void Serialize(CExtGridArchive& ar) override;
    // The hint, never the value.
    std::string GetDisplayText() const override { return kHint; }
    void OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const override;
    // Only the dialog edits the list.
    EditorKind GetEditorKind() const override { return EditorKind::kNone; }
    // Button 0 opens the image list dialog; on OK its list is kept and input
    // is completed.
    void OnButtonClick(const CExtGridCellContext& context, int index) override;
    // The hint says "click": a click or double click on the value, Enter
    // (and F4, the button's key) open the dialog too.
    bool OnValueClick(const CExtGridCellContext& context, POINT) override {
        OnButtonClick(context, 0);
        return true;
    }
    bool OnToggle(const CExtGridCellContext& context) override {
        OnButtonClick(context, 0);
        return true;
    }

private:
    std::string m_imageList;
    CXmlDocument* m_siteStructure = nullptr;
};
