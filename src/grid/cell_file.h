#pragma once
// A path typed as text or chosen with a browse button: files through the
// open-file dialog, folders through the folder picker.
#include "grid/cell_string.h"

class CExtGridCellFile : public CExtGridCellString {
    PWGRID_DECLARE_CELL(CExtGridCellFile)
public:
    explicit CExtGridCellFile(CExtGridAllocator* allocator = nullptr) : CExtGridCellString(allocator) {}

    // Open-file dialog filter in the system's form: pairs of description and
    // pattern separated by '|', e.g. "Pictures|*.png;*.jpg|All files|*.*".
    void SetFilter(const std::string& filter) { m_filter = filter; }
    const std::string& GetFilter() const { return m_filter; }

    void Assign(const CExtGridCell& other) override;
    void Serialize(CExtGridArchive& ar) override;

    int GetButtonCount() const override { return 1; }
    ButtonKind GetButtonKind(int) const override { return ButtonKind::kBrowse; }
    // Button 0 browses; a confirmed choice becomes the text and completes input.
    void OnButtonClick(const CExtGridCellContext& context, int index) override;

protected:
    // Shows the dialog; true with *path set when the user confirmed.
    virtual bool RunBrowseDialog(HWND owner, std::string* path);

private:
    std::string m_filter = "All files (*.*)|*.*";
};

class CExtGridCellFolder : public CExtGridCellFile {
    PWGRID_DECLARE_CELL(CExtGridCellFolder)
public:
    explicit CExtGridCellFolder(CExtGridAllocator* allocator = nullptr) : CExtGridCellFile(allocator) {}

protected:
    bool RunBrowseDialog(HWND owner, std::string* path) override;
};
