#pragma once
// The Properties dialog: one property grid built from the PROPERTIES section
// of the extension definition, a row per property with the cell its type
// code asks for. The dialog edits its own copy of the object's values; the
// caller takes the copy back only when the dialog ends with OK.
//
//   CPropertiesDialog dialog(&definition, &siteStructure);
//   dialog.Values() = object's values;
//   if (dialog.DoModal(hostWindow) == IDOK) object's values = dialog.Values();
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "grid/window_binding.h"
#include "grid/property_grid_ctrl.h"
#include "ui/hyperlink_static.h"
#include "xml/hashed_string_map.h"
#include "xml/xml_document.h"

// The dialog's grid control. A Delete key pressed in the grid belongs to the
// grid's own window (it starts an empty value there) before the grid's usual
// translation sees it.
class CExtensionPropertyGridCtrl : public CExtPropertyGridCtrl {
public:
    bool PreTranslateMessage(MSG* msg) override;
};

class CPropertiesDialog {
public:
    // Controls of the dialog template "Properties".
    static constexpr int kGridId = 1001;
    static constexpr int kDeveloperId = 5016;
    static constexpr int kWebsiteId = 149;

    // Neither document is owned; both must outlive the dialog. The site
    // structure goes to the link and image-list cells.
    CPropertiesDialog(CXmlDocument* definition, CXmlDocument* siteStructure);
    ~CPropertiesDialog();
    CPropertiesDialog(const CPropertiesDialog&) = delete;
    CPropertiesDialog& operator=(const CPropertiesDialog&) = delete;

    // The values being edited, variable name to value text.
    CHashedStringMap& Values() { return m_values; }

    // Runs the dialog modally over parent's top-level window (which is
    // disabled meanwhile). IDOK (1) or IDCANCEL (2); -1 when the dialog
    // could not be created.
    int DoModal(HWND parent);
    // Creates the dialog without running it (hidden), for callers that drive
    // it themselves. Null on failure.
    HWND Create(HWND parent);
    HWND GetHwnd() const { return m_hwnd; }

    CExtensionPropertyGridCtrl& Grid() { return m_grid; }
    CHyperlinkStatic& WebsiteLink() { return m_website; }

    // The store behind the grid, built on the first call from the definition
    // and the values; later calls return the same store.
    CExtPropertyStore* BuildPropertyStore();
    // Writes item's current value into the values. Always false (not
    // handled), so the caller goes on with the item's parent values.
    bool StorePropertyValue(CExtPropertyValue& item);
    // A row changed: item, then each parent that is itself a value, is
    // offered to StorePropertyValue.
    void OnValueChanged(CExtPropertyValue& item);

private:
    template <class T>
    friend INT_PTR CALLBACK BoundDialogProc(HWND, UINT, WPARAM, LPARAM);
    INT_PTR DialogProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    BOOL OnInitDialog();
    void End(int result);
    // The face names for font-name rows, listed once per dialog.
    const std::vector<std::string>& FaceNames();
    // Gives a dialog message to the grid first, then to the dialog manager.
    bool PreTranslate(MSG& msg);

    CHyperlinkStatic m_website;
    CHashedStringMap m_values;
    CXmlDocument* m_definition;
    CXmlDocument* m_siteStructure;
    std::unique_ptr<CExtPropertyStore> m_store;
    CExtensionPropertyGridCtrl m_grid;

    HWND m_hwnd = nullptr;
    bool m_ended = false;
    int m_result = IDCANCEL;
    bool m_facesListed = false;
    std::vector<std::string> m_faces;
};
