#include "ui/image_list_dialog.h"

#include <commctrl.h>

#include <memory>
#include <vector>

#include "html/image_list.h"
#include "html/published_names.h"
#include "ui/favorites_picker.h"
#include "ui/host_settings.h"
#include "ui/link_dialog_resources.h"
#include "ui/modal_dialog.h"
#include "ui/link_history.h"
#include "ui/link_type.h"
#include "ui/open_file_dialog.h"
#include "ui/resizable_dialog.h"
#include "xml/xml_document.h"

namespace {

constexpr DWORD kFileNameBufferSize = 6500;
constexpr int kMinimumColumnWidth = 10;

// The open-file dialog's filter: pairs of description and pattern. The
// JPEG pattern "*jpeg" has no dot on purpose: it also takes names that
// merely end in "jpeg".
const char kImageFilter[] =
    "Web Images (*.gif,*.jpg,*.jpeg,*.png,*.bmp)\0*.gif;*.jpg;*.jpeg;*.png;*.bmp\0"
    "GIF Images (*.gif)\0*.gif\0"
    "JPG/JPEG Images (*.jpg,*jpeg)\0*.jpg;*jpeg\0"
    "PNG Images (*.png)\0*.png\0"
    "BMP Images (*.bmp)\0*.bmp\0"
    "All Files (*.*)\0*.*\0";

// The full paths of an open-file answer with multiple selection: either one
// full path, or the folder followed by the file names, each ended by a zero.
std::vector<std::string> SelectedPaths(const char* buffer, std::size_t size) {
    std::vector<std::string> parts;
    std::size_t at = 0;
    while (at < size && buffer[at]) {
        std::size_t end = at;
        while (end < size && buffer[end]) ++end;
        parts.emplace_back(buffer + at, end - at);
        at = end + 1;
    }
    if (parts.size() <= 1) return parts;
    std::string folder = parts.front();
    if (folder.back() != '\\') folder += '\\';
    std::vector<std::string> paths;
    for (std::size_t i = 1; i < parts.size(); ++i) paths.push_back(folder + parts[i]);
    return paths;
}

class CImageListDialog {
public:
    CImageListDialog(std::string text, CXmlDocument* site) : m_imageListText(std::move(text)), m_site(site) {}

    bool Run(HWND parent, std::string& text) {
        INT_PTR result = RunModalDialog(parent, PW_DIALOG_FILES, this);
        if (result != IDOK) return false;
        text = m_imageListText;
        return true;
    }

private:
    // One row's data; owned by the row (its item data) and freed with it.
    using ImageRecord = ImageListEntry;

public:
    // The dialog procedure, called through RunModalDialog.
    INT_PTR OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
        if (m_layout.HandleMessage(message, wParam, lParam)) return FALSE;
        switch (message) {
            case WM_INITDIALOG: OnInitDialog(dialog); return TRUE;
            case WM_COMMAND: OnCommand(LOWORD(wParam), HIWORD(wParam)); return TRUE;
            case WM_NOTIFY: OnNotify(reinterpret_cast<NMHDR*>(lParam)); return FALSE;
            case WM_DESTROY:
                // The rows' records go with the rows.
                ListView_DeleteAllItems(m_list);
                return FALSE;
        }
        return FALSE;
    }

private:
    // --- initialisation ----------------------------------------------------------

