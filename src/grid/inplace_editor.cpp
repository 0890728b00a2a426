#include "grid/inplace_editor.h"

#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "grid/paint_manager.h"
#include "grid/property_grid_wnd.h"
#include "platform/window_text.h"
#include "xml/ascii.h"

namespace {

constexpr int kVisibleListEntries = 12;
}  // namespace

bool CExtGridInplaceEditor::IsCombo() const {
    return m_kind == CExtGridCell::EditorKind::kComboBox || m_kind == CExtGridCell::EditorKind::kDropList;
}

bool CExtGridInplaceEditor::Open(const CExtGridCell& cell, const RECT& textRect, const RECT& valueRect,
                                 const std::string* initialText) {
    Close();
    m_kind = cell.GetEditorKind();
    if (m_kind == CExtGridCell::EditorKind::kNone) return false;
    const CExtGridPaintManager& pm = m_grid.PaintManager();
    HWND parent = m_grid.GetHwnd();
    HINSTANCE instance = GetModuleHandleA(nullptr);
    std::string text = initialText ? *initialText : cell.GetText();

    if (IsCombo()) {
        std::vector<std::string> entries = cell.GetListEntries();
        int listHeight =
            (pm.TextHeight() + pm.Scale(2)) * (std::min)(kVisibleListEntries, (std::max)(1, int(entries.size()))) +
            pm.Scale(4);
        DWORD style = WS_CHILD | WS_VSCROLL | CBS_AUTOHSCROLL |
                      (m_kind == CExtGridCell::EditorKind::kDropList ? CBS_DROPDOWNLIST : CBS_DROPDOWN);
        if (cell.PaintsListEntries()) style |= CBS_OWNERDRAWFIXED | CBS_HASSTRINGS;  // see the grid's WM_DRAWITEM
        int rowHeight = valueRect.bottom - valueRect.top;
        m_control =
            CreateWindowExA(0, "COMBOBOX", "", style, valueRect.left, valueRect.top, valueRect.right - valueRect.left,
                            rowHeight + listHeight, parent, nullptr, instance, nullptr);
        if (!m_control) return false;
        SendMessageA(m_control, WM_SETFONT, reinterpret_cast<WPARAM>(pm.NormalFont()), FALSE);
        // Make the closed combo exactly one row high.
        SendMessageA(m_control, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), rowHeight - 6 > 4 ? rowHeight - 6 : 4);
        for (const std::string& entry : entries)
            SendMessageA(m_control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
        SendMessageA(m_control, CB_SETITEMHEIGHT, 0, pm.TextHeight() + pm.Scale(2));
        // Version 6 combo boxes size their list by entries, not by the window.
        SendMessageA(m_control, CB_SETMINVISIBLE, kVisibleListEntries, 0);
        // The list opens at the current value (an exact entry first, else one
        // that differs only in case).
        auto at = std::find(entries.begin(), entries.end(), text);
        if (at == entries.end())
            at = std::find_if(entries.begin(), entries.end(),
                              [&text](const std::string& e) { return ascii::EqualsNoCase(e, text); });
        if (at != entries.end()) SendMessageA(m_control, CB_SETCURSEL, at - entries.begin(), 0);
        if (m_kind == CExtGridCell::EditorKind::kComboBox) {
            SetWindowTextA(m_control, text.c_str());
            COMBOBOXINFO info{};
            info.cbSize = sizeof(info);
            if (GetComboBoxInfo(m_control, &info)) m_comboEdit = info.hwndItem;
        }
        RECT placed;
        GetWindowRect(m_control, &placed);
        int fieldHeight = placed.bottom - placed.top;
        SetWindowPos(m_control, HWND_TOP, valueRect.left, valueRect.top + (rowHeight - fieldHeight) / 2, 0, 0,
                     SWP_NOSIZE | SWP_NOACTIVATE);
    } else {
        DWORD style = WS_CHILD | ES_AUTOHSCROLL | ES_LEFT;
        if (m_kind == CExtGridCell::EditorKind::kPassword) style |= ES_PASSWORD;
        int height = pm.TextHeight() + 1;
        int top = (textRect.top + textRect.bottom - height) / 2;
        m_control = CreateWindowExA(0, "EDIT", text.c_str(), style, textRect.left, top, textRect.right - textRect.left,
                                    height, parent, nullptr, instance, nullptr);
        if (!m_control) return false;
        SendMessageA(m_control, WM_SETFONT, reinterpret_cast<WPARAM>(pm.NormalFont()), FALSE);
        SendMessageA(m_control, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
        if (m_kind == CExtGridCell::EditorKind::kPassword) SendMessageA(m_control, EM_SETPASSWORDCHAR, '*', 0);
    }
    SubclassControl(m_control, this);
    if (m_comboEdit) SubclassControl(m_comboEdit, this);
    ShowWindow(m_control, SW_SHOW);
    SetFocus(FocusHwnd());
    if (initialText) {
        // Typing started the edit: the caret goes after the typed text.
        int end = static_cast<int>(text.size());
        if (IsCombo())
            SendMessageA(m_control, CB_SETEDITSEL, 0, MAKELPARAM(end, end));
        else
            SendMessageA(m_control, EM_SETSEL, end, end);
    } else {
        SelectAll();
    }
    return true;
}

void CExtGridInplaceEditor::Close() {
    if (!m_control) return;
    m_closing = true;
    HWND control = m_control;
    m_control = nullptr;
    m_comboEdit = nullptr;
    // Keep the keyboard in the grid rather than letting it fall to the parent.
    if (GetFocus() == control || IsChild(control, GetFocus())) SetFocus(m_grid.GetHwnd());
    DestroyWindow(control);
    m_closing = false;
}

std::string CExtGridInplaceEditor::GetText() const {
    return WindowText(m_control);
}

void CExtGridInplaceEditor::SetText(const std::string& text) {
    if (!m_control) return;
    SetWindowTextA(m_control, text.c_str());
    SelectAll();
}

void CExtGridInplaceEditor::SelectAll() {
    if (!m_control) return;
    if (IsCombo())
        SendMessageA(m_control, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
    else
        SendMessageA(m_control, EM_SETSEL, 0, -1);
}

void CExtGridInplaceEditor::ShowDropDown(bool show) {
    if (m_control && IsCombo()) SendMessageA(m_control, CB_SHOWDROPDOWN, show, 0);
}

bool CExtGridInplaceEditor::IsDroppedDown() const {
    return m_control && IsCombo() && SendMessageA(m_control, CB_GETDROPPEDSTATE, 0, 0);
}

int CExtGridInplaceEditor::GetListSelection() const {
    return m_control && IsCombo() ? static_cast<int>(SendMessageA(m_control, CB_GETCURSEL, 0, 0)) : -1;
}

LRESULT CExtGridInplaceEditor::SubclassProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    CExtGridInplaceEditor* self = this;
    switch (message) {
        case WM_GETDLGCODE:
            // Enter, Esc and Tab belong to the editor, not to the dialog around the grid.
            return CallOriginalProc(hwnd, message, wParam, lParam) | DLGC_WANTALLKEYS;
        case WM_KEYDOWN: {
            bool dropped = self->IsDroppedDown();
            bool shift = GetKeyState(VK_SHIFT) < 0;
            switch (wParam) {
                case VK_RETURN:
                case VK_ESCAPE:
                    if (dropped) break;  // the list closes first
                    self->m_grid.OnEditorKey(wParam, shift);
                    return 0;
                case VK_TAB:
                    if (dropped) self->ShowDropDown(false);
                    self->m_grid.OnEditorKey(wParam, shift);
                    return 0;
                case VK_UP:
                case VK_DOWN:
                case VK_PRIOR:
                case VK_NEXT:
                    if (self->IsCombo()) break;  // the combo moves its selection
                    if (GetKeyState(VK_MENU) < 0) break;
                    self->m_grid.OnEditorKey(wParam, shift);
                    return 0;
            }
            break;
        }
        case WM_SYSKEYDOWN:
            if ((wParam == VK_DOWN || wParam == VK_UP) && !self->IsCombo()) {
                self->m_grid.OnEditorKey(VK_F4, false);
                return 0;
            }
            break;
        case WM_CHAR:
            if (wParam == '\r' || wParam == '\x1b' || wParam == '\t') return 0;  // no beeps
            break;
        case WM_KILLFOCUS: {
            LRESULT result = CallOriginalProc(hwnd, message, wParam, lParam);
            HWND to = reinterpret_cast<HWND>(wParam);
            bool staysInside = to && (to == self->m_control || IsChild(self->m_control, to));
            if (!self->m_closing && self->m_control && !staysInside) self->m_grid.OnEditorFocusLost(to);
            return result;
        }
    }
    return CallOriginalProc(hwnd, message, wParam, lParam);
}
