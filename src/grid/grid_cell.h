#pragma once
// The base of every in-place cell of the property grid. A cell holds one
// value, knows its text form, how it is edited (in-place editor kind and
// buttons), how it paints itself, and how it copies, clones and archives
// itself. Cells are created by class name through CExtGridCellClass, so a
// value item can be given "an active cell of class X" without knowing X.
#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

class CExtGridArchive;
class CExtGridCell;
class CExtGridPaintManager;
class CExtPropertyGridWnd;
class CExtPropertyValue;

// Memory for cells. A cell remembers the allocator that made it and is given
// back to the same allocator when deleted; cells made without one use the heap.
class CExtGridAllocator {
public:
    virtual ~CExtGridAllocator() = default;
    virtual void* Allocate(std::size_t size) = 0;
    virtual void Free(void* block) = 0;
};

// Run-time class information: the name cells are created by, the base class
// for kind tests, and the factory.
struct CExtGridCellClass {
    const char* name;
    const CExtGridCellClass* base;
    CExtGridCell* (*create)(CExtGridAllocator* allocator);

    bool IsDerivedFrom(const CExtGridCellClass& other) const;
    // Registered classes by exact name; null for an unknown name.
    static const CExtGridCellClass* Find(const std::string& name);
    static CExtGridCell* CreateCell(const std::string& name, CExtGridAllocator* allocator = nullptr);
    // Makes a class creatable by name. The toolkit's own cells are registered
    // on the first lookup; a program registers its own cells once, before
    // anything creates them by name (e.g. loading a saved grid).
    static void Register(const CExtGridCellClass& cellClass);
};

#define PWGRID_DECLARE_CELL(ClassName)     \
public:                                    \
    static const CExtGridCellClass kClass; \
    const CExtGridCellClass& GetCellClass() const override { return kClass; }

#define PWGRID_IMPLEMENT_CELL(ClassName, BaseName) \
    const CExtGridCellClass ClassName::kClass{     \
        #ClassName, &BaseName::kClass,             \
        [](CExtGridAllocator* allocator) -> CExtGridCell* { return new (allocator) ClassName(allocator); }};

// What a cell needs while it paints: the device context, the paint manager
// (fonts, colours, themed parts) and the row's state.
struct CExtGridPaintContext {
    HDC dc = nullptr;
    const CExtGridPaintManager* pm = nullptr;
    HFONT font = nullptr;  // the font for the value text (bold when modified)
    COLORREF textColor = 0;
    bool selected = false;  // the row is the focus row
    bool focused = false;   // ...and the grid has the keyboard focus
    bool enabled = true;
    RECT clip{};  // the part of the row that needs painting
};

// Where a cell lives while the user works with it: the grid, the value item
// that owns it and the row it is shown on. Cells raise the grid's
// notifications through it.
struct CExtGridCellContext {
    CExtPropertyGridWnd* grid = nullptr;
    CExtPropertyValue* item = nullptr;
    int row = -1;
    RECT valueRect{};

    HWND OwnerWindow() const;
    // The user finished entering a value in this cell (text typed, a dialog
    // confirmed).
    void InputComplete() const;
    // The user applied a value directly (toggled, picked, stepped).
    void ValueApplied() const;
    // Repaints the cell's row.
    void Invalidate() const;
};

class CExtGridCell {
public:
    static const CExtGridCellClass kClass;
    virtual const CExtGridCellClass& GetCellClass() const { return kClass; }
    bool IsKindOf(const CExtGridCellClass& cellClass) const { return GetCellClass().IsDerivedFrom(cellClass); }

    explicit CExtGridCell(CExtGridAllocator* allocator = nullptr) : m_allocator(allocator) {}
    CExtGridCell(const CExtGridCell&) = delete;
    CExtGridCell& operator=(const CExtGridCell&) = delete;
    virtual ~CExtGridCell() = default;

    static void* operator new(std::size_t size) { return operator new(size, nullptr); }
    static void* operator new(std::size_t size, CExtGridAllocator* allocator);
    static void operator delete(void* block);
    static void operator delete(void* block, CExtGridAllocator*) { operator delete(block); }
    CExtGridAllocator* GetAllocator() const { return m_allocator; }

    // The value in text form, as stored by the owner of the grid.
    virtual std::string GetText() const { return m_text; }
    virtual void SetText(const std::string& text) { m_text = text; }
    // Whether text typed by the user may become the value.
    virtual bool ValidateText(const std::string& text) const { return true; }
    // The text painted in the grid and read by accessibility clients.
    virtual std::string GetDisplayText() const { return GetText(); }

    // Copies the value and style of another cell (of this class or a base).
    virtual void Assign(const CExtGridCell& other);
    // A new cell of the same class, made by the given allocator, copied from this one.
    virtual CExtGridCell* Clone(CExtGridAllocator* allocator) const;
    // Writes or reads the cell's state; derived classes call the base first.
    virtual void Serialize(CExtGridArchive& ar);

    bool IsReadOnly() const { return m_readOnly; }
    void SetReadOnly(bool readOnly) { m_readOnly = readOnly; }

    // Editing. Text and Password open an edit box over the value; ComboBox an
    // editable drop-down, DropList a list to pick from.
    enum class EditorKind { kNone, kText, kPassword, kComboBox, kDropList };
    virtual EditorKind GetEditorKind() const { return EditorKind::kNone; }
    // Entries of the drop-down for the combo editors.
    virtual std::vector<std::string> GetListEntries() const { return {}; }
    // Cells that draw the entries of their drop-down themselves (a preview of
    // each entry) return true and paint one entry into the given rectangle,
    // whose background is already filled.
    virtual bool PaintsListEntries() const { return false; }
    virtual void PaintListEntry(const CExtGridPaintContext& pc, const RECT& rect, const std::string& entry) const {}

    // Buttons shown at the right of the value of the focus row.
    enum class ButtonKind { kBrowse, kDropDown, kSpinUp, kSpinDown };
    virtual int GetButtonCount() const { return 0; }
    virtual ButtonKind GetButtonKind(int index) const { return ButtonKind::kBrowse; }
    virtual bool IsButtonEnabled(int index) const { return !m_readOnly; }
    // A button was clicked (or its keyboard equivalent pressed: Alt+Down or
    // F4 for button 0).
    virtual void OnButtonClick(const CExtGridCellContext& context, int index) {}

    // Space, a double click on the value, or a click on the cell's own toggle
    // area: cells that change by a click (check box, lists) return true.
    virtual bool OnToggle(const CExtGridCellContext& context) { return false; }
    // A click on the value at a point in the value rectangle when the row was
    // already focused; true when the cell handled it (no editor opens).
    virtual bool OnValueClick(const CExtGridCellContext& context, POINT point) { return false; }

    // Painting: an optional picture at the left of the value (check box,
    // colour swatch) and then the text.
    virtual int GetIconWidth(const CExtGridPaintManager& pm) const { return 0; }
    virtual void PaintIcon(const CExtGridPaintContext& pc, const RECT& iconRect) const {}
    virtual void PaintValue(const CExtGridPaintContext& pc, const RECT& valueRect) const;
    // Draws the value's text; cells that show something else override it.
    virtual void OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const;
    // False when the rectangle is empty or outside the area being painted.
    bool IsTextRectVisible(const CExtGridPaintContext& pc, const RECT& textRect) const;

protected:
    std::string m_text;

private:
    CExtGridAllocator* m_allocator;
    bool m_readOnly = false;
};