    void OnInitDialog(HWND dialog) {
        m_dialog = dialog;
        m_list = GetDlgItem(dialog, IDC_IMAGE_LIST);
        // A larger dialog gives the list the room; the row fields below it
        // move down and widen, the buttons keep to the right edge.
        const unsigned down = kAnchorTopEdge, downWide = kAnchorTopEdge | kAnchorRightEdge, right = kAnchorLeftEdge,
                       corner = kAnchorLeftEdge | kAnchorTopEdge;
        m_layout.SetUp(dialog, {{IDC_IMAGE_LIST, kAnchorRightEdge | kAnchorBottomEdge},
                                {IDC_ADD, right},
                                {IDC_REMOVE, right},
                                {IDC_REMOVE_ALL, right},
                                {IDC_MOVE_UP, right},
                                {IDC_MOVE_DOWN, right},
                                {IDC_FILES_GENERAL_GROUP, downWide | kAnchorRepaint},
                                {IDC_TITLE_LABEL, down},
                                {IDC_TITLE, downWide},
                                {IDC_DESCRIPTION_LABEL, down},
                                {IDC_DESCRIPTION, downWide},
                                {IDC_FILES_LINK_GROUP, downWide | kAnchorRepaint},
                                {IDC_LINK_TYPE_LABEL, down},
                                {IDC_LINK_TYPE, down},
                                {IDC_LINK_LABEL, down},
                                {IDC_LINK, downWide},
                                {IDC_PAGE_DISPLAY, downWide},
                                {IDC_FAVORITES, corner},
                                {IDC_SELECT_PAGE, corner},
                                {IDC_TARGET_LABEL, down},
                                {IDC_TARGET, downWide},
                                {IDOK, corner},
                                {IDCANCEL, corner}});
        FillLinkTypeList(dialog);
        for (const char* target : {"_blank", "_self", "_parent", "_top"})
            SendDlgItemMessageA(dialog, IDC_TARGET, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(target));
        m_history.LoadHistory(GetDlgItem(dialog, IDC_LINK), CurrentHostSettings(), "URL_History");
        EnableRowFields(false);

        LVCOLUMNA column = {};
        column.mask = LVCF_TEXT | LVCF_FMT;
        column.fmt = LVCFMT_LEFT;
        column.pszText = const_cast<char*>("Filename");
        SendMessageA(m_list, LVM_INSERTCOLUMNA, 0, reinterpret_cast<LPARAM>(&column));
        ListView_SetExtendedListViewStyle(m_list, ListView_GetExtendedListViewStyle(m_list) | LVS_EX_FULLROWSELECT);

        for (ImageListEntry& image : ReadImageList(m_imageListText))
            InsertRow(ListView_GetItemCount(m_list), std::make_unique<ImageRecord>(std::move(image)));
        SizeColumnsToFit();
    }

    void SizeColumnsToFit() {
        SendMessageA(m_list, WM_SETREDRAW, FALSE, 0);
        HWND header = ListView_GetHeader(m_list);
        int columns = header ? Header_GetItemCount(header) : 1;
        for (int c = 0; c < columns; ++c) {
            ListView_SetColumnWidth(m_list, c, LVSCW_AUTOSIZE);
            int contents = ListView_GetColumnWidth(m_list, c);
            ListView_SetColumnWidth(m_list, c, LVSCW_AUTOSIZE_USEHEADER);
            int withHeader = ListView_GetColumnWidth(m_list, c);
            int width = contents > withHeader ? contents : withHeader;
            ListView_SetColumnWidth(m_list, c, width > kMinimumColumnWidth ? width : kMinimumColumnWidth);
        }
        SendMessageA(m_list, WM_SETREDRAW, TRUE, 0);
    }

    // --- rows and records --------------------------------------------------------

