#include "render/design_view.h"

#include <algorithm>

#include "render/html_snapshot.h"
#include "render/placeholder_drawing.h"
#include "render/preview_image.h"

void DrawDesignView(HDC dc, const RECT& rect, int renderMethod, std::string_view text, CPreviewImage& preview,
                    CHtmlSnapshot& snapshot) {
    RECT r = {std::min(rect.left, rect.right), std::min(rect.top, rect.bottom), std::max(rect.left, rect.right),
              std::max(rect.top, rect.bottom)};
    switch (renderMethod) {
        case 0:
            DrawPlaceholder(dc, r, text);
            break;
        case 1:
            if (preview.IsLoaded()) preview.Draw(dc, r);
            break;
        case 2:
            snapshot.DrawSnapshot(dc, r);
            break;
        default:
            break;
    }
}
