#include "ui/picker_tree.h"

#include "platform/own_module.h"

HIMAGELIST LoadSmallIcons(std::initializer_list<int> ids, int dpi) {
    int size = MulDiv(16, dpi, 96);
    HIMAGELIST images = ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, static_cast<int>(ids.size()), 0);
    for (int id : ids) {
        HICON icon = static_cast<HICON>(LoadImageA(OwnModule(), MAKEINTRESOURCEA(id), IMAGE_ICON, size, size, 0));
        ImageList_AddIcon(images, icon);
        if (icon) DestroyIcon(icon);
    }
    return images;
}

HTREEITEM InsertTreeItem(HWND tree, HTREEITEM parent, HTREEITEM after, const std::string& text, int image,
                         LPARAM data) {
    TVINSERTSTRUCTA insert = {};
    insert.hParent = parent;
    insert.hInsertAfter = after;
    insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
    insert.item.pszText = const_cast<char*>(text.c_str());
    insert.item.iImage = insert.item.iSelectedImage = image;
    insert.item.lParam = data;
    return reinterpret_cast<HTREEITEM>(SendMessageA(tree, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insert)));
}

std::string TreeItemText(HWND tree, HTREEITEM item) {
    char text[512] = {};
    TVITEMA tv = {};
    tv.mask = TVIF_TEXT;
    tv.hItem = item;
    tv.pszText = text;
    tv.cchTextMax = sizeof text;
    TreeView_GetItem(tree, &tv);
    return text;
}

LPARAM TreeItemData(HWND tree, HTREEITEM item) {
    TVITEMA tv = {};
    tv.mask = TVIF_PARAM;
    tv.hItem = item;
    if (!item || !TreeView_GetItem(tree, &tv)) return 0;
    return tv.lParam;
}