    int InsertRow(int index, std::unique_ptr<ImageRecord> record) {
        LVITEMA item = {};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = index;
        item.pszText = const_cast<char*>(record->fileName.c_str());
        item.lParam = reinterpret_cast<LPARAM>(record.get());
        int at = static_cast<int>(SendMessageA(m_list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)));
        if (at >= 0) record.release();
        return at;
    }

    ImageRecord* RecordOf(int row) const {
        if (row < 0) return nullptr;
        LVITEMA item = {};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        if (!SendMessageA(m_list, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item))) return nullptr;
        return reinterpret_cast<ImageRecord*>(item.lParam);
    }

    int FirstSelectedRow() const { return ListView_GetNextItem(m_list, -1, LVNI_SELECTED); }
    // The row whose record the fields show: the first one both selected and
    // focused.
    int CurrentRow() const { return ListView_GetNextItem(m_list, -1, LVNI_SELECTED | LVNI_FOCUSED); }
    // The record that edits of the fields go to; none while the fields are
    // being filled from a record.
    ImageRecord* SelectedRecord() const { return m_writing ? nullptr : RecordOf(CurrentRow()); }

    // --- commands ----------------------------------------------------------------

    void OnCommand(int id, int code) {
        switch (id) {
            case IDC_ADD:
                if (code == BN_CLICKED) AddFiles();
                break;
            case IDC_REMOVE:
                if (code == BN_CLICKED) RemoveSelected();
                break;
            case IDC_REMOVE_ALL:
                if (code == BN_CLICKED) {
                    ListView_DeleteAllItems(m_list);
                    ShowSelectedRow();
                }
                break;
            case IDC_MOVE_UP:
                if (code == BN_CLICKED) MoveSelected(-1);
                break;
            case IDC_MOVE_DOWN:
                if (code == BN_CLICKED) MoveSelected(+1);
                break;
            case IDC_TITLE:
                if (code == EN_CHANGE)
                    if (ImageRecord* record = SelectedRecord()) record->title = GetControlText(m_dialog, IDC_TITLE);
                break;
            case IDC_DESCRIPTION:
                if (code == EN_CHANGE)
                    if (ImageRecord* record = SelectedRecord())
                        record->description = GetControlText(m_dialog, IDC_DESCRIPTION);
                break;
            case IDC_LINK_TYPE:
                if (code == CBN_SELCHANGE) {
                    ReadFields();
                    ApplyLinkType(m_dialog, m_fields, m_fields.type);
                    WriteFields();
                }
                break;
            case IDC_LINK:
                if (code == CBN_EDITCHANGE || code == CBN_SELCHANGE)
                    if (ImageRecord* record = SelectedRecord()) record->link = ComboText(IDC_LINK, code);
                break;
            case IDC_TARGET:
                if (code == CBN_EDITCHANGE || code == CBN_SELCHANGE)
                    if (ImageRecord* record = SelectedRecord()) record->target = ComboText(IDC_TARGET, code);
                break;
            case IDC_FAVORITES:
                if (code == BN_CLICKED) ChooseFavorite();
                break;
            case IDC_SELECT_PAGE:
                if (code == BN_CLICKED) SelectPage();
                break;
            case IDOK: OnOK(); break;
            case IDCANCEL: EndDialog(m_dialog, IDCANCEL); break;
        }
    }

    // The typed text, or on a selection change the chosen entry (the edit
    // part is updated only after the notification).
    std::string ComboText(int id, int code) const {
        HWND combo = GetDlgItem(m_dialog, id);
        if (code == CBN_SELCHANGE) {
            LRESULT selected = SendMessageA(combo, CB_GETCURSEL, 0, 0);
            LRESULT length = selected == CB_ERR ? CB_ERR : SendMessageA(combo, CB_GETLBTEXTLEN, selected, 0);
            if (length != CB_ERR) {
                std::vector<char> text(static_cast<std::size_t>(length) + 1);
                SendMessageA(combo, CB_GETLBTEXT, selected, reinterpret_cast<LPARAM>(text.data()));
                return text.data();
            }
        }
        return GetControlText(m_dialog, id);
    }

    void AddFiles() {
        std::vector<char> names(kFileNameBufferSize, 0);
        OPENFILENAMEA request = {};
        request.lStructSize = sizeof request;
        request.hwndOwner = m_dialog;
        request.lpstrFilter = kImageFilter;
        request.nFilterIndex = 1;
        request.lpstrFile = names.data();
        request.nMaxFile = kFileNameBufferSize;
        request.lpstrTitle = "Select one or more files";
        request.Flags = OFN_ALLOWMULTISELECT | OFN_EXPLORER | OFN_NOVALIDATE | OFN_HIDEREADONLY;
        DWORD error = 0;
        if (!ShowOpenFileDialog(request, error)) {
            if (error == FNERR_BUFFERTOOSMALL) MessageBoxA(m_dialog, "Too many files selected!", nullptr, MB_OK);
            return;
        }
        for (const std::string& path : SelectedPaths(names.data(), names.size())) {
            auto record = std::make_unique<ImageRecord>();
            record->fileName = path;
            record->title = std::string(PublishedFileName(path));
            InsertRow(ListView_GetItemCount(m_list), std::move(record));
        }
    }

    void RemoveSelected() {
        for (int row = ListView_GetItemCount(m_list) - 1; row >= 0; --row)
            if (ListView_GetItemState(m_list, row, LVIS_SELECTED) & LVIS_SELECTED) ListView_DeleteItem(m_list, row);
        ShowSelectedRow();
    }

    // Moves the first selected row one place up (-1) or down (+1). With no
    // selection there is nothing to move.
    void MoveSelected(int step) {
        int row = FirstSelectedRow();
        int count = ListView_GetItemCount(m_list);
        if (step < 0 ? row <= 0 : row >= count - 1) return;
        ImageRecord* record = RecordOf(row);
        if (!record) return;
        auto copy = std::make_unique<ImageRecord>(*record);
        ListView_DeleteItem(m_list, row);
        int at = InsertRow(row + step, std::move(copy));
        if (at < 0) return;
        ListView_SetItemState(m_list, at, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
        ListView_EnsureVisible(m_list, at, FALSE);
    }

    void ChooseFavorite() {
        std::string url;
        if (!RunFavoritesPicker(m_dialog, url)) return;
        ReadFields();
        m_fields.link = url;
        WriteFields();
        if (ImageRecord* record = SelectedRecord()) record->link = m_fields.link;
    }

    void SelectPage() {
        ReadFields();
        if (!ChoosePageForLink(m_dialog, m_site, m_fields)) return;
        WriteFields();
        if (ImageRecord* record = SelectedRecord()) record->link = m_fields.link;
    }

    void OnOK() {
        std::vector<ImageListEntry> images;
        int count = ListView_GetItemCount(m_list);
        for (int row = 0; row < count; ++row)
            if (const ImageRecord* record = RecordOf(row)) images.push_back(*record);
        m_imageListText = WriteImageList(images);
        EndDialog(m_dialog, IDOK);
    }

    // --- the selected row's fields -------------------------------------------------

    void OnNotify(NMHDR* header) {
        if (header->idFrom != IDC_IMAGE_LIST) return;
        auto* view = reinterpret_cast<NMLISTVIEW*>(header);
        if (header->code == LVN_DELETEITEM) {
            delete reinterpret_cast<ImageRecord*>(view->lParam);
        } else if (header->code == LVN_ITEMCHANGED) {
            ShowSelectedRow();
        }
    }

    void ShowSelectedRow() {
        const ImageRecord* record = RecordOf(CurrentRow());
        if (!record) {
            m_title.clear();
            m_description.clear();
            m_fields.link.clear();
            m_fields.target.clear();
            EnableRowFields(false);
        } else {
            m_title = record->title;
            m_description = record->description;
            m_fields.link = record->link;
            m_fields.target = record->target;
            EnableRowFields(true);
        }

        // The page display names this row's page or nothing (not the page of
        // the row shown before).
        LinkTypeDecision decision = DecideLinkType(m_fields.link, m_site);
        m_fields.type = decision.type;
        m_fields.pageDisplay = decision.page ? decision.page->GetAttribute("name") : std::string();
        ApplyLinkType(m_dialog, m_fields, m_fields.type);
        WriteFields();
        // The link type enables the controls it uses; without a row none of
        // them has anything to edit.
        if (!record) EnableRowFields(false);
    }

    void EnableRowFields(bool enable) {
        for (int id : {IDC_TITLE, IDC_DESCRIPTION, IDC_LINK_TYPE, IDC_TARGET, IDC_LINK, IDC_FAVORITES, IDC_SELECT_PAGE})
            EnableControl(m_dialog, id, enable);
    }

    void ReadFields() {
        m_title = GetControlText(m_dialog, IDC_TITLE);
        m_description = GetControlText(m_dialog, IDC_DESCRIPTION);
        ReadLinkFields(m_dialog, m_fields);
    }

    void WriteFields() {
        // Writing the edit boxes raises their change notifications: they
        // must not copy anything into a record meanwhile.
        m_writing = true;
        SetDlgItemTextA(m_dialog, IDC_TITLE, m_title.c_str());
        SetDlgItemTextA(m_dialog, IDC_DESCRIPTION, m_description.c_str());
        WriteLinkFields(m_dialog, m_fields);
        m_writing = false;
    }

    std::string m_imageListText;
    CXmlDocument* m_site;
    CResizableDialog m_layout;
    HWND m_dialog = nullptr;
    HWND m_list = nullptr;
    CLinkHistoryCombo m_history;
    std::string m_title;
    std::string m_description;
    LinkFields m_fields;
    bool m_writing = false;
};

}  // namespace

bool RunImageListDialog(HWND parent, std::string& imageListText, CXmlDocument* siteStructure) {
    CImageListDialog dialog(imageListText, siteStructure);
    return dialog.Run(parent, imageListText);
}
