// The render-method dispatch of the design view, with a picture loaded.
#include <windows.h>

#include <gtest/gtest.h>

#include "render/design_view.h"
#include "render/html_snapshot.h"
#include "render/preview_image.h"
#include "test_pictures.h"

using namespace test_pictures;

namespace {

class DesignView : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(preview.Load(folder.Write("p.bmp", Bmp(picture)).c_str(), nullptr)); }
    Picture picture = Gradient(6, 4);
    ScratchFolder folder;
    CPreviewImage preview;
    CHtmlSnapshot snapshot;  // never rendered
};

TEST_F(DesignView, MethodOneDrawsThePictureInTheNormalisedRectangle) {
    Surface surface(20, 10);
    DrawDesignView(surface.Dc(), RECT{18, 9, 2, 1}, 1, "text", preview, snapshot);
    EXPECT_EQ(surface.At(2, 1), picture.At(0, 0) & 0xFFFFFF);
    EXPECT_EQ(surface.At(7, 4), picture.At(5, 3) & 0xFFFFFF);
    EXPECT_TRUE(surface.WhiteOutside(2, 1, 8, 5));
}

TEST_F(DesignView, MethodZeroIsThePlaceholderEvenWithAPicture) {
    Surface surface(20, 10);
    DrawDesignView(surface.Dc(), RECT{0, 0, 20, 10}, 0, "", preview, snapshot);
    EXPECT_EQ(surface.At(0, 0), 0x808080u);
    EXPECT_EQ(surface.At(1, 1), 0xFFFFFFu);
}

TEST_F(DesignView, OtherMethodsAndASnapshotNotYetRenderedDrawNothing) {
    for (int method : {2, 3, -1, 1000}) {
        Surface surface(20, 10);
        DrawDesignView(surface.Dc(), RECT{0, 0, 20, 10}, method, "text", preview, snapshot);
        EXPECT_TRUE(surface.WhiteOutside(0, 0, 0, 0)) << method;
    }
}

}  // namespace
