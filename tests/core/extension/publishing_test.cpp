// Publishing against an in-memory file system: payload files, property
// files, gallery images, the page context and failures that must not stop
// the walk.
#include <gtest/gtest.h>

#include "extension/extension_engine.h"
#include "html/image_list.h"
#include "test_definition.h"

using testdef::Definition;
using testdef::MemoryFileSystem;

namespace {

const std::string kBinary("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\xff", 17);

std::string Gallery() {
    return Definition()
        .Categories(
            {{"General",
              {{"$images$", "6", ""}, {"$color$", "1", "#000000", "0"}, {"$logo$", "3", ""}, {"$size$", "5", "10"}}}})
        .Files({{"style.css", "a { color:$color$; font-size:$size$; x:$LEFT$ }", true},
                {"raw.css", "a { color:$color$ }", false},
                {"slider.png", kBinary},
                {"outer/inner/deep.txt", "deep"},
                {"outer/flat.txt", "flat $size$", true}})
        .Text();
}

class Publishing : public ::testing::Test {
protected:
    MemoryFileSystem fs;
    ExtensionServices Services() {
        ExtensionServices s;
        s.fileSystem = &fs;
        return s;
    }
};

}  // namespace

TEST_F(Publishing, FailuresAreSkippedAndTheWalkGoesOn) {
    fs.files["C:\\Pictures\\a.jpg"] = "A";
    fs.files["C:\\Pictures\\c.jpg"] = "C";
    fs.failing = {"C:\\Site\\style.css", "C:\\Site\\Images\\/a.jpg"};
    CExtensionEngine engine(Gallery(), Services());
    engine.SetValue("$images$",
                    WriteImageList({{"C:\\Pictures\\a.jpg"}, {"C:\\Pictures\\missing.jpg"}, {"C:\\Pictures\\c.jpg"}}));
    EXPECT_EQ(engine.CopyFiles("C:\\Site\\", "C:\\Site\\Images\\"), 1);
    EXPECT_EQ(fs.files.count("C:\\Site\\style.css"), 0u);
    EXPECT_EQ(fs.files.count("C:\\Site\\Images\\/a.jpg"), 0u);
    EXPECT_EQ(fs.files.count("C:\\Site\\Images\\/missing.jpg"), 0u);
    EXPECT_EQ(fs.files["C:\\Site\\raw.css"], "a { color:$color$ }");
    EXPECT_EQ(fs.files["C:\\Site\\Images\\/c.jpg"], "C");
}

TEST_F(Publishing, NothingIsWrittenOutsideTheOutputAndImageFolders) {
    fs.files["C:\\x\\y\\../../pic.jpg"] = "P";
    fs.files["C:\\pics\\.."] = "D";
    std::string text = Definition()
                           .Categories({{"G", {{"$images$", "6", ""}}}})
                           .Files({{"../up.css", "u"}, {"a\\..\\..\\evil.css", "e"}, {"ok.css", "k"}})
                           .Text();
    CExtensionEngine engine(text, Services());
    engine.SetValue("$images$", WriteImageList({{"C:\\x\\y\\../../pic.jpg"}, {"C:\\pics\\.."}}));
    engine.CopyFiles("C:\\Site\\", "C:\\Site\\Images");
    std::map<std::string, std::string> expected = {{"C:\\x\\y\\../../pic.jpg", "P"},
                                                   {"C:\\pics\\..", "D"},
                                                   {"C:\\Site\\ok.css", "k"},
                                                   {"C:\\Site\\Images/pic.jpg", "P"}};
    EXPECT_EQ(fs.files, expected);
    std::vector<std::string> leftOut = engine.PlanCopyFiles("C:\\Site\\", "C:\\Site\\Images").leftOut;
    ASSERT_EQ(leftOut.size(), 3u);
    EXPECT_NE(leftOut[0].find("FOLDER '..'"), std::string::npos) << leftOut[0];
    EXPECT_NE(leftOut[1].find("FILE 'a\\..\\..\\evil.css'"), std::string::npos) << leftOut[1];
    EXPECT_NE(leftOut[2].find("'C:\\pics\\..'"), std::string::npos) << leftOut[2];
}
