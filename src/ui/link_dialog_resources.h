#pragma once
// Resource names and control ids of the Files, URL, Select Page and Select
// Link from Favorites dialogs. Included by the resource script as well, so
// plain #defines only.

#define PW_DIALOG_FILES "Files"
#define PW_DIALOG_URL "URL"
#define PW_DIALOG_SELECT_PAGE "Select Page"
#define PW_DIALOG_SELECT_FAVORITE "Select Link from Favorites"

// Shared by the Files and URL dialogs.
#define IDC_LINK_TYPE 148
#define IDC_LINK 149
#define IDC_TARGET 150
#define IDC_SELECT_PAGE 192
#define IDC_LINK_LABEL 205
#define IDC_FAVORITES 262
#define IDC_TARGET_LABEL 426
#define IDC_PAGE_DISPLAY 434

// Files only.
#define IDC_TITLE 108
#define IDC_IMAGE_LIST 287
#define IDC_MOVE_UP 291
#define IDC_MOVE_DOWN 292
#define IDC_REMOVE_ALL 303
#define IDC_ADD 1239
#define IDC_REMOVE 1347
#define IDC_DESCRIPTION 5022
// Labels and groups of the Files dialog, named so that they move when it is resized.
#define IDC_FILES_GENERAL_GROUP 5101
#define IDC_FILES_LINK_GROUP 5102
#define IDC_TITLE_LABEL 5103
#define IDC_DESCRIPTION_LABEL 5104
#define IDC_LINK_TYPE_LABEL 5105

// The pickers' trees (the favourites tree shares its id with the button
// that opens it).
#define IDC_PAGE_TREE 1006
#define IDC_FAVORITES_TREE 262

// 16 by 16 icons of the pickers (with 32 by 32 images for the page
// picker's caption and task switcher).
#define IDI_LINK_SITE 2101
#define IDI_LINK_PAGE 2102
#define IDI_LINK_FOLDER 2103
#define IDI_LINK_SHORTCUT 2104
