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
#include "xml/ascii.h"
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

class ImageListDialog {
public:
    ImageListDialog(std::string text, CXmlDocument* site) : imageListText_(std::move(text)), site_(site) {}

    bool Run(HWND parent, std::string& text) {
        INT_PTR result = RunModalDialog(parent, PW_DIALOG_FILES, this);
        if (result != IDOK) return false;
        text = imageListText_;
        return true;
    }

private:
    // One row's data; owned by the row (its item data) and freed with it.
    using ImageRecord = ImageListEntry;

public:
    // The dialog procedure, called through RunModalDialog.
    INT_PTR OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
        if (layout_.HandleMessage(message, wParam, lParam)) return FALSE;
        switch (message) {
            case WM_INITDIALOG:
                OnInitDialog(dialog);
                return TRUE;
            case WM_COMMAND:
                OnCommand(LOWORD(wParam), HIWORD(wParam));
                return TRUE;
            case WM_NOTIFY:
                OnNotify(reinterpret_cast<NMHDR*>(lParam));
                return FALSE;
            case WM_DESTROY:
                // The rows' records go with the rows.
                ListView_DeleteAllItems(list_);
                return FALSE;
        }
        return FALSE;
    }

private:

    // --- initialisation ----------------------------------------------------------

    void OnInitDialog(HWND dialog) {
        dialog_ = dialog;
        list_ = GetDlgItem(dialog, IDC_IMAGE_LIST);
        // A larger dialog gives the list the room; the row fields below it
        // move down and widen, the buttons keep to the right edge.
        const unsigned down = kAnchorTopEdge, downWide = kAnchorTopEdge | kAnchorRightEdge,
                       right = kAnchorLeftEdge, corner = kAnchorLeftEdge | kAnchorTopEdge;
        layout_.SetUp(dialog, {{IDC_IMAGE_LIST, kAnchorRightEdge | kAnchorBottomEdge},
                               {IDC_ADD, right}, {IDC_REMOVE, right}, {IDC_REMOVE_ALL, right},
                               {IDC_MOVE_UP, right}, {IDC_MOVE_DOWN, right},
                               {IDC_FILES_GENERAL_GROUP, downWide | kAnchorRepaint}, {IDC_TITLE_LABEL, down},
                               {IDC_TITLE, downWide}, {IDC_DESCRIPTION_LABEL, down}, {IDC_DESCRIPTION, downWide},
                               {IDC_FILES_LINK_GROUP, downWide | kAnchorRepaint}, {IDC_LINK_TYPE_LABEL, down},
                               {IDC_LINK_TYPE, down}, {IDC_LINK_LABEL, down}, {IDC_LINK, downWide},
                               {IDC_PAGE_DISPLAY, downWide}, {IDC_FAVORITES, corner}, {IDC_SELECT_PAGE, corner},
                               {IDC_TARGET_LABEL, down}, {IDC_TARGET, downWide}, {IDOK, corner},
                               {IDCANCEL, corner}});
        FillLinkTypeList(dialog);
        for (const char* target : {"_blank", "_self", "_parent", "_top"})
            SendDlgItemMessageA(dialog, IDC_TARGET, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(target));
        history_.LoadHistory(GetDlgItem(dialog, IDC_LINK), CurrentHostSettings(), "URL_History");
        EnableRowFields(false);

        LVCOLUMNA column = {};
        column.mask = LVCF_TEXT | LVCF_FMT;
        column.fmt = LVCFMT_LEFT;
        column.pszText = const_cast<char*>("Filename");
        SendMessageA(list_, LVM_INSERTCOLUMNA, 0, reinterpret_cast<LPARAM>(&column));
        ListView_SetExtendedListViewStyle(list_, ListView_GetExtendedListViewStyle(list_) | LVS_EX_FULLROWSELECT);

        CXmlDocument images;
        images.Parse(imageListText_);
        CXmlElement* root = images.GetRoot();
        for (std::size_t i = 0; i < root->GetChildCount(); ++i) {
            CXmlElement* image = root->GetChild(i);
            if (!ascii::EqualsNoCase(image->GetName(), "IMAGE")) continue;
            auto record = std::make_unique<ImageRecord>();
            record->fileName = images.GetChildValue(image, "FILENAME");
            record->title = images.GetChildValue(image, "TITLE");
            record->description = images.GetChildValue(image, "DESCRIPTION");
            record->link = images.GetChildValue(image, "URL");
            record->target = images.GetChildValue(image, "TARGET");
            InsertRow(ListView_GetItemCount(list_), std::move(record));
        }
        SizeColumnsToFit();
    }

    void SizeColumnsToFit() {
        SendMessageA(list_, WM_SETREDRAW, FALSE, 0);
        HWND header = ListView_GetHeader(list_);
        int columns = header ? Header_GetItemCount(header) : 1;
        for (int c = 0; c < columns; ++c) {
            ListView_SetColumnWidth(list_, c, LVSCW_AUTOSIZE);
            int contents = ListView_GetColumnWidth(list_, c);
            ListView_SetColumnWidth(list_, c, LVSCW_AUTOSIZE_USEHEADER);
            int withHeader = ListView_GetColumnWidth(list_, c);
            int width = contents > withHeader ? contents : withHeader;
            ListView_SetColumnWidth(list_, c, width > kMinimumColumnWidth ? width : kMinimumColumnWidth);
        }
        SendMessageA(list_, WM_SETREDRAW, TRUE, 0);
    }

    // --- rows and records --------------------------------------------------------

    int InsertRow(int index, std::unique_ptr<ImageRecord> record) {
        LVITEMA item = {};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = index;
        item.pszText = const_cast<char*>(record->fileName.c_str());
        item.lParam = reinterpret_cast<LPARAM>(record.get());
        int at = static_cast<int>(SendMessageA(list_, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)));
        if (at >= 0) record.release();
        return at;
    }

    ImageRecord* RecordOf(int row) const {
        if (row < 0) return nullptr;
        LVITEMA item = {};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        if (!SendMessageA(list_, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item))) return nullptr;
        return reinterpret_cast<ImageRecord*>(item.lParam);
    }

    int FirstSelectedRow() const { return ListView_GetNextItem(list_, -1, LVNI_SELECTED); }
    // The row whose record the fields show: the first one both selected and
    // focused.
    int CurrentRow() const { return ListView_GetNextItem(list_, -1, LVNI_SELECTED | LVNI_FOCUSED); }
    // The record that edits of the fields go to; none while the fields are
    // being filled from a record.
    ImageRecord* SelectedRecord() const { return writing_ ? nullptr : RecordOf(CurrentRow()); }

    // --- commands ----------------------------------------------------------------

    void OnCommand(int id, int code) {
        switch (id) {
            case IDC_ADD: if (code == BN_CLICKED) AddFiles(); break;
            case IDC_REMOVE: if (code == BN_CLICKED) RemoveSelected(); break;
            case IDC_REMOVE_ALL:
                if (code == BN_CLICKED) {
                    ListView_DeleteAllItems(list_);
                    ShowSelectedRow();
                }
                break;
            case IDC_MOVE_UP: if (code == BN_CLICKED) MoveSelected(-1); break;
            case IDC_MOVE_DOWN: if (code == BN_CLICKED) MoveSelected(+1); break;
            case IDC_TITLE:
                if (code == EN_CHANGE)
                    if (ImageRecord* record = SelectedRecord()) record->title = GetControlText(dialog_, IDC_TITLE);
                break;
            case IDC_DESCRIPTION:
                if (code == EN_CHANGE)
                    if (ImageRecord* record = SelectedRecord())
                        record->description = GetControlText(dialog_, IDC_DESCRIPTION);
                break;
            case IDC_LINK_TYPE:
                if (code == CBN_SELCHANGE) {
                    ReadFields();
                    ApplyLinkType(dialog_, fields_, fields_.type);
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
            case IDC_FAVORITES: if (code == BN_CLICKED) ChooseFavorite(); break;
            case IDC_SELECT_PAGE: if (code == BN_CLICKED) SelectPage(); break;
            case IDOK: OnOK(); break;
            case IDCANCEL: EndDialog(dialog_, IDCANCEL); break;
        }
    }

    // The typed text, or on a selection change the chosen entry (the edit
    // part is updated only after the notification).
    std::string ComboText(int id, int code) const {
        HWND combo = GetDlgItem(dialog_, id);
        if (code == CBN_SELCHANGE) {
            LRESULT selected = SendMessageA(combo, CB_GETCURSEL, 0, 0);
            LRESULT length = selected == CB_ERR ? CB_ERR : SendMessageA(combo, CB_GETLBTEXTLEN, selected, 0);
            if (length != CB_ERR) {
                std::vector<char> text(static_cast<std::size_t>(length) + 1);
                SendMessageA(combo, CB_GETLBTEXT, selected, reinterpret_cast<LPARAM>(text.data()));
                return text.data();
            }
        }
        return GetControlText(dialog_, id);
    }

    void AddFiles() {
        std::vector<char> names(kFileNameBufferSize, 0);
        OPENFILENAMEA request = {};
        request.lStructSize = sizeof request;
        request.hwndOwner = dialog_;
        request.lpstrFilter = kImageFilter;
        request.nFilterIndex = 1;
        request.lpstrFile = names.data();
        request.nMaxFile = kFileNameBufferSize;
        request.lpstrTitle = "Select one or more files";
        request.Flags = OFN_ALLOWMULTISELECT | OFN_EXPLORER | OFN_NOVALIDATE | OFN_HIDEREADONLY;
        DWORD error = 0;
        if (!ShowOpenFileDialog(request, error)) {
            if (error == FNERR_BUFFERTOOSMALL) MessageBoxA(dialog_, "Too many files selected!", nullptr, MB_OK);
            return;
        }
        for (const std::string& path : SelectedPaths(names.data(), names.size())) {
            auto record = std::make_unique<ImageRecord>();
            record->fileName = path;
            record->title = std::string(PublishedFileName(path));
            InsertRow(ListView_GetItemCount(list_), std::move(record));
        }
    }

    void RemoveSelected() {
        for (int row = ListView_GetItemCount(list_) - 1; row >= 0; --row)
            if (ListView_GetItemState(list_, row, LVIS_SELECTED) & LVIS_SELECTED) ListView_DeleteItem(list_, row);
        ShowSelectedRow();
    }

    // Moves the first selected row one place up (-1) or down (+1). With no
    // selection there is nothing to move.
    void MoveSelected(int step) {
        int row = FirstSelectedRow();
        int count = ListView_GetItemCount(list_);
        if (step < 0 ? row <= 0 : row >= count - 1) return;
        ImageRecord* record = RecordOf(row);
        if (!record) return;
        auto copy = std::make_unique<ImageRecord>(*record);
        ListView_DeleteItem(list_, row);
        int at = InsertRow(row + step, std::move(copy));
        if (at < 0) return;
        ListView_SetItemState(list_, at, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
        ListView_EnsureVisible(list_, at, FALSE);
    }

    void ChooseFavorite() {
        std::string url;
        if (!RunFavoritesPicker(dialog_, url)) return;
        ReadFields();
        fields_.link = url;
        WriteFields();
        if (ImageRecord* record = SelectedRecord()) record->link = fields_.link;
    }

    void SelectPage() {
        ReadFields();
        if (!ChoosePageForLink(dialog_, site_, fields_)) return;
        WriteFields();
        if (ImageRecord* record = SelectedRecord()) record->link = fields_.link;
    }

    void OnOK() {
        std::vector<ImageListEntry> images;
        int count = ListView_GetItemCount(list_);
        for (int row = 0; row < count; ++row)
            if (const ImageRecord* record = RecordOf(row)) images.push_back(*record);
        imageListText_ = WriteImageList(images);
        EndDialog(dialog_, IDOK);
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
            title_.clear();
            description_.clear();
            fields_.link.clear();
            fields_.target.clear();
            EnableRowFields(false);
        } else {
            title_ = record->title;
            description_ = record->description;
            fields_.link = record->link;
            fields_.target = record->target;
            EnableRowFields(true);
        }

        // The page display names this row's page or nothing (not the page of
        // the row shown before).
        LinkTypeDecision decision = DecideLinkType(fields_.link, site_);
        fields_.type = decision.type;
        fields_.pageDisplay = decision.page ? decision.page->GetAttribute("name") : std::string();
        ApplyLinkType(dialog_, fields_, fields_.type);
        WriteFields();
        // The link type enables the controls it uses; without a row none of
        // them has anything to edit.
        if (!record) EnableRowFields(false);
    }

    void EnableRowFields(bool enable) {
        for (int id : {IDC_TITLE, IDC_DESCRIPTION, IDC_LINK_TYPE, IDC_TARGET, IDC_LINK, IDC_FAVORITES, IDC_SELECT_PAGE})
            EnableControl(dialog_, id, enable);
    }

    void ReadFields() {
        title_ = GetControlText(dialog_, IDC_TITLE);
        description_ = GetControlText(dialog_, IDC_DESCRIPTION);
        ReadLinkFields(dialog_, fields_);
    }

    void WriteFields() {
        // Writing the edit boxes raises their change notifications: they
        // must not copy anything into a record meanwhile.
        writing_ = true;
        SetDlgItemTextA(dialog_, IDC_TITLE, title_.c_str());
        SetDlgItemTextA(dialog_, IDC_DESCRIPTION, description_.c_str());
        WriteLinkFields(dialog_, fields_);
        writing_ = false;
    }

    std::string imageListText_;
    CXmlDocument* site_;
    ResizableDialog layout_;
    HWND dialog_ = nullptr;
    HWND list_ = nullptr;
    LinkHistoryCombo history_;
    std::string title_;
    std::string description_;
    LinkFields fields_;
    bool writing_ = false;
};

}  // namespace

bool RunImageListDialog(HWND parent, std::string& imageListText, CXmlDocument* siteStructure) {
    ImageListDialog dialog(imageListText, siteStructure);
    return dialog.Run(parent, imageListText);
}
