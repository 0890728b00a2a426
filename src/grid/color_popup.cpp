#include "grid/color_popup.h"

#include <windowsx.h>

#include <algorithm>

#include "grid/paint_manager.h"
#include "grid/window_class.h"

namespace {
const char kClassName[] = "PwGridColorPopup";
HWND g_activePopup = nullptr;
constexpr int kColumns = 8;

COLORREF Hex(unsigned rgb) { return RGB((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF); }
}  // namespace

const std::vector<COLORREF>& CExtColorPopup::Palette() {
    static const std::vector<COLORREF> palette = [] {
        const unsigned rgb[] = {0x000000, 0x993300, 0x333300, 0x003300, 0x003366, 0x000080, 0x333399, 0x333333,
                                0x800000, 0xFF6600, 0x808000, 0x008000, 0x008080, 0x0000FF, 0x666699, 0x808080,
                                0xFF0000, 0xFF9900, 0x99CC00, 0x339966, 0x33CCCC, 0x3366FF, 0x800080, 0x969696,
                                0xFF00FF, 0xFFCC00, 0xFFFF00, 0x00FF00, 0x00FFFF, 0x00CCFF, 0x993366, 0xC0C0C0,
                                0xFF99CC, 0xFFCC99, 0xFFFF99, 0xCCFFCC, 0xCCFFFF, 0x99CCFF, 0xCC99FF, 0xFFFFFF};
        std::vector<COLORREF> colors;
        for (unsigned c : rgb) colors.push_back(Hex(c));
        return colors;
    }();
    return palette;
}

HWND CExtColorPopup::ActiveWindow() { return g_activePopup; }

CExtColorPopup::CExtColorPopup() : m_pm(&GridPaintManager()) {}

CExtColorPopup::~CExtColorPopup() {
    if (m_hwnd) DestroyWindow(m_hwnd);
}

void CExtColorPopup::SetAutomatic(bool show, COLORREF automaticColor) {
    m_showAutomatic = show;
    m_automaticColor = automaticColor;
}

void CExtColorPopup::Layout() {
    const CExtGridPaintManager& pm = *m_pm;
    int margin = pm.Scale(5), cell = pm.Scale(18), gap = pm.Scale(3);
    int textRow = pm.TextHeight() + pm.Scale(10);
    int width = 2 * margin + kColumns * cell + (kColumns - 1) * gap;
    int y = margin;
    m_entries.clear();
    if (m_showAutomatic) {
        m_entries.push_back({Kind::kAutomatic, m_automaticColor, {margin, y, width - margin, y + textRow}});
        y += textRow + gap;
    }
    const auto& palette = Palette();
    for (std::size_t i = 0; i < palette.size(); ++i) {
        int col = static_cast<int>(i) % kColumns, row = static_cast<int>(i) / kColumns;
        int x = margin + col * (cell + gap), top = y + row * (cell + gap);
        m_entries.push_back({Kind::kSwatch, palette[i], {x, top, x + cell, top + cell}});
    }
    y += 5 * (cell + gap) + gap;
    m_entries.push_back({Kind::kCustom, 0, {margin, y, width - margin, y + textRow}});
    y += textRow + margin;
    m_size = {width, y};
}

int CExtColorPopup::HitTest(POINT client) const {
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        RECT r = m_entries[i].rect;
        InflateRect(&r, m_pm->Scale(1), m_pm->Scale(1));
        if (PtInRect(&r, client)) return static_cast<int>(i);
    }
    return -1;
}

void CExtColorPopup::SetHot(int entry) {
    if (entry == m_hot) return;
    m_hot = entry;
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
}

