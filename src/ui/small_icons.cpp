#include "ui/small_icons.h"

#include "platform/own_module.h"

int ScreenDpi() {
    HDC screen = GetDC(nullptr);
    int dpi = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 0;
    if (screen) ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : 96;
}

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
