// Publishing against an in-memory file system: nothing is written outside
// the output and image folders.
#include <gtest/gtest.h>

#include "extension/extension_engine.h"
#include "html/image_list.h"
#include "test_definition.h"

using testdef::Definition;
using testdef::MemoryFileSystem;

TEST(Publishing, NothingIsWrittenOutsideTheOutputAndImageFolders) {
    MemoryFileSystem fs;
    ExtensionServices services;
    services.fileSystem = &fs;
    fs.files["C:\\x\\y\\../../pic.jpg"] = "P";
    fs.files["C:\\pics\\.."] = "D";
    std::string text = Definition()
                           .Categories({{"G", {{"$images$", "6", ""}}}})
                           .Files({{"../up.css", "u"}, {"a\\..\\..\\evil.css", "e"}, {"ok.css", "k"}})
                           .Text();
    CExtensionEngine engine(text, services);
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
