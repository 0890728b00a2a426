#pragma once
// The rows of a property grid: category and value rows in categorized or
// alphabetical order, a name column and a value column divided by a splitter
// the user can drag, expandable categories, and in-place editing of the focus
// row's cell. The window belongs to a CExtPropertyGridCtrl, which adds the
// toolbar, the filter box and the tip bar, and hears about every change
// through CExtPropertyGridEvents.
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "grid/window_binding.h"
#include "grid/grid_cell.h"
#include "grid/grid_rows.h"
#include "grid/paint_manager.h"
#include "grid/property_store.h"

class CExtGridInplaceEditor;
class CExtGridAccessible;

class CExtPropertyGridEvents {
public:
    virtual ~CExtPropertyGridEvents() = default;
    virtual void OnGridFocusChanged(CExtPropertyItem* item) {}
    virtual void OnGridInputComplete(CExtPropertyValue& item) {}
    virtual void OnGridValueApplied(CExtPropertyValue& item) {}
    // Ctrl+F in the rows.
    virtual void OnGridFindRequested() {}
};

class CExtPropertyGridWnd {
public:
    CExtPropertyGridWnd(CExtGridPaintManager& pm, CExtPropertyGridEvents* events);
    ~CExtPropertyGridWnd();
    CExtPropertyGridWnd(const CExtPropertyGridWnd&) = delete;
    CExtPropertyGridWnd& operator=(const CExtPropertyGridWnd&) = delete;

    bool Create(HWND parent, const RECT& rect, int id);
    HWND GetHwnd() const { return m_hwnd; }
    const CExtGridPaintManager& PaintManager() const { return m_pm; }

    // ---- content ----
    void SetStore(CExtPropertyStore* store);
    CExtPropertyStore* GetStore() const { return m_store; }
    // Alphabetical (true) or categorized (false) order.
    void SetSorted(bool sorted);
    bool IsSorted() const { return m_sorted; }
    // Shows only value rows whose name or description contains the text
    // (ignoring case), with their categories; empty shows everything.
    void SetFilter(const std::string& filter);
    const std::string& GetFilter() const { return m_filter; }
    // Re-reads the store: call after items were added or removed.
    void Rebuild();

    // ---- rows ----
    int RowCount() const { return m_rows.Count(); }
    CExtPropertyItem* RowItem(int row) const { return m_rows.Item(row); }
    int RowDepth(int row) const { return m_rows.Depth(row); }
    int FindRow(const CExtPropertyItem* item) const { return m_rows.Find(item); }
    bool GetRowRect(int row, RECT* rect) const;
    RECT GetValueRect(int row) const;
    RECT GetButtonRect(int row, int button) const;
    // The row under a client point, or -1.
    int HitTestRow(POINT point) const;
    int GetTopRow() const { return m_top; }
    int VisibleRowCount() const;
    void EnsureVisible(int row);

    // Focus: a row (-1 for none) and a column (0 names, 1 values).
    int FocusGet() const { return m_focus; }
    int FocusColumnGet() const { return m_focusColumn; }
    void FocusSet(int row, int column = 1);
    CExtPropertyItem* FocusItem() const { return RowItem(m_focus); }

    void Expand(int row, bool expand);
    void ExpandAll(bool expand);

    // Tips with the whole text of names and values too long for their column.
    void EnableToolTips(bool enable);

    int SplitterGet() const;
    void SplitterSet(int x);
    // Puts the splitter just right of the widest name (a double click on it).
    void FitSplitterToNames();

    // ---- editing ----
    // Opens the focus row's editor; initialText replaces the value (typing).
    bool BeginEdit(const std::string* initialText = nullptr);
    // Takes the editor's text; false (and the editor stays) when the cell refuses it.
    bool CommitEdit();
    void CancelEdit();
    bool IsEditing() const;
    HWND EditorHwnd() const;
    // Clicks a button of the focus row's cell (0 is the drop-down or browse button).
    void ClickButton(int button);
    // Space or a double click on the focus row's value.
    void ToggleFocus();

    // ---- for cells ----
    void OnCellInputComplete(CExtPropertyValue& item);
    void OnCellValueApplied(CExtPropertyValue& item);
    void InvalidateRow(int row);
    // Recomputes sizes and scroll bars after values changed their size.
    void RefreshCellExtents();
    CExtGridCellContext ContextForRow(int row);

    // The editor tells the grid about its keys and focus.
    void OnEditorKey(WPARAM key, bool shift);
    void OnEditorFocusLost(HWND newFocus);
    void OnEditorListPicked(int index);

private:
    template <class T>
    friend LRESULT CALLBACK BoundWindowProc(HWND, UINT, WPARAM, LPARAM);
    void OnBindWindow(HWND hwnd);
    void OnUnbindWindow();
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);

    // Works the rows out again from the store, the order and the filter.
    void RebuildRows();
    void UpdateScrollBar();
    void ScrollTo(int top);
    void Paint(HDC dc, const RECT& clip);
    void PaintRow(HDC dc, int row, const RECT& rect, const RECT& clip);
    void PaintEditorListEntry(const DRAWITEMSTRUCT& dis);
    int NameLeft(int row) const;
    RECT ExpanderRect(int row) const;
    int HitTestButton(int row, POINT point) const;
    void MoveFocusBy(int delta);
    void OnKeyDown(WPARAM key);
    void OnChar(WPARAM ch);
    void OnLButtonDown(POINT point, bool doubleClick);
    void UpdateToolTip(POINT point);
    void NotifyFocus();
    // WM_GETOBJECT: the accessible object of the rows, made on first request.
    LRESULT AccessibleResult(WPARAM wParam);
    void ReleaseAccessible();

    CExtGridPaintManager& m_pm;
    CExtPropertyGridEvents* m_events;
    HWND m_hwnd = nullptr;
    CExtPropertyStore* m_store = nullptr;
    CExtGridRows m_rows;
    bool m_sorted = false;
    std::string m_filter;
    int m_top = 0;
    int m_focus = -1;
    int m_focusColumn = 1;
    double m_splitRatio = 0.45;
    bool m_draggingSplitter = false;
    int m_pressedButton = -1;
    int m_hotButton = -1;    // the focus row's button under the mouse
    char m_swallowChar = 0;  // the character of a key already handled
    int m_wheelRemainder = 0;
    bool m_toolTipsEnabled = true;
    HWND m_toolTip = nullptr;
    int m_tipRow = -1, m_tipColumn = -1;  // the cell the tip describes
    std::unique_ptr<CExtGridInplaceEditor> m_editor;
    CExtGridAccessible* m_accessible = nullptr;
    friend class CExtGridAccessible;
};
