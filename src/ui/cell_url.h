#pragma once
// The cell of a link property: the link as text, and a browse button that
// opens the link dialog over the site structure.
#include "grid/cell_file.h"

class CXmlDocument;

class CExtGridCellURL : public CExtGridCellFile {
    PWGRID_DECLARE_CELL(CExtGridCellURL)
public:
    explicit CExtGridCellURL(CExtGridAllocator* allocator = nullptr) : CExtGridCellFile(allocator) {}

    // The host's site structure (not owned), shown by the dialog's page picker.
    CXmlDocument* GetSiteStructure() const { return m_siteStructure; }
    void SetSiteStructure(CXmlDocument* siteStructure) { m_siteStructure = siteStructure; }

    void Assign(const CExtGridCell& other) override;
    // Button 0 opens the link dialog; on OK the link becomes the cell's text
    // and input is completed.
    void OnButtonClick(const CExtGridCellContext& context, int index) override;

private:
    CXmlDocument* m_siteStructure = nullptr;
};
