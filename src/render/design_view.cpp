#include "render/design_view.h"

#include <algorithm>

#include "html/definition_model.h"
#include "render/html_snapshot.h"
#include "render/placeholder_drawing.h"
#include "render/preview_image.h"

void DrawDesignView(HDC dc, const RECT& rect, int renderMethod, std::string_view text, CPreviewImage& preview,
                    CHtmlSnapshot& snapshot) {
    RECT r = {std::min(rect.left, rect.right), std::min(rect.top, rect.bottom), std::max(rect.left, rect.right),
              std::max(rect.top, rect.bottom)};
    switch (static_cast<RenderMethod>(renderMethod)) {
        case RenderMethod::kPlaceholder: DrawPlaceholder(dc, r, text); break;
        case RenderMethod::kPreviewPicture:
            if (preview.IsLoaded()) preview.Draw(dc, r);
            break;
        case RenderMethod::kHtmlSnapshot: snapshot.DrawSnapshot(dc, r); break;
        default: break;
    }
}
