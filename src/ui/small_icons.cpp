#include "ui/small_icons.h"

#include "platform/own_module.h"

int SmallIconSize() {
    HDC screen = GetDC(nullptr);
    int dpi = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 96;
    if (screen) ReleaseDC(nullptr, screen);
    return MulDiv(16, dpi > 0 ? dpi : 96, 96);
}

HIMAGELIST LoadSmallIcons(std::initializer_list<int> ids) {
    int size = SmallIconSize();
    HIMAGELIST images = ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, static_cast<int>(ids.size()), 0);
    for (int id : ids) {
        HICON icon = static_cast<HICON>(LoadImageA(OwnModule(), MAKEINTRESOURCEA(id), IMAGE_ICON, size, size, 0));
        ImageList_AddIcon(images, icon);
        if (icon) DestroyIcon(icon);
    }
    return images;
}
