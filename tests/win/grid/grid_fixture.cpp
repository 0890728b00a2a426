#include "grid_fixture.h"

namespace {
// Everything that reached a fixture's parent window as WM_NOTIFY.
std::vector<GridEvent> g_parentEvents;

LRESULT CALLBACK FrameProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NOTIFY) {
        const auto* nm = reinterpret_cast<const NMPROPERTYGRID*>(lParam);
        if (nm->hdr.code == PGN_INPUTCOMPLETE || nm->hdr.code == PGN_VALUEAPPLIED) {
            CExtGridCell* cell = nm->item->ValueActiveGet();
            g_parentEvents.push_back({nm->hdr.code, nm->item->NameGet(), cell ? cell->GetText() : ""});
        }
        return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

template <class Cell>
Cell* Add(CExtPropertyCategory* category, const char* name, const char* description) {
    auto* value = new CExtPropertyValue(name, description);
    category->ItemInsert(value);
    return value->ValueActiveGetByRTC<Cell>();
}
}  // namespace

std::vector<GridEvent>& GridFixture::ParentEvents() { return g_parentEvents; }

void RecordingGridCtrl::OnInputComplete(CExtPropertyValue& item) {
    hooks.push_back({PGN_INPUTCOMPLETE, item.NameGet(), item.ValueActiveGet()->GetText()});
    CExtPropertyGridCtrl::OnInputComplete(item);
}

void RecordingGridCtrl::OnValueApplied(CExtPropertyValue& item) {
    hooks.push_back({PGN_VALUEAPPLIED, item.NameGet(), item.ValueActiveGet()->GetText()});
    CExtPropertyGridCtrl::OnValueApplied(item);
}

void GridFixture::SetUp() {
    static bool registered = false;
    if (!registered) {
        WNDCLASSA wc{};
        wc.lpfnWndProc = FrameProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.lpszClassName = "PwGridTestFrame";
        registered = RegisterClassA(&wc) != 0;
    }
    ParentEvents().clear();
    // The frame stays hidden: Wine takes seconds to destroy a shown window,
    // and messages drive the grid all the same.
    m_frame = CreateWindowExA(0, "PwGridTestFrame", "grid test", WS_OVERLAPPEDWINDOW, 10, 10, 420, 520, nullptr,
                              nullptr, GetModuleHandleA(nullptr), nullptr);
    ASSERT_NE(m_frame, nullptr);
    m_ctrl = new RecordingGridCtrl();
    m_ctrl->PaintManager().SetDpi(96);
    ASSERT_TRUE(m_ctrl->Create(m_frame, RECT{0, 0, 400, 480}, 1001));

    m_store = std::make_unique<CExtPropertyStore>("Test");
    auto* look = new CExtPropertyCategory("Look");
    m_store->ItemInsert(look);
    Add<CExtGridCellString>(look, "Title", "The caption.")->SetText("Hello");
    Add<CExtGridCellColor>(look, "Color", "The background.")->SetColor(RGB(0, 0, 0));
    auto* size = Add<CExtGridCellComboBox>(look, "Size", "Points.");
    for (const char* s : {"8", "10", "12"}) size->AddString(s);
    size->SetText("10");
    size->SetListBound(true);
    auto* align = Add<CExtGridCellDropListComboBox>(look, "Align", "Placement of text.");
    for (const char* s : {"Left", "Center", "Right"}) align->AddString(s);
    align->SetText("Left");
    auto* behave = new CExtPropertyCategory("Behavior");
    m_store->ItemInsert(behave);
    Add<CExtGridCellBool>(behave, "Enabled", "Turns it on.");
    Add<CExtGridCellUpDown>(behave, "Count", "How many.")->SetInt32(5);
    Add<CExtGridCellFile>(behave, "Path", "A file.")->SetText("C:\\a.txt");

    CExtPropertyGridComboBoxBar& bar = m_ctrl->GetComboBar();
    bar.PropertyStoreInsert(m_store.get());
    SendMessageA(bar.GetHwnd(), CB_SETCURSEL, 0, 0);
    bar.Show(false);
    m_ctrl->PropertyStoreSynchronize();
    SetFocus(RowsHwnd());
    PumpMessages();
}

void GridFixture::TearDown() {
    if (m_frame) DestroyWindow(m_frame);
    delete m_ctrl;
    m_store.reset();
    PumpMessages();
}


CExtPropertyValue* GridFixture::Value(const std::string& name) {
    for (int c = 0; c < m_store->ItemGetCount(); ++c)
        if (CExtPropertyItem* item = m_store->ItemGetAt(c)->ItemFind(name))
            return static_cast<CExtPropertyValue*>(item);
    ADD_FAILURE() << "no item " << name;
    return nullptr;
}

int GridFixture::RowOf(const std::string& name) {
    for (int row = 0; row < Rows().RowCount(); ++row)
        if (Rows().RowItem(row)->NameGet() == name) return row;
    return -1;
}

void GridFixture::Focus(const std::string& name) {
    int row = RowOf(name);
    ASSERT_GE(row, 0) << name << " is not shown";
    Rows().FocusSet(row);
}

std::vector<std::string> GridFixture::RowNames() {
    std::vector<std::string> names;
    for (int row = 0; row < Rows().RowCount(); ++row) names.push_back(Rows().RowItem(row)->NameGet());
    return names;
}

void GridFixture::Key(WPARAM key, HWND target) {
    HWND to = target ? target : RowsHwnd();
    SendMessageA(to, WM_KEYDOWN, key, 1);
    if (IsWindow(to)) SendMessageA(to, WM_KEYUP, key, 0xC0000001);
}

void GridFixture::Char(char ch, HWND target) {
    SendMessageA(target ? target : RowsHwnd(), WM_CHAR, static_cast<unsigned char>(ch), 1);
}

void GridFixture::ClickAt(POINT client, bool doubleClick) {
    LPARAM at = MAKELPARAM(client.x, client.y);
    SendMessageA(RowsHwnd(), WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageA(RowsHwnd(), WM_LBUTTONUP, 0, at);
    if (doubleClick) {
        SendMessageA(RowsHwnd(), WM_LBUTTONDBLCLK, MK_LBUTTON, at);
        SendMessageA(RowsHwnd(), WM_LBUTTONUP, 0, at);
    }
}

POINT GridFixture::ValuePoint(const std::string& name, int dx) {
    RECT value = Rows().GetValueRect(RowOf(name));
    return {value.left + dx, (value.top + value.bottom) / 2};
}

void GridFixture::PumpMessages() {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}
