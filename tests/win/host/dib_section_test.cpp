// CDibSection: rows and orientation, the three ways of drawing, loading
// through GDI+, and drawing where the image library is missing.
#include <windows.h>

#include <gtest/gtest.h>

#include "render/blend_functions.h"
#include "render/dib_section.h"
#include "render/gdiplus_runtime.h"
#include "test_pictures.h"

using namespace test_pictures;

namespace {

// Sets a 32-bit pixel through the DIB's own row addressing (0xAARRGGBB).
void Set(CDibSection& dib, int x, int y, std::uint32_t argb) {
    reinterpret_cast<std::uint32_t*>(dib.TopRow() + y * dib.RowStep())[x] = argb;
}

bool ImageLibraryIsPresent() {
    HMODULE library = LoadLibraryA("MSIMG32.DLL");
    if (library) FreeLibrary(library);
    return library != nullptr;
}

std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

// The loaded DIB's pixels as 0xAARRGGBB (32 bits) or 0xRRGGBB (24 bits).
std::uint32_t Pixel(const CDibSection& dib, int x, int y) {
    const std::uint8_t* p = dib.TopRow() + y * dib.RowStep() + x * dib.BitsPerPixel() / 8;
    std::uint32_t rgb = std::uint32_t(p[2]) << 16 | std::uint32_t(p[1]) << 8 | p[0];
    return dib.BitsPerPixel() == 32 ? rgb | std::uint32_t(p[3]) << 24 : rgb;
}

TEST(CDibSection, RowsRunTopDownWhateverTheOrientation) {
    for (int height : {3, -3}) {
        CDibSection dib;
        ASSERT_TRUE(dib.Create(2, height, 32));
        EXPECT_EQ(dib.Width(), 2);
        EXPECT_EQ(dib.Height(), 3);
        EXPECT_EQ(dib.RowStep(), height > 0 ? -8 : 8);
        Set(dib, 1, 0, 0xFF0000);  // top right red
        Set(dib, 0, 2, 0x0000FF);  // bottom left blue
        Surface surface(4, 4);
        EXPECT_TRUE(dib.Draw(surface.Dc(), 1, 1, 2, 3, 0, 0, 2, 3));
        EXPECT_EQ(surface.At(2, 1), 0xFF0000u) << height;
        EXPECT_EQ(surface.At(1, 3), 0x0000FFu) << height;
        EXPECT_TRUE(surface.WhiteOutside(1, 1, 3, 4));
    }
    // 24 bits: rows padded to four bytes.
    CDibSection narrow;
    ASSERT_TRUE(narrow.Create(3, -2, 24));
    EXPECT_EQ(narrow.RowStep(), 12);
}

TEST(CDibSection, DeviceDependentBitmapHasNoRows) {
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 5, 4);
    ReleaseDC(nullptr, screen);
    CDibSection dib;
    dib.SetTransparentColour(RGB(1, 2, 3));
    dib.Attach(bitmap);
    EXPECT_FALSE(dib.IsDibSection());
    EXPECT_EQ(dib.TopRow(), nullptr);
    EXPECT_EQ(dib.RowStep(), 0);
    EXPECT_EQ(dib.Width(), 5);
    EXPECT_EQ(dib.Height(), 4);
    EXPECT_EQ(dib.TransparentColour(), CLR_INVALID);  // attaching forgets it
}

TEST(CDibSection, NothingHeldDrawsNothing) {
    CDibSection dib;
    Surface surface(4, 4);
    EXPECT_FALSE(dib.Draw(surface.Dc(), 0, 0, 4, 4, 0, 0, 4, 4));
    EXPECT_TRUE(surface.WhiteOutside(0, 0, 0, 0));
}

TEST(CDibSection, TransparentColourIsLeftOut) {
    ASSERT_TRUE(BlendingIsSupported());
    if (!ImageLibraryIsPresent()) GTEST_SKIP() << "no image library here";
    CDibSection dib;
    ASSERT_TRUE(dib.Create(2, 1, 32));
    Set(dib, 0, 0, 0x00FF00);
    Set(dib, 1, 0, 0x123456);
    dib.SetTransparentColour(RGB(0x12, 0x34, 0x56));
    Surface surface(2, 1);
    EXPECT_TRUE(dib.Draw(surface.Dc(), 0, 0, 2, 1, 0, 0, 2, 1));
    EXPECT_EQ(surface.At(0, 0), 0x00FF00u);
    EXPECT_EQ(surface.At(1, 0), 0xFFFFFFu);
}

TEST(CDibSection, AlphaBlendsPremultipliedColours) {
    if (!ImageLibraryIsPresent()) GTEST_SKIP() << "no image library here";
    CDibSection dib;
    ASSERT_TRUE(dib.Create(3, 1, 32, BI_RGB, nullptr, 1));
    EXPECT_TRUE(dib.HasAlpha());
    Set(dib, 0, 0, 0xFF0000FF);  // opaque blue
    Set(dib, 1, 0, 0x80800000);  // half red, premultiplied
    Set(dib, 2, 0, 0x00000000);  // transparent
    Surface surface(3, 1);
    EXPECT_TRUE(dib.Draw(surface.Dc(), 0, 0, 3, 1, 0, 0, 3, 1));
    EXPECT_EQ(surface.At(0, 0), 0x0000FFu);
    std::uint32_t half = surface.At(1, 0);
    EXPECT_EQ(half >> 16, 0xFFu);
    EXPECT_NEAR(static_cast<int>(half >> 8 & 0xFF), 127, 2);
    EXPECT_EQ(surface.At(2, 0), 0xFFFFFFu);
}

