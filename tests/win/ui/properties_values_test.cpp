// The text forms the Properties dialog reads and writes: colours, and the
// order in which font names are listed.
#include <windows.h>

#include <gtest/gtest.h>

#include "grid/color_text.h"
#include "ui/font_list.h"

TEST(PropertiesColor, ReadsTheDigitsAfterTheFirstNumberSign) {
    EXPECT_EQ(ParseColorAfterHash("#FF8000"), RGB(255, 128, 0));
    EXPECT_EQ(ParseColorAfterHash("#ff8000"), RGB(255, 128, 0));
    EXPECT_EQ(ParseColorAfterHash("x#00ff00"), RGB(0, 255, 0));
    EXPECT_EQ(ParseColorAfterHash("#0000FF#FF0000"), RGB(0, 0, 255));
    EXPECT_EQ(ParseColorAfterHash("#F0"), RGB(0, 0, 0xF0));  // a short number is 0xRRGGBB all the same
    EXPECT_EQ(ParseColorAfterHash("#12345zz"), RGB(0x01, 0x23, 0x45));
    EXPECT_EQ(ParseColorAfterHash("red"), static_cast<COLORREF>(-1));
    EXPECT_EQ(ParseColorAfterHash(""), static_cast<COLORREF>(-1));
}

TEST(PropertiesFontList, NamesGoAfterTheLastLowerOrEqualEntry) {
    std::vector<std::string> faces;
    for (const char* name : {"Tahoma", "Arial", "Verdana", "Courier New", "Arial", "Zapf"}) InsertFaceName(faces, name);
    // "Arial" sorted before everything listed when it came, so it went last,
    // after "Tahoma"; from then on names go after the last entry from the end
    // that is lower or equal, duplicates included.
    EXPECT_EQ(faces, (std::vector<std::string>{"Tahoma", "Arial", "Arial", "Courier New", "Verdana", "Zapf"}));
}

TEST(PropertiesFontList, OnlyPlainTrueTypeFacesAreOffered) {
    LOGFONTA font{};
    lstrcpyA(font.lfFaceName, "Arial");
    font.lfCharSet = ANSI_CHARSET;
    EXPECT_TRUE(IsOfferedFace(font, TRUETYPE_FONTTYPE));
    EXPECT_FALSE(IsOfferedFace(font, TRUETYPE_FONTTYPE | DEVICE_FONTTYPE));
    EXPECT_FALSE(IsOfferedFace(font, RASTER_FONTTYPE));
    font.lfCharSet = SYMBOL_CHARSET;
    EXPECT_FALSE(IsOfferedFace(font, TRUETYPE_FONTTYPE));
    font.lfCharSet = ANSI_CHARSET;
    lstrcpyA(font.lfFaceName, "@MS Gothic");
    EXPECT_FALSE(IsOfferedFace(font, TRUETYPE_FONTTYPE));
}
