#include "ui/font_list.h"

#include <mbstring.h>

void InsertFaceName(std::vector<std::string>& faces, const std::string& name) {
    const auto* key = reinterpret_cast<const unsigned char*>(name.c_str());
    for (std::size_t i = faces.size(); i-- > 0;) {
        if (_mbscmp(reinterpret_cast<const unsigned char*>(faces[i].c_str()), key) <= 0) {
            faces.insert(faces.begin() + static_cast<std::ptrdiff_t>(i) + 1, name);
            return;
        }
    }
    faces.push_back(name);
}

bool IsOfferedFace(const LOGFONTA& font, DWORD fontType) {
    return fontType == TRUETYPE_FONTTYPE && font.lfCharSet != SYMBOL_CHARSET && font.lfFaceName[0] != '@';
}

namespace {
int CALLBACK CollectFace(const LOGFONTA* font, const TEXTMETRICA*, DWORD fontType, LPARAM data) {
    if (IsOfferedFace(*font, fontType))
        InsertFaceName(*reinterpret_cast<std::vector<std::string>*>(data), font->lfFaceName);
    return 1;
}
}  // namespace

std::vector<std::string> EnumerateFaceNames(HWND window) {
    std::vector<std::string> faces;
    HDC dc = GetDC(window);
    if (!dc) return faces;
    EnumFontsA(dc, nullptr, CollectFace, reinterpret_cast<LPARAM>(&faces));
    ReleaseDC(window, dc);
    return faces;
}
