#include "grid/property_grid_ctrl.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>

#include "grid/window_class.h"
#include "platform/window_text.h"

namespace {
const char kClassName[] = "PwPropertyGridCtrl";
constexpr int kComboBarId = 100;
constexpr int kRowsId = 101;
constexpr int kFilterId = 102;
constexpr int kToolbarButtons = 3;  // categorized, alphabetical, filter
#ifndef EM_SETCUEBANNER
constexpr UINT EM_SETCUEBANNER = 0x1501;
#endif
}  // namespace

CExtPropertyGridCtrl::CExtPropertyGridCtrl()
    : m_grid(new CExtPropertyGridWnd(m_pm, static_cast<CExtPropertyGridEvents*>(this))) {}

CExtPropertyGridCtrl::~CExtPropertyGridCtrl() {
    if (m_hwnd) DestroyWindow(m_hwnd);
}

bool CExtPropertyGridCtrl::Create(HWND parent, const RECT& rect, int id) {
    if (!EnsureGridWindowClass(kClassName, BoundWindowProc<CExtPropertyGridCtrl>, CS_DBLCLKS)) return false;
    m_hwnd = CreateWindowExA(WS_EX_CONTROLPARENT, kClassName, "", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPCHILDREN,
                             rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, parent,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), OwnModule(), this);
    return m_hwnd != nullptr;
}

bool CExtPropertyGridCtrl::CreateInPlaceOf(HWND dialog, int controlId) {
    HWND placeholder = GetDlgItem(dialog, controlId);
    if (!placeholder) return false;
    RECT rect;
    GetWindowRect(placeholder, &rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    HWND previous = GetWindow(placeholder, GW_HWNDPREV);
    DestroyWindow(placeholder);
    if (!Create(dialog, rect, controlId)) return false;
    SetWindowPos(m_hwnd, previous ? previous : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return true;
}

void CExtPropertyGridCtrl::CreateChildren() {
    m_comboBar.Create(m_hwnd, kComboBarId, m_pm.NormalFont());
    m_grid->Create(m_hwnd, RECT{0, 0, 10, 10}, kRowsId);
    m_filterEdit =
        CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, 0, 0, 10, 10, m_hwnd,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFilterId)), GetModuleHandleA(nullptr), nullptr);
    SendMessageA(m_filterEdit, WM_SETFONT, reinterpret_cast<WPARAM>(m_pm.NormalFont()), FALSE);
    SendMessageW(m_filterEdit, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(L"Filter"));
    SubclassControl(m_filterEdit, this);
    if (m_toolTipsEnabled) CreateToolbarTips();
}

void CExtPropertyGridCtrl::CreateToolbarTips() {
    INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_WIN95_CLASSES};
    InitCommonControlsEx(&icc);
    m_toolbarTips = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0,
                                    0, 0, 0, m_hwnd, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!m_toolbarTips) return;
    const char* captions[kToolbarButtons] = {"Categorized", "Alphabetical", "Filter (Ctrl+F)"};
    for (int b = 0; b < kToolbarButtons; ++b) {
        TTTOOLINFOA tool{};
        tool.cbSize = TTTOOLINFOA_V1_SIZE;
        tool.uFlags = TTF_SUBCLASS;
        tool.hwnd = m_hwnd;
        tool.uId = static_cast<UINT_PTR>(b + 1);
        tool.rect = GetToolbarButtonRect(b);
        tool.lpszText = const_cast<char*>(captions[b]);
        SendMessageA(m_toolbarTips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    }
}

// ---- stores -------------------------------------------------------------------------

void CExtPropertyGridCtrl::PropertyStoreSynchronize() {
    CExtPropertyStore* store = m_comboBar.PropertyStoreGetSelected();
    if (store != m_grid->GetStore())
        m_grid->SetStore(store);
    else
        m_grid->Rebuild();
    Layout();
    OnGridFocusChanged(m_grid->FocusItem());
}

void CExtPropertyGridCtrl::PropertyStoreSet(CExtPropertyStore* store) {
    m_grid->SetStore(store);
    OnGridFocusChanged(m_grid->FocusItem());
}

// ---- options -------------------------------------------------------------------------

void CExtPropertyGridCtrl::SetSorted(bool sorted) {
    m_grid->SetSorted(sorted);
    if (m_hwnd) InvalidateRect(m_hwnd, &m_toolbarRect, FALSE);
}

