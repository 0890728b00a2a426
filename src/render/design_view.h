#pragma once
// What Draw shows in the host's design view, chosen by the definition's
// render method: 0 the placeholder with the extension's text, 1 the preview
// picture when it holds one, 2 the last HTML snapshot (nothing while none
// has finished loading), anything else nothing at all. The rectangle is
// normalised first.
#include <windows.h>

#include <string_view>

class CHtmlSnapshot;
class CPreviewImage;

void DrawDesignView(HDC dc, const RECT& rect, int renderMethod, std::string_view text, CPreviewImage& preview,
                    CHtmlSnapshot& snapshot);
