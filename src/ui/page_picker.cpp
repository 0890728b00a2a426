#include "ui/page_picker.h"

#include <commctrl.h>

#include <vector>

#include "ui/host_settings.h"
#include "ui/link_dialog_resources.h"
#include "ui/link_type.h"
#include "ui/picker_tree.h"
#include "ui/tree_picker_dialog.h"
#include "platform/own_module.h"
#include "xml/ascii.h"
#include "xml/xml_document.h"

namespace {

constexpr int kSiteImage = 0;
constexpr int kPageImage = 1;
constexpr int kFolderImage = 2;
const char kSettingsSection[] = "Settings";
const char kLastExpandedEntry[] = "LastExpanded";

bool IsFolder(const CXmlElement* node) { return node && node->GetName() == "folder"; }

CXmlElement* ItemNode(HWND tree, HTREEITEM item) { return reinterpret_cast<CXmlElement*>(TreeItemData(tree, item)); }

// The next item in depth-first order (children first, then siblings).
HTREEITEM NextInTree(HWND tree, HTREEITEM item) {
    if (HTREEITEM child = TreeView_GetChild(tree, item)) return child;
    while (item) {
        if (HTREEITEM sibling = TreeView_GetNextSibling(tree, item)) return sibling;
        item = TreeView_GetParent(tree, item);
    }
    return nullptr;
}

HTREEITEM FindItemByText(HWND tree, const std::string& text) {
    for (HTREEITEM item = TreeView_GetRoot(tree); item; item = NextInTree(tree, item))
        if (ascii::EqualsNoCase(TreeItemText(tree, item), text)) return item;
    return nullptr;
}

class CPagePicker : public CTreePickerDialog {
public:
    explicit CPagePicker(const PagePickerRequest& request) : CTreePickerDialog(IDC_PAGE_TREE), m_request(request) {}
    ~CPagePicker() override {
        if (m_bigIcon) DestroyIcon(m_bigIcon);
        if (m_smallIcon) DestroyIcon(m_smallIcon);
    }

    bool Run(HWND parent, CXmlElement*& chosen) {
        if (!CTreePickerDialog::Run(parent, PW_DIALOG_SELECT_PAGE)) return false;
        chosen = m_chosen;
        return true;
    }

private:
    void OnInitDialog() override {
        m_bigIcon = static_cast<HICON>(LoadImageA(OwnModule(), MAKEINTRESOURCEA(IDI_LINK_SITE), IMAGE_ICON,
                                                  GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON), 0));
        m_smallIcon = static_cast<HICON>(LoadImageA(OwnModule(), MAKEINTRESOURCEA(IDI_LINK_SITE), IMAGE_ICON,
                                                    GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), 0));
        SendMessageA(m_dialog, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(m_bigIcon));
        SendMessageA(m_dialog, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(m_smallIcon));
        m_images = LoadSmallIcons({IDI_LINK_SITE, IDI_LINK_PAGE, IDI_LINK_FOLDER});
        TreeView_SetImageList(m_tree, m_images, TVSIL_NORMAL);

        // What the picker opens by itself is not the user's choice of folder.
        m_initialising = true;
        m_root = InsertItem(TVI_ROOT, "Web Site", kSiteImage, nullptr);
        if (m_request.site) AddChildren(m_request.site->GetRoot(), m_root);
        TreeView_Expand(m_tree, m_root, TVE_EXPAND);
        SelectInitialItem();
        m_initialising = false;
    }

    // The page named by the current page text, else the folder expanded last.
    void SelectInitialItem() {
        const std::string& current = m_request.currentPage;
        if (!current.empty() && current != kChoosePageHint) {
            if (HTREEITEM item = FindItemByText(m_tree, current)) TreeView_SelectItem(m_tree, item);
            return;
        }
        std::string last = CurrentHostSettings().GetString(kSettingsSection, kLastExpandedEntry);
        if (last.empty()) return;
        if (HTREEITEM item = FindItemByText(m_tree, last)) {
            TreeView_EnsureVisible(m_tree, item);
            TreeView_Expand(m_tree, item, TVE_EXPAND);
        }
    }

    HTREEITEM InsertItem(HTREEITEM parent, const std::string& text, int image, CXmlElement* node) {
        return InsertTreeItem(m_tree, parent, TVI_LAST, text, image, reinterpret_cast<LPARAM>(node));
    }

    // Folders and pages below element, under item; without recursion, so
    // any depth is safe.
    void AddChildren(CXmlElement* element, HTREEITEM item) {
        std::vector<std::pair<CXmlElement*, HTREEITEM>> pending{{element, item}};
        while (!pending.empty()) {
            auto [parent, parentItem] = pending.back();
            pending.pop_back();
            // Children are pushed in reverse so they are taken in document order.
            std::vector<std::pair<CXmlElement*, HTREEITEM>> next;
            for (std::size_t i = 0; i < parent->GetChildCount(); ++i) {
                CXmlElement* node = parent->GetChild(i);
                node->SetName(ascii::Lower(node->GetName()));
                bool folder = node->GetName() == "folder";
                if (!folder && node->GetName() != "page") continue;
                HTREEITEM added =
                    InsertItem(parentItem, node->GetAttribute("name"), folder ? kFolderImage : kPageImage, node);
                if (added) next.push_back({node, added});
            }
            pending.insert(pending.end(), next.rbegin(), next.rend());
        }
    }

    void OnTreeNotify(NMHDR* header) override {
        switch (header->code) {
            case TVN_ITEMEXPANDEDA:
            case TVN_ITEMEXPANDEDW: {
                auto* view = reinterpret_cast<NMTREEVIEWA*>(header);
                if (!m_initialising && (view->action & TVE_EXPAND) && view->itemNew.hItem != m_root)
                    CurrentHostSettings().WriteString(kSettingsSection, kLastExpandedEntry,
                                                      TreeItemText(m_tree, view->itemNew.hItem));
                break;
            }
            case TVN_SELCHANGEDA:
            case TVN_SELCHANGEDW: {
                auto* view = reinterpret_cast<NMTREEVIEWA*>(header);
                bool enable = m_request.allowFolders || !IsFolder(ItemNode(m_tree, view->itemNew.hItem));
                EnableWindow(GetDlgItem(m_dialog, IDOK), enable);
                break;
            }
        }
    }

    void OnOK() override {
        HTREEITEM selected = TreeView_GetSelection(m_tree);
        if (!selected || selected == m_root) return;
        CXmlElement* node = ItemNode(m_tree, selected);
        if (!node || (!m_request.allowFolders && IsFolder(node))) return;
        m_chosen = node;
        EndDialog(m_dialog, IDOK);
    }

    const PagePickerRequest& m_request;
    HTREEITEM m_root = nullptr;
    bool m_initialising = false;
    HICON m_bigIcon = nullptr;
    HICON m_smallIcon = nullptr;
    CXmlElement* m_chosen = nullptr;
};

}  // namespace

bool RunPagePicker(HWND parent, const PagePickerRequest& request, CXmlElement*& chosen) {
    CPagePicker picker(request);
    return picker.Run(parent, chosen);
}