class LoadFromFile : public ::testing::Test {
protected:
    void SetUp() override {
        if (!gdiplus::Start()) GTEST_SKIP() << "no GDI+ here";
    }
    ScratchFolder folder;
};

TEST_F(LoadFromFile, AlphaPngIsPremultiplied) {
    Picture picture{3, 1, {0xFF102030u, 0x80FF0000u, 0x0000FF00u}};
    CDibSection dib;
    ASSERT_EQ(dib.LoadFromFile(Wide(folder.Write("alpha.png", Png(picture, 6))).c_str()), S_OK);
    EXPECT_EQ(dib.BitsPerPixel(), 32);
    EXPECT_TRUE(dib.HasAlpha());
    EXPECT_EQ(Pixel(dib, 0, 0), 0xFF102030u);
    EXPECT_EQ(Pixel(dib, 1, 0), 0x80800000u);
    EXPECT_EQ(Pixel(dib, 2, 0), 0u);  // the green of a transparent pixel is not kept
}

TEST_F(LoadFromFile, PaletteIsCopiedIntoTheColourTable) {
    CDibSection dib;
    std::string file = Png(3, 2, 8, 3, {std::string("\0\1\2", 3), std::string("\2\1\0", 3)},
                           "\x11\x22\x33\x44\x55\x66\x77\x88\x99");
    ASSERT_EQ(dib.LoadFromFile(Wide(folder.Write("palette.png", file)).c_str()), S_OK);
    EXPECT_EQ(dib.BitsPerPixel(), 8);
    Surface surface(3, 2);
    ASSERT_TRUE(dib.Draw(surface.Dc(), 0, 0, 3, 2, 0, 0, 3, 2));
    EXPECT_EQ(surface.At(0, 0), 0x112233u);
    EXPECT_EQ(surface.At(1, 0), 0x445566u);
    EXPECT_EQ(surface.At(2, 0), 0x778899u);
    EXPECT_EQ(surface.At(0, 1), 0x778899u);
}

TEST_F(LoadFromFile, FormatsGdiCannotTakeAreConvertedTo32Bits) {
    // 16-bit grey: GDI+ converts it while drawing it into the DIB.
    CDibSection dib;
    std::string file = Png(2, 1, 16, 0, {std::string("\0\0\xff\xff", 4)});
    ASSERT_EQ(dib.LoadFromFile(Wide(folder.Write("grey16.png", file)).c_str()), S_OK);
    EXPECT_EQ(dib.BitsPerPixel(), 32);
    EXPECT_EQ(Pixel(dib, 0, 0) & 0xFFFFFF, 0x000000u);
    EXPECT_EQ(Pixel(dib, 1, 0) & 0xFFFFFF, 0xFFFFFFu);
}

TEST_F(LoadFromFile, UnreadableFilesFailAndHoldNothing) {
    CDibSection dib;
    ASSERT_TRUE(dib.Create(2, 2, 32));
    EXPECT_EQ(dib.LoadFromFile(Wide(folder.Path("missing.png")).c_str()), E_FAIL);
    EXPECT_EQ(dib.Bitmap(), nullptr);
    std::string cut = Png(Gradient(4, 4), 2);
    EXPECT_EQ(dib.LoadFromFile(Wide(folder.Write("cut.png", cut.substr(0, 40))).c_str()), E_FAIL);
    EXPECT_EQ(dib.LoadFromFile(Wide(folder.Write("text.png", "not a picture")).c_str()), E_FAIL);
    EXPECT_EQ(dib.Bitmap(), nullptr);
}

TEST(GdiplusRuntime, StartsOnceAndAgainAfterShutdown) {
    const gdiplus::FlatApi* api = gdiplus::Start();
    if (!api) GTEST_SKIP() << "no GDI+ here";
    EXPECT_TRUE(gdiplus::IsStarted());
    EXPECT_EQ(gdiplus::Start(), api);
    gdiplus::Shutdown();
    EXPECT_FALSE(gdiplus::IsStarted());
    gdiplus::Shutdown();  // harmless twice
    EXPECT_EQ(gdiplus::Start(), api);
    EXPECT_TRUE(gdiplus::IsStarted());
}

// Run by its own ctest entry with the image library switched off.
TEST(WithoutImageLibrary, OnlyPlainPicturesAreDrawn) {
    if (ImageLibraryIsPresent()) GTEST_SKIP() << "the image library is present";
    CDibSection dib;
    ASSERT_TRUE(dib.Create(2, 1, 32));
    Set(dib, 0, 0, 0x00FF00);
    Set(dib, 1, 0, 0x00FF00);
    Surface surface(2, 1);
    dib.SetTransparentColour(RGB(0, 0, 0));
    EXPECT_FALSE(dib.Draw(surface.Dc(), 0, 0, 2, 1, 0, 0, 2, 1));
    EXPECT_TRUE(surface.WhiteOutside(0, 0, 0, 0));

    ASSERT_TRUE(dib.Create(2, 1, 32, BI_RGB, nullptr, 1));
    Set(dib, 0, 0, 0xFF00FF00);
    EXPECT_FALSE(dib.Draw(surface.Dc(), 0, 0, 2, 1, 0, 0, 2, 1));
    EXPECT_TRUE(surface.WhiteOutside(0, 0, 0, 0));

    ASSERT_TRUE(dib.Create(1, 1, 32));
    Set(dib, 0, 0, 0x00FF00);
    EXPECT_TRUE(dib.Draw(surface.Dc(), 0, 0, 2, 1, 0, 0, 1, 1));  // stretched
    EXPECT_EQ(surface.At(0, 0), 0x00FF00u);
    EXPECT_EQ(surface.At(1, 0), 0x00FF00u);
}

}  // namespace
