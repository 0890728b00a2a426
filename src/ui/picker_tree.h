#pragma once
// What the two pickers (Select Page, Select Link from Favorites) share about
// their tree views: the icons, 16 x 16 at 96 DPI and scaled with the DPI like
// the rest of the dialogs, and inserting and reading items.
#include <windows.h>

#include <commctrl.h>

#include <initializer_list>
#include <string>

#include "grid/paint_manager.h"  // ScreenDpi

// An image list of the icons with the given resource ids, in that order, at
// the size for dpi; the caller destroys it.
HIMAGELIST LoadSmallIcons(std::initializer_list<int> ids, int dpi = ScreenDpi());

// Inserts an item with its text, image (selected or not) and data.
HTREEITEM InsertTreeItem(HWND tree, HTREEITEM parent, HTREEITEM after, const std::string& text, int image, LPARAM data);
std::string TreeItemText(HWND tree, HTREEITEM item);
// The item's data; 0 for no item.
LPARAM TreeItemData(HWND tree, HTREEITEM item);
