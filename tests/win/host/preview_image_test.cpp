// CPreviewImage: which back end loads what, where files are looked for, and
// drawing at natural size clipped to the rectangle.
#include <windows.h>

#include <gtest/gtest.h>

#include "render/preview_image.h"
#include "test_pictures.h"

using namespace test_pictures;

namespace {

TEST(IsPngFile, ComparesTheTextAfterTheLastDot) {
    EXPECT_TRUE(IsPngFile("C:\\pictures\\a.png"));
    EXPECT_TRUE(IsPngFile("a.b.PnG"));
    EXPECT_TRUE(IsPngFile("png"));  // no dot: the whole path
    EXPECT_FALSE(IsPngFile("a.png.jpg"));
    EXPECT_FALSE(IsPngFile("C:\\x.png\\picture"));
    EXPECT_FALSE(IsPngFile("a.pngx"));
    EXPECT_FALSE(IsPngFile(""));
}

TEST(DownloadFileName, LastSegmentInTheTemporaryFolder) {
    EXPECT_EQ(DownloadFileName("http://example.com/pics/a.png", "C:\\temp\\"), "C:\\temp\\a.png");
    EXPECT_EQ(DownloadFileName("http://example.com\\pics\\b.gif", "C:\\temp"), "C:\\temp\\b.gif");
    EXPECT_EQ(DownloadFileName("see HTTP://host/c.bmp", "T:\\"), "T:\\c.bmp");
}

// The same picture as PNG and BMP in a scratch folder.
class PreviewImage : public ::testing::Test {
protected:
    Picture picture = Gradient(12, 8);
    ScratchFolder folder;
    std::string png = folder.Write("picture.png", Png(picture, 2));
    std::string bmp = folder.Write("picture.bmp", Bmp(picture));

    // Draws into a white 40 × 30 surface and checks the picture's top-left
    // shown × shown part at (left, top), white everywhere else.
    void ExpectDrawn(CPreviewImage& image, const RECT& rect, int shownWidth, int shownHeight) {
        Surface surface(40, 30);
        image.Draw(surface.Dc(), rect);
        for (int y = 0; y < shownHeight; ++y)
            for (int x = 0; x < shownWidth; ++x)
                ASSERT_EQ(surface.At(rect.left + x, rect.top + y), picture.At(x, y) & 0xFFFFFF) << x << "," << y;
        EXPECT_TRUE(surface.WhiteOutside(rect.left, rect.top, rect.left + shownWidth, rect.top + shownHeight));
    }
};

TEST_F(PreviewImage, PngGoesThroughGdiplusUntilTheFirstOtherFile) {
    CPreviewImage image;
    if (!image.UsesGdiplus()) GTEST_SKIP() << "no GDI+ here";
    ASSERT_TRUE(image.Load(png.c_str(), nullptr));
    EXPECT_TRUE(image.UsesGdiplus());
    EXPECT_TRUE(image.IsLoaded());
    EXPECT_EQ(image.Picture(), nullptr);

    ASSERT_TRUE(image.Load(bmp.c_str(), nullptr));
    EXPECT_FALSE(image.UsesGdiplus());
    EXPECT_NE(image.Picture(), nullptr);

    ASSERT_TRUE(image.Load(png.c_str(), nullptr));  // never back to GDI+
    EXPECT_FALSE(image.UsesGdiplus());
    EXPECT_TRUE(image.IsLoaded());
}

TEST_F(PreviewImage, DrawnAtNaturalSizeAndClipped) {
    for (const std::string& path : {png, bmp}) {
        CPreviewImage image;
        ASSERT_TRUE(image.Load(path.c_str(), nullptr));
        ASSERT_TRUE(image.IsLoaded());
        SCOPED_TRACE(path + (image.UsesGdiplus() ? " (GDI+)" : " (OLE picture)"));
        ExpectDrawn(image, RECT{5, 4, 35, 26}, 12, 8);  // larger: the rest untouched
        ExpectDrawn(image, RECT{5, 4, 12, 9}, 7, 5);    // smaller: cut right and bottom
        ExpectDrawn(image, RECT{5, 4, 5, 26}, 0, 0);    // empty
    }
}

TEST_F(PreviewImage, MissingFileIsLookedForInTheImagesFolder) {
    folder.Write("images\\beside.png", Png(picture, 2));
    folder.Write("images\\beside.bmp", Bmp(picture));
    std::string document = folder.Path("page.html");
    for (const char* name : {"beside.png", "beside.bmp"}) {
        std::string elsewhere = "C:\\nowhere\\" + std::string(name);
        CPreviewImage image;
        EXPECT_FALSE(image.Load(elsewhere.c_str(), nullptr)) << name;
        EXPECT_TRUE(image.Load(elsewhere.c_str(), document.c_str())) << name;
        EXPECT_TRUE(image.IsLoaded()) << name;
        EXPECT_FALSE(image.Load("C:\\nowhere\\absent.bmp", document.c_str()));
    }
}

TEST_F(PreviewImage, FileThatIsNoPictureIsReadButNotLoaded) {
    std::string junk = folder.Write("junk.bmp", "nothing but text, no picture");
    CPreviewImage image;
    EXPECT_TRUE(image.Load(junk.c_str(), nullptr));
    EXPECT_FALSE(image.IsLoaded());
    Surface surface(10, 10);
    image.Draw(surface.Dc(), RECT{0, 0, 10, 10});
    EXPECT_TRUE(surface.WhiteOutside(0, 0, 0, 0));

    std::string emptyFile = folder.Write("empty.gif", "");
    EXPECT_TRUE(image.Load(emptyFile.c_str(), nullptr));
    EXPECT_FALSE(image.IsLoaded());

    // An empty object draws nothing either.
    CPreviewImage empty;
    EXPECT_FALSE(empty.IsLoaded());
    empty.Draw(surface.Dc(), RECT{0, 0, 10, 10});
    EXPECT_TRUE(surface.WhiteOutside(0, 0, 0, 0));
}

TEST_F(PreviewImage, WebAddressThatCannotBeFetchedLoadsNothing) {
    // Nothing listens on the discard port of this machine: the download
    // fails at once, without any network.
    CPreviewImage image;
    EXPECT_FALSE(image.Load("http://127.0.0.1:9/pics/picture.bmp", nullptr));
    EXPECT_FALSE(image.IsLoaded());
}

}  // namespace
