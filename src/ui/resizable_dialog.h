#pragma once
// Resizing of a dialog whose controls are anchored to its edges: a sizing
// border, a size grip in the bottom-right corner (hidden while maximised),
// the initial size as the minimum, and each listed control moved or
// stretched by the change of the dialog's size.
#include <windows.h>

#include <initializer_list>
#include <vector>

// Anchoring flags of one control.
enum ResizeAnchor : unsigned {
    kAnchorRightEdge = 1,   // the right edge follows the width
    kAnchorBottomEdge = 2,  // the bottom edge follows the height
    kAnchorLeftEdge = 4,    // the left edge follows the width too (the control moves)
    kAnchorTopEdge = 8,     // the top edge follows the height too
    kAnchorRepaint = 16,    // repainted after every change of size
};

struct ResizeRule {
    int controlId;
    unsigned anchors;
};

class CResizableDialog {
public:
    // Call from WM_INITDIALOG, before the dialog changes its own size.
    void SetUp(HWND dialog, std::initializer_list<ResizeRule> rules);
    // Handles WM_SIZE and WM_GETMINMAXINFO; false for other messages.
    bool HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

    HWND SizeGrip() const { return m_grip; }

private:
    struct Placement {
        int controlId;
        unsigned anchors;
        RECT initial;  // in client coordinates
    };

    void Layout(int width, int height);

    HWND m_dialog = nullptr;
    HWND m_grip = nullptr;
    SIZE m_minimum = {};
    SIZE m_initialClient = {};
    std::vector<Placement> m_placements;
};
