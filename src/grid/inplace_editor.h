#pragma once
// The control that edits the focus row's value in place: an edit box for
// text and passwords, a combo box for the list cells. It hands Enter, Esc,
// Tab, the arrow keys and the loss of focus back to the grid, which decides
// whether the text becomes the value.
#include <windows.h>

#include <string>

#include "grid/window_binding.h"
#include "grid/grid_cell.h"

class CExtPropertyGridWnd;

class CExtGridInplaceEditor {
public:
    explicit CExtGridInplaceEditor(CExtPropertyGridWnd& grid) : m_grid(grid) {}
    ~CExtGridInplaceEditor() { Close(); }

    // Creates the control over textRect (the value without icon and buttons)
    // and gives it the focus. initialText, when given, replaces the value.
    bool Open(const CExtGridCell& cell, const RECT& textRect, const RECT& valueRect, const std::string* initialText);
    void Close();
    bool IsOpen() const { return m_control != nullptr; }
    // The control with the keyboard focus (the combo's edit box for combos).
    HWND FocusHwnd() const { return m_comboEdit ? m_comboEdit : m_control; }
    HWND ControlHwnd() const { return m_control; }
    CExtGridCell::EditorKind Kind() const { return m_kind; }
    bool IsCombo() const;

    std::string GetText() const;
    void SetText(const std::string& text);
    void SelectAll();
    void ShowDropDown(bool show);
    bool IsDroppedDown() const;
    int GetListSelection() const;

private:
    template <class T>
    friend LRESULT CALLBACK window_binding::Thunk(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);
    // The messages of the editing control (and of a combo box's edit part).
    LRESULT SubclassProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

    CExtPropertyGridWnd& m_grid;
    HWND m_control = nullptr;
    HWND m_comboEdit = nullptr;
    CExtGridCell::EditorKind m_kind = CExtGridCell::EditorKind::kNone;
    bool m_closing = false;
};
