#pragma once
// The property grid control: a store selector bar (hidden by owners that show
// one store), a toolbar that switches between categorized and alphabetical
// order and opens the filter box, the rows, and a tip bar with the focus
// row's name and description. After the user changed a value the control
// calls OnInputComplete (an edit was completed) or OnValueApplied (a value was
// applied directly); by default both send WM_NOTIFY to the parent.
#include <windows.h>

#include <memory>
#include <string>

#include "grid/window_binding.h"
#include "grid/paint_manager.h"
#include "grid/property_grid_combo_bar.h"
#include "grid/property_grid_wnd.h"
#include "grid/property_store.h"

// WM_NOTIFY codes and their data.
constexpr UINT PGN_INPUTCOMPLETE = 0x5047 + 1;
constexpr UINT PGN_VALUEAPPLIED = 0x5047 + 2;
struct NMPROPERTYGRID {
    NMHDR hdr;
    CExtPropertyValue* item;
};

class CExtPropertyGridCtrl : protected CExtPropertyGridEvents {
public:
    CExtPropertyGridCtrl();
    ~CExtPropertyGridCtrl() override;
    CExtPropertyGridCtrl(const CExtPropertyGridCtrl&) = delete;
    CExtPropertyGridCtrl& operator=(const CExtPropertyGridCtrl&) = delete;

    bool Create(HWND parent, const RECT& rect, int id);
    // Takes the place, size, id and tab order of a placeholder control of a
    // dialog (which is destroyed).
    bool CreateInPlaceOf(HWND dialog, int controlId);
    HWND GetHwnd() const { return m_hwnd; }

    CExtPropertyGridComboBoxBar& GetComboBar() { return m_comboBar; }
    CExtPropertyGridWnd& GetGrid() { return *m_grid; }
    CExtGridPaintManager& PaintManager() { return m_pm; }

    // Shows the store selected in the combo bar (after stores were added or
    // the selection changed) and re-reads it.
    void PropertyStoreSynchronize();
    // Shows a store directly, bypassing the combo bar.
    void PropertyStoreSet(CExtPropertyStore* store);
    CExtPropertyStore* PropertyStoreGet() const { return m_grid->GetStore(); }

    void SetSorted(bool sorted);
    bool IsSorted() const { return m_grid->IsSorted(); }
    // The filter box (off by default).
    void ShowFilter(bool show);
    bool IsFilterShown() const { return m_filterShown; }
    void SetFilterText(const std::string& text);
    void ShowTipBar(bool show);
    bool IsTipBarShown() const { return m_tipShown; }
    // Tool tips for names and values too long for their column.
    void EnableToolTips(bool enable);
    bool AreToolTipsEnabled() const { return m_toolTipsEnabled; }
    // Sizes for another DPI than the screen's.
    void SetDpi(int dpi);

    // For the owner's message loop: keys that must not reach the owner's
    // accelerators. Returns true when the message was handled. The default
    // lets Delete reach the focused control through dialog-message handling.
    virtual bool PreTranslateMessage(MSG* msg);
    // Finds the grid control that contains msg->hwnd and asks it.
    static bool PreTranslateGridMessage(MSG* msg);

    // The commands of the context menu, also usable directly.
    enum Command { kCommandReset = 1, kCommandCategorized, kCommandAlphabetical, kCommandFilter, kCommandTipBar };
    bool IsCommandEnabled(Command command);
    void ExecuteCommand(Command command);
    // Puts the focus row's value back to the one it had when first shown and
    // raises the input-completed notification.
    void ResetFocusValue();

    // Toolbar buttons (for tests): the rectangle of button 0 (categorized),
    // 1 (alphabetical) or 2 (filter) in client coordinates.
    RECT GetToolbarButtonRect(int button) const;
    HWND GetFilterHwnd() const { return m_filterEdit; }
    RECT GetTipBarRect() const { return m_tipRect; }

protected:
    virtual void OnInputComplete(CExtPropertyValue& item);
    virtual void OnValueApplied(CExtPropertyValue& item);
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);

    // CExtPropertyGridEvents
    void OnGridFocusChanged(CExtPropertyItem* item) override;
    void OnGridInputComplete(CExtPropertyValue& item) override { OnInputComplete(item); }
    void OnGridValueApplied(CExtPropertyValue& item) override { OnValueApplied(item); }
    void OnGridFindRequested() override {
        ShowFilter(true);
        if (m_filterEdit) SetFocus(m_filterEdit);
    }

private:
    template <class T>
    friend LRESULT CALLBACK BoundWindowProc(HWND, UINT, WPARAM, LPARAM);
    void OnBindWindow(HWND hwnd);
    void OnUnbindWindow();
    template <class T>
    friend LRESULT CALLBACK window_binding::Thunk(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);
    // The filter box's messages (it is subclassed).
    LRESULT SubclassProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    void CreateChildren();
    void Layout();
    void Paint(HDC dc);
    void PaintToolbar(HDC dc);
    void PaintToolbarGlyph(HDC dc, int button, const RECT& rect);
    void PaintTipBar(HDC dc);
    int ToolbarHitTest(POINT point) const;
    void PressToolbarButton(int button);
    void SendNotify(UINT code, CExtPropertyValue& item);
    void CreateToolbarTips();
    void ShowContextMenu(POINT screen);
    void FontsChanged();

    CExtGridPaintManager m_pm;
    std::unique_ptr<CExtPropertyGridWnd> m_grid;
    CExtPropertyGridComboBoxBar m_comboBar;
    HWND m_hwnd = nullptr;
    HWND m_filterEdit = nullptr;
    HWND m_toolbarTips = nullptr;
    bool m_filterShown = false;
    bool m_tipShown = true;
    bool m_toolTipsEnabled = true;
    RECT m_toolbarRect{};
    RECT m_tipRect{};
    int m_tipHeight = 0;  // 0 until first layout: then from the font
    bool m_draggingTip = false;
    int m_hotButton = -1;
};