void CExtPropertyGridCtrl::ShowFilter(bool show) {
    if (show == m_filterShown) return;
    m_filterShown = show;
    if (!show) SetFilterText(std::string());
    Layout();
    if (show && m_filterEdit) SetFocus(m_filterEdit);
    if (m_hwnd) InvalidateRect(m_hwnd, &m_toolbarRect, FALSE);
}

void CExtPropertyGridCtrl::SetFilterText(const std::string& text) {
    if (m_filterEdit)
        SetWindowTextA(m_filterEdit, text.c_str());  // EN_CHANGE updates the rows
    else
        m_grid->SetFilter(text);
}

void CExtPropertyGridCtrl::ShowTipBar(bool show) {
    m_tipShown = show;
    Layout();
}

void CExtPropertyGridCtrl::EnableToolTips(bool enable) {
    m_toolTipsEnabled = enable;
    m_grid->EnableToolTips(enable);
    if (!enable && m_toolbarTips) {
        DestroyWindow(m_toolbarTips);
        m_toolbarTips = nullptr;
    } else if (enable && !m_toolbarTips && m_hwnd) {
        CreateToolbarTips();
    }
}

void CExtPropertyGridCtrl::SetDpi(int dpi) {
    m_pm.SetDpi(dpi);
    m_tipHeight = 0;
    FontsChanged();
}

void CExtPropertyGridCtrl::FontsChanged() {
    // The paint manager made new fonts: hand them to the child windows.
    if (m_comboBar.GetHwnd())
        SendMessageA(m_comboBar.GetHwnd(), WM_SETFONT, reinterpret_cast<WPARAM>(m_pm.NormalFont()), TRUE);
    if (m_filterEdit) SendMessageA(m_filterEdit, WM_SETFONT, reinterpret_cast<WPARAM>(m_pm.NormalFont()), TRUE);
    if (m_toolTipsEnabled) {
        m_grid->EnableToolTips(false);
        m_grid->EnableToolTips(true);
    }
    m_grid->CancelEdit();
    Layout();
    m_grid->RefreshCellExtents();
}

// ---- commands ----------------------------------------------------------------------------

namespace {
CExtPropertyValue* ResettableValue(CExtPropertyGridWnd& rows) {
    CExtPropertyItem* item = rows.FocusItem();
    if (!item || !item->IsValue()) return nullptr;
    auto* value = static_cast<CExtPropertyValue*>(item);
    CExtGridCell* cell = value->ValueActiveGet();
    return cell && !cell->IsReadOnly() && value->IsModified() ? value : nullptr;
}
}  // namespace

bool CExtPropertyGridCtrl::IsCommandEnabled(Command command) {
    return command != kCommandReset || ResettableValue(*m_grid) != nullptr;
}

void CExtPropertyGridCtrl::ResetFocusValue() {
    CExtPropertyValue* value = ResettableValue(*m_grid);
    if (!value) return;
    m_grid->CancelEdit();
    value->ValueActiveGet()->SetText(value->DefaultText());
    m_grid->OnCellInputComplete(*value);
}

void CExtPropertyGridCtrl::ExecuteCommand(Command command) {
    switch (command) {
        case kCommandReset: ResetFocusValue(); break;
        case kCommandCategorized: SetSorted(false); break;
        case kCommandAlphabetical: SetSorted(true); break;
        case kCommandFilter: ShowFilter(!m_filterShown); break;
        case kCommandTipBar: ShowTipBar(!m_tipShown); break;
    }
}

void CExtPropertyGridCtrl::ShowContextMenu(POINT screen) {
    HMENU menu = CreatePopupMenu();
    if (!menu) return;
    AppendMenuA(menu, MF_STRING | (IsCommandEnabled(kCommandReset) ? 0 : MF_GRAYED), kCommandReset, "&Reset");
    AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuA(menu, MF_STRING, kCommandCategorized, "&Categorized");
    AppendMenuA(menu, MF_STRING, kCommandAlphabetical, "&Alphabetical");
    CheckMenuRadioItem(menu, kCommandCategorized, kCommandAlphabetical,
                       IsSorted() ? kCommandAlphabetical : kCommandCategorized, MF_BYCOMMAND);
    AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuA(menu, MF_STRING | (m_filterShown ? MF_CHECKED : 0), kCommandFilter, "&Filter\tCtrl+F");
    AppendMenuA(menu, MF_STRING | (m_tipShown ? MF_CHECKED : 0), kCommandTipBar, "&Description");
    int chosen =
        TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_LEFTALIGN, screen.x, screen.y, 0, m_hwnd, nullptr);
    DestroyMenu(menu);
    if (chosen > 0) ExecuteCommand(static_cast<Command>(chosen));
}