void CExtColorPopup::Paint(HDC dc) {
    const CExtGridPaintManager& pm = *m_pm;
    RECT all{0, 0, m_size.cx, m_size.cy};
    CExtGridPaintManager::FillSolid(dc, all, GetSysColor(COLOR_MENU));
    HGDIOBJ oldFont = SelectObject(dc, pm.NormalFont());
    SetBkMode(dc, TRANSPARENT);
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const Entry& e = m_entries[i];
        bool hot = static_cast<int>(i) == m_hot;
        if (e.kind == Kind::kSwatch) {
            if (hot || e.color == m_current) {
                RECT ring = e.rect;
                InflateRect(&ring, pm.Scale(2), pm.Scale(2));
                CExtGridPaintManager::FillSolid(dc, ring, GetSysColor(hot ? COLOR_HIGHLIGHT : COLOR_MENUTEXT));
                InflateRect(&ring, -pm.Scale(1), -pm.Scale(1));
                CExtGridPaintManager::FillSolid(dc, ring, GetSysColor(COLOR_MENU));
            }
            CExtGridPaintManager::FillSolid(dc, e.rect, e.color);
            HBRUSH frame = CreateSolidBrush(GetSysColor(COLOR_3DSHADOW));
            FrameRect(dc, &e.rect, frame);
            DeleteObject(frame);
            continue;
        }
        // The text rows look like menu items.
        RECT r = e.rect;
        bool current = e.kind == Kind::kAutomatic && m_current == m_automaticColor;
        if (hot) {
            CExtGridPaintManager::FillSolid(dc, r, GetSysColor(COLOR_HIGHLIGHT));
        } else if (current) {
            HBRUSH frame = CreateSolidBrush(GetSysColor(COLOR_MENUTEXT));
            FrameRect(dc, &r, frame);
            DeleteObject(frame);
        } else {
            DrawEdge(dc, &r, BDR_RAISEDINNER, BF_RECT);
        }
        SetTextColor(dc, GetSysColor(hot ? COLOR_HIGHLIGHTTEXT : COLOR_MENUTEXT));
        std::string caption = e.kind == Kind::kAutomatic ? "Automatic" : m_customCaption;
        RECT textRect = r;
        if (e.kind == Kind::kAutomatic) {
            RECT swatch{r.left + pm.Scale(4), r.top + pm.Scale(3), r.left + pm.Scale(4) + pm.Scale(18),
                        r.bottom - pm.Scale(3)};
            pm.DrawColorSwatch(dc, swatch, m_automaticColor);
        }
        DrawTextA(dc, caption.c_str(), -1, &textRect, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    }
    SelectObject(dc, oldFont);
}

void CExtColorPopup::MoveFocus(int dx, int dy) {
    int count = static_cast<int>(m_entries.size());
    if (m_hot < 0) {
        // Start at the current colour, else at the first swatch.
        for (int i = 0; i < count; ++i)
            if (m_entries[i].kind == Kind::kSwatch && m_entries[i].color == m_current) {
                SetHot(i);
                return;
            }
        SetHot(m_showAutomatic ? 1 : 0);
        return;
    }
    int first = m_showAutomatic ? 1 : 0;  // index of the first swatch
    int last = first + static_cast<int>(Palette().size()) - 1;
    int hot = m_hot;
    if (hot >= first && hot <= last) {
        int index = hot - first, col = index % kColumns, row = index / kColumns;
        if (dx) {
            index = std::clamp(index + dx, 0, last - first);
            hot = first + index;
        } else if (dy < 0) {
            hot = row == 0 ? (m_showAutomatic ? 0 : hot) : hot - kColumns;
        } else if (dy > 0) {
            hot = row == 4 ? last + 1 : hot + kColumns;
        }
        (void)col;
    } else if (hot < first) {  // Automatic
        if (dy > 0) hot = first;
    } else {  // the custom command
        if (dy < 0) hot = last - kColumns + 1;
    }
    SetHot(hot);
}

void CExtColorPopup::Finish(int entry) {
    m_done = true;
    if (entry < 0) {
        m_result = Result::kCancelled;
        return;
    }
    const Entry& e = m_entries[entry];
    if (e.kind == Kind::kCustom) {
        m_result = Result::kCustomCommand;
    } else {
        m_result = Result::kPicked;
        m_picked = e.color;
    }
}

bool CExtColorPopup::HandleKey(WPARAM key) {
    switch (key) {
        case VK_ESCAPE: Finish(-1); return true;
        case VK_RETURN:
        case VK_SPACE:
            if (m_hot >= 0) Finish(m_hot);
            return true;
        case VK_LEFT: MoveFocus(-1, 0); return true;
        case VK_RIGHT: MoveFocus(1, 0); return true;
        case VK_UP: MoveFocus(0, -1); return true;
        case VK_DOWN: MoveFocus(0, 1); return true;
        case VK_TAB: SetHot(m_hot < 0 ? 0 : (m_hot + 1) % static_cast<int>(m_entries.size())); return true;
        default: return false;
    }
}

void CExtColorPopup::OnBindWindow(HWND hwnd) { m_hwnd = hwnd; }

