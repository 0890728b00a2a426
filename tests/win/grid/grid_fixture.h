#pragma once
// A top-level window holding a property grid control over a small store:
// category "Look" (Title string, Color colour, Size list-bound combo, Align
// drop-down list) and category "Behavior" (Enabled check box, Count up-down,
// Path file). Notifications are recorded both from the control's virtual
// hooks and from the WM_NOTIFY messages that reach the parent.
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/window_text.h"
#include "grid/cell_bool.h"
#include "grid/cell_color.h"
#include "grid/cell_combo.h"
#include "grid/cell_file.h"
#include "grid/cell_string.h"
#include "grid/cell_variant.h"
#include "grid/property_grid_ctrl.h"

struct GridEvent {
    UINT code;         // PGN_INPUTCOMPLETE or PGN_VALUEAPPLIED
    std::string name;  // the item's name
    std::string text;  // the cell's text at that moment
};

class RecordingGridCtrl : public CExtPropertyGridCtrl {
public:
    std::vector<GridEvent> hooks;

protected:
    void OnInputComplete(CExtPropertyValue& item) override;
    void OnValueApplied(CExtPropertyValue& item) override;
};

class GridFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    CExtPropertyGridWnd& Rows() { return m_ctrl->GetGrid(); }
    HWND RowsHwnd() { return Rows().GetHwnd(); }
    CExtPropertyValue* Value(const std::string& name);
    template <class Cell>
    Cell* CellOf(const std::string& name) {
        return static_cast<Cell*>(Value(name)->ValueActiveGet());
    }
    // Focuses the row of the named item; fails the test when it is not shown.
    void Focus(const std::string& name);
    std::vector<std::string> RowNames();
    int RowOf(const std::string& name);

    void Key(WPARAM key, HWND target = nullptr);  // key down (and up) to the rows or target
    void Char(char ch, HWND target = nullptr);
    void ClickAt(POINT client, bool doubleClick = false);
    POINT ValuePoint(const std::string& name, int dx = 20);
    void PumpMessages();

    // What reached the parent window as WM_NOTIFY.
    static std::vector<GridEvent>& ParentEvents();

    HWND m_frame = nullptr;
    RecordingGridCtrl* m_ctrl = nullptr;
    std::unique_ptr<CExtPropertyStore> m_store;
};