// ---- notifications ---------------------------------------------------------------------

void CExtPropertyGridCtrl::SendNotify(UINT code, CExtPropertyValue& item) {
    HWND parent = m_hwnd ? GetParent(m_hwnd) : nullptr;
    if (!parent) return;
    NMPROPERTYGRID nm{};
    nm.hdr.hwndFrom = m_hwnd;
    nm.hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(m_hwnd));
    nm.hdr.code = code;
    nm.item = &item;
    SendMessageA(parent, WM_NOTIFY, nm.hdr.idFrom, reinterpret_cast<LPARAM>(&nm));
}

void CExtPropertyGridCtrl::OnInputComplete(CExtPropertyValue& item) { SendNotify(PGN_INPUTCOMPLETE, item); }

void CExtPropertyGridCtrl::OnValueApplied(CExtPropertyValue& item) { SendNotify(PGN_VALUEAPPLIED, item); }

void CExtPropertyGridCtrl::OnGridFocusChanged(CExtPropertyItem*) {
    if (m_hwnd && m_tipShown) InvalidateRect(m_hwnd, &m_tipRect, FALSE);
}

bool CExtPropertyGridCtrl::PreTranslateMessage(MSG* msg) {
    if (msg->message == WM_KEYDOWN && msg->wParam == VK_DELETE && m_hwnd && IsDialogMessageA(m_hwnd, msg)) return true;
    return false;
}

bool CExtPropertyGridCtrl::PreTranslateGridMessage(MSG* msg) {
    for (HWND hwnd = msg->hwnd; hwnd; hwnd = GetParent(hwnd)) {
        char name[64] = {};
        GetClassNameA(hwnd, name, sizeof name);
        if (lstrcmpA(name, kClassName) == 0) {
            auto* ctrl = BoundObject<CExtPropertyGridCtrl>(hwnd);
            return ctrl && ctrl->PreTranslateMessage(msg);
        }
        if (!(GetWindowLongA(hwnd, GWL_STYLE) & WS_CHILD)) break;
    }
    return false;
}

// ---- layout and painting -----------------------------------------------------------------