LRESULT CExtColorPopup::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    HWND hwnd = m_hwnd;
    CExtColorPopup* self = this;
    switch (message) {
        case WM_ERASEBKGND: return 1;
        case WM_PAINT: {
            PAINTSTRUCT ps;
            HDC dc = BeginPaint(hwnd, &ps);
            HDC mem = CreateCompatibleDC(dc);
            HBITMAP bitmap = CreateCompatibleBitmap(dc, self->m_size.cx, self->m_size.cy);
            HGDIOBJ old = SelectObject(mem, bitmap);
            self->Paint(mem);
            BitBlt(dc, 0, 0, self->m_size.cx, self->m_size.cy, mem, 0, 0, SRCCOPY);
            SelectObject(mem, old);
            DeleteObject(bitmap);
            DeleteDC(mem);
            EndPaint(hwnd, &ps);
            return 0;
        }
        case WM_MOUSEMOVE: {
            POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            self->SetHot(self->HitTest(p));
            return 0;
        }
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN: {
            POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            RECT client;
            GetClientRect(hwnd, &client);
            if (!PtInRect(&client, p)) self->Finish(-1);  // a click elsewhere closes it
            return 0;
        }
        case WM_LBUTTONUP: {
            POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            int hit = self->HitTest(p);
            if (hit >= 0) self->Finish(hit);
            return 0;
        }
        case WM_CAPTURECHANGED:
            if (reinterpret_cast<HWND>(lParam) != hwnd && !self->m_done) self->Finish(-1);
            return 0;
        case WM_MOUSEACTIVATE: return MA_NOACTIVATE;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

CExtColorPopup::Result CExtColorPopup::Track(HWND owner, POINT at, int anchorRight, COLORREF current,
                                             COLORREF* picked) {
    if (!EnsureGridWindowClass(kClassName, BoundWindowProc<CExtColorPopup>, CS_DROPSHADOW | CS_SAVEBITS))
        return Result::kCancelled;
    m_current = current;
    m_done = false;
    m_result = Result::kCancelled;
    m_hot = -1;
    Layout();

    // Keep it on the monitor: right-align it with the value when that fits,
    // and open upwards when there is no room below.
    int width = m_size.cx + 2 * GetSystemMetrics(SM_CXBORDER);
    int height = m_size.cy + 2 * GetSystemMetrics(SM_CYBORDER);
    MONITORINFO mi{};
    mi.cbSize = sizeof(mi);
    GetMonitorInfoA(MonitorFromPoint(at, MONITOR_DEFAULTTONEAREST), &mi);
    int x = (std::max)(static_cast<int>(at.x), anchorRight - width);
    x = (std::min)(x, static_cast<int>(mi.rcWork.right) - width);
    x = (std::max)(x, static_cast<int>(mi.rcWork.left));
    int y = at.y;
    if (y + height > mi.rcWork.bottom) y = (std::max)(static_cast<int>(mi.rcWork.top), y - height - m_pm->RowHeight());

    HWND topLevel = owner ? GetAncestor(owner, GA_ROOT) : nullptr;
    m_hwnd = CreateWindowExA(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, kClassName, "", WS_POPUP | WS_BORDER, x, y, width,
                             height, topLevel, nullptr, OwnModule(), this);
    if (!m_hwnd) return Result::kCancelled;
    g_activePopup = m_hwnd;
    ShowWindow(m_hwnd, SW_SHOWNOACTIVATE);
    UpdateWindow(m_hwnd);
    SetCapture(m_hwnd);

    MSG msg;
    while (!m_done) {
        if (!GetMessageA(&msg, nullptr, 0, 0)) {
            PostQuitMessage(static_cast<int>(msg.wParam));
            break;
        }
        if (msg.message == WM_KEYDOWN || msg.message == WM_SYSKEYDOWN) {
            if (msg.wParam == VK_MENU || msg.message == WM_SYSKEYDOWN) {
                Finish(-1);
                continue;
            }
            HandleKey(msg.wParam);
            continue;
        }
        if (msg.message == WM_CHAR || msg.message == WM_KEYUP || msg.message == WM_SYSCHAR) continue;
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
        if (GetCapture() != m_hwnd && !m_done) Finish(-1);
    }
    if (GetCapture() == m_hwnd) ReleaseCapture();
    g_activePopup = nullptr;
    DestroyWindow(m_hwnd);
    m_hwnd = nullptr;
    if (m_result == Result::kPicked && picked) *picked = m_picked;
    return m_result;
}