void CExtPropertyGridCtrl::Layout() {
    if (!m_hwnd) return;
    RECT client;
    GetClientRect(m_hwnd, &client);
    int y = 0;
    if (m_comboBar.IsShown()) {
        RECT combo;
        GetWindowRect(m_comboBar.GetHwnd(), &combo);
        int height = combo.bottom - combo.top;
        SetWindowPos(m_comboBar.GetHwnd(), nullptr, 0, 0, client.right, height + m_pm.Scale(160),
                     SWP_NOZORDER | SWP_NOACTIVATE);
        y += height + m_pm.Scale(2);
    }
    int toolbarHeight = m_pm.Scale(26);
    m_toolbarRect = {0, y, client.right, y + toolbarHeight};
    if (m_filterEdit) {
        RECT last = GetToolbarButtonRect(kToolbarButtons - 1);
        int left = last.right + m_pm.Scale(6);
        int height = m_pm.TextHeight() + m_pm.Scale(6);
        SetWindowPos(m_filterEdit, nullptr, left, y + (toolbarHeight - height) / 2,
                     (std::max)(0, static_cast<int>(client.right) - left - m_pm.Scale(3)), height,
                     SWP_NOZORDER | SWP_NOACTIVATE | (m_filterShown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
    }
    if (m_toolbarTips) {
        for (int b = 0; b < kToolbarButtons; ++b) {
            TTTOOLINFOA tool{};
            tool.cbSize = TTTOOLINFOA_V1_SIZE;
            tool.hwnd = m_hwnd;
            tool.uId = static_cast<UINT_PTR>(b + 1);
            tool.rect = GetToolbarButtonRect(b);
            SendMessageA(m_toolbarTips, TTM_NEWTOOLRECTA, 0, reinterpret_cast<LPARAM>(&tool));
        }
    }
    y += toolbarHeight;
    if (m_tipHeight <= 0) m_tipHeight = 3 * m_pm.TextHeight() + m_pm.Scale(14);
    int tip = m_tipShown ? std::clamp(m_tipHeight, m_pm.Scale(24),
                                      (std::max)(m_pm.Scale(24), static_cast<int>(client.bottom) - y - m_pm.Scale(40)))
                         : 0;
    int gridBottom = client.bottom - (m_tipShown ? tip + m_pm.Scale(4) : 0);
    m_tipRect = m_tipShown ? RECT{0, gridBottom + m_pm.Scale(4), client.right, client.bottom} : RECT{};
    // The rows sit inside a one-pixel frame painted by this window.
    if (m_grid->GetHwnd())
        SetWindowPos(m_grid->GetHwnd(), nullptr, 1, y + 1, (std::max)(0, static_cast<int>(client.right) - 2),
                     (std::max)(0, gridBottom - y - 2), SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(m_hwnd, nullptr, FALSE);
}

RECT CExtPropertyGridCtrl::GetToolbarButtonRect(int button) const {
    int size = m_pm.Scale(24);
    int top = m_toolbarRect.top + (m_toolbarRect.bottom - m_toolbarRect.top - size) / 2;
    int left = m_pm.Scale(2) + button * (size + m_pm.Scale(1)) + (button >= 2 ? m_pm.Scale(7) : 0);
    return {left, top, left + size, top + size};
}

int CExtPropertyGridCtrl::ToolbarHitTest(POINT point) const {
    for (int b = 0; b < kToolbarButtons; ++b) {
        RECT r = GetToolbarButtonRect(b);
        if (PtInRect(&r, point)) return b;
    }
    return -1;
}

void CExtPropertyGridCtrl::PressToolbarButton(int button) {
    switch (button) {
        case 0: SetSorted(false); break;
        case 1: SetSorted(true); break;
        case 2: ShowFilter(!m_filterShown); break;
    }
}

void CExtPropertyGridCtrl::PaintToolbarGlyph(HDC dc, int button, const RECT& rect) {
    // Glyphs are laid out on a 16-unit square scaled to the DPI and drawn
    // with whole pixels, so they stay sharp at every size.
    int size = m_pm.Scale(16);
    int ox = (rect.left + rect.right - size) / 2, oy = (rect.top + rect.bottom - size) / 2;
    auto at = [&](int units) { return MulDiv(units, size, 16); };
    auto box = [&](int x, int y, int w, int h, COLORREF color) {
        RECT r{ox + at(x), oy + at(y), ox + (std::max)(at(x + w), at(x) + 1), oy + (std::max)(at(y + h), at(y) + 1)};
        CExtGridPaintManager::FillSolid(dc, r, color);
    };
    COLORREF ink = GetSysColor(COLOR_BTNTEXT);
    COLORREF accent = RGB(0, 90, 180);
    if (button == 0) {
        // Two groups, each a heading with a minus box and indented lines.
        for (int g = 0; g < 2; ++g) {
            int y = 1 + g * 8;
            box(1, y, 5, 5, ink);
            box(2, y + 1, 3, 3, GetSysColor(COLOR_WINDOW));
            box(2, y + 2, 3, 1, ink);
            box(7, y + 2, 8, 1, accent);
            box(9, y + 5, 6, 1, ink);
        }
    } else if (button == 1) {
        // "A" above "Z" and an arrow pointing down.
        LOGFONTA lf{};
        lf.lfHeight = -at(7) - 1;
        lf.lfWeight = FW_BOLD;
        lstrcpyA(lf.lfFaceName, "Arial");
        HFONT font = CreateFontIndirectA(&lf);
        HGDIOBJ old = SelectObject(dc, font);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, accent);
        RECT a{ox, oy, ox + at(9), oy + at(8)};
        DrawTextA(dc, "A", 1, &a, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
        SetTextColor(dc, ink);
        RECT z{ox, oy + at(8), ox + at(9), oy + at(16)};
        DrawTextA(dc, "Z", 1, &z, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
        SelectObject(dc, old);
        DeleteObject(font);
        box(12, 2, 1, 11, ink);
        for (int i = 0; i < 3; ++i) box(12 - i, 12 - i, 1 + 2 * i, 1, ink);
    } else {
        // A funnel: a cone narrowing to a short spout.
        for (int i = 0; i < 6; ++i) box(1 + i, 3 + i, 14 - 2 * i, 1, i == 0 ? accent : ink);
        box(7, 9, 2, 5, ink);
    }
}

void CExtPropertyGridCtrl::PaintToolbar(HDC dc) {
    CExtGridPaintManager::FillSolid(dc, m_toolbarRect, GetSysColor(COLOR_3DFACE));
    for (int b = 0; b < kToolbarButtons; ++b) {
        RECT r = GetToolbarButtonRect(b);
        bool checked = (b == 0 && !IsSorted()) || (b == 1 && IsSorted()) || (b == 2 && m_filterShown);
        m_pm.DrawToolbarButtonFace(dc, r, b == m_hotButton, false, checked);
        PaintToolbarGlyph(dc, b, r);
    }
    // A separator between the view buttons and the filter button.
    RECT first = GetToolbarButtonRect(1);
    int x = first.right + m_pm.Scale(4);
    RECT sep{x, first.top + m_pm.Scale(3), x + 1, first.bottom - m_pm.Scale(3)};
    CExtGridPaintManager::FillSolid(dc, sep, GetSysColor(COLOR_3DSHADOW));
    OffsetRect(&sep, 1, 0);
    CExtGridPaintManager::FillSolid(dc, sep, GetSysColor(COLOR_3DHIGHLIGHT));
}

void CExtPropertyGridCtrl::PaintTipBar(HDC dc) {
    if (!m_tipShown) return;
    RECT r = m_tipRect;
    CExtGridPaintManager::FillSolid(dc, r, GetSysColor(COLOR_3DFACE));
    RECT frame = r;
    HBRUSH border = CreateSolidBrush(GetSysColor(COLOR_3DSHADOW));
    FrameRect(dc, &frame, border);
    DeleteObject(border);
    CExtPropertyItem* item = m_grid->FocusItem();
    if (!item) return;
    InflateRect(&r, -m_pm.Scale(6), -m_pm.Scale(4));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    HGDIOBJ old = SelectObject(dc, m_pm.BoldFont());
    RECT name = r;
    name.bottom = name.top + m_pm.TextHeight();
    DrawTextA(dc, item->NameGet().c_str(), -1, &name, DT_LEFT | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(dc, m_pm.NormalFont());
    RECT text = r;
    text.top = name.bottom + m_pm.Scale(3);
    DrawTextA(dc, item->DescriptionGet().c_str(), -1, &text,
              DT_LEFT | DT_WORDBREAK | DT_NOPREFIX | DT_END_ELLIPSIS | DT_EDITCONTROL);
    SelectObject(dc, old);
}

void CExtPropertyGridCtrl::Paint(HDC dc) {
    RECT client;
    GetClientRect(m_hwnd, &client);
    CExtGridPaintManager::FillSolid(dc, client, GetSysColor(COLOR_3DFACE));
    PaintToolbar(dc);
    if (m_grid->GetHwnd()) {
        RECT rows;
        GetWindowRect(m_grid->GetHwnd(), &rows);
        MapWindowPoints(nullptr, m_hwnd, reinterpret_cast<POINT*>(&rows), 2);
        InflateRect(&rows, 1, 1);
        HBRUSH border = CreateSolidBrush(GetSysColor(COLOR_3DSHADOW));
        FrameRect(dc, &rows, border);
        DeleteObject(border);
    }
    PaintTipBar(dc);
}

// ---- messages -------------------------------------------------------------------------------

LRESULT CExtPropertyGridCtrl::SubclassProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    CExtPropertyGridCtrl* self = this;
    if (message == WM_KEYDOWN) {
        if (wParam == VK_ESCAPE) {
            // Esc clears the filter, a second Esc closes the box.
            if (GetWindowTextLengthA(hwnd) > 0)
                self->SetFilterText(std::string());
            else
                self->ShowFilter(false);
            SetFocus(self->m_grid->GetHwnd());
            return 0;
        }
        if (wParam == VK_DOWN || wParam == VK_RETURN) {
            SetFocus(self->m_grid->GetHwnd());
            return 0;
        }
    }
    if (message == WM_CHAR && (wParam == '\x1b' || wParam == '\r')) return 0;
    if (message == WM_GETDLGCODE) return CallOriginalProc(hwnd, message, wParam, lParam) | DLGC_WANTALLKEYS;
    return CallOriginalProc(hwnd, message, wParam, lParam);
}

void CExtPropertyGridCtrl::OnBindWindow(HWND hwnd) { m_hwnd = hwnd; }

void CExtPropertyGridCtrl::OnUnbindWindow() {
    m_hwnd = nullptr;
    m_filterEdit = nullptr;
    m_toolbarTips = nullptr;
}

LRESULT CExtPropertyGridCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            CreateChildren();
            Layout();
            return 0;
        case WM_SIZE: Layout(); return 0;
        case WM_ERASEBKGND: return 1;
        case WM_PAINT:
            CExtGridPaintManager::PaintBuffered(m_hwnd, [this](HDC dc, const RECT&) { Paint(dc); });
            return 0;
        case WM_PRINTCLIENT: Paint(reinterpret_cast<HDC>(wParam)); return 0;
        case WM_SETFOCUS:
            // The control passes the keyboard to its rows.
            if (m_grid->GetHwnd()) SetFocus(m_grid->GetHwnd());
            return 0;
        case WM_COMMAND:
            if (LOWORD(wParam) == kFilterId && HIWORD(wParam) == EN_CHANGE) {
                m_grid->SetFilter(WindowText(m_filterEdit));
            } else if (LOWORD(wParam) == kComboBarId && HIWORD(wParam) == CBN_SELCHANGE) {
                PropertyStoreSynchronize();
            }
            return 0;
        case WM_MOUSEMOVE: {
            POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            if (m_draggingTip) {
                RECT client;
                GetClientRect(m_hwnd, &client);
                m_tipHeight = client.bottom - p.y - m_pm.Scale(2);
                Layout();
                return 0;
            }
            int hot = ToolbarHitTest(p);
            if (hot != m_hotButton) {
                m_hotButton = hot;
                InvalidateRect(m_hwnd, &m_toolbarRect, FALSE);
                TRACKMOUSEEVENT tme{sizeof(tme), TME_LEAVE, m_hwnd, 0};
                TrackMouseEvent(&tme);
            }
            return 0;
        }
        case WM_MOUSELEAVE:
            m_hotButton = -1;
            InvalidateRect(m_hwnd, &m_toolbarRect, FALSE);
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: {
            POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            int button = ToolbarHitTest(p);
            if (button >= 0) {
                PressToolbarButton(button);
                return 0;
            }
            // Between the rows and the tip bar: resize the tip bar.
            if (m_tipShown && p.y < m_tipRect.top && p.y >= m_tipRect.top - m_pm.Scale(5)) {
                m_draggingTip = true;
                SetCapture(m_hwnd);
            }
            return 0;
        }
        case WM_LBUTTONUP:
            if (m_draggingTip) {
                m_draggingTip = false;
                ReleaseCapture();
            }
            return 0;
        case WM_CONTEXTMENU: {
            // From the mouse at its point; from the keyboard (-1) under the focus row.
            POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            if (lParam == -1) {
                RECT row{};
                if (!m_grid->GetRowRect(m_grid->FocusGet(), &row)) GetClientRect(m_grid->GetHwnd(), &row);
                at = {row.left + m_pm.Scale(20), row.bottom};
                ClientToScreen(m_grid->GetHwnd(), &at);
            }
            ShowContextMenu(at);
            return 0;
        }
        case WM_SETCURSOR:
            if (reinterpret_cast<HWND>(wParam) == m_hwnd && LOWORD(lParam) == HTCLIENT) {
                POINT p;
                GetCursorPos(&p);
                ScreenToClient(m_hwnd, &p);
                if (m_tipShown && p.y < m_tipRect.top && p.y >= m_tipRect.top - m_pm.Scale(5)) {
                    SetCursor(LoadCursor(nullptr, IDC_SIZENS));
                    return TRUE;
                }
            }
            break;
        case WM_SETTINGCHANGE:  // reaches child windows only when an owner passes it on
        case WM_THEMECHANGED:
            m_pm.Refresh();
            FontsChanged();
            break;
    }
    return DefWindowProcA(m_hwnd, message, wParam, lParam);
}
