// The machine's file system (POSIX natively, Windows under Wine): whole
// files or nothing.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "platform/file_system.h"

namespace {

namespace fs = std::filesystem;

class NativeFileSystem : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("pw-fs-" + std::to_string(std::random_device{}()));
        fs::create_directories(dir);
        files = CreateNativeFileSystem();
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }

    std::string At(const std::string& name) { return dir.string() + files->GetSeparator() + name; }
    std::string Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream s;
        s << in.rdbuf();
        return s.str();
    }
    std::size_t Entries() { return static_cast<std::size_t>(std::distance(fs::directory_iterator(dir), {})); }

    fs::path dir;
    std::unique_ptr<CFileSystem> files;
};

}  // namespace

TEST_F(NativeFileSystem, WritesAndCopiesWholeFilesOverExistingOnes) {
#if defined(_WIN32)
    EXPECT_EQ(files->GetSeparator(), '\\');
#else
    EXPECT_EQ(files->GetSeparator(), '/');
#endif
    std::string bytes("a\0b\xff\r\n", 6);
    ASSERT_TRUE(files->WriteWholeFile(At("f"), bytes));
    EXPECT_EQ(Read(At("f")), bytes);
    ASSERT_TRUE(files->WriteWholeFile(At("g"), "old content that is longer"));
    ASSERT_TRUE(files->CopyFileOverwriting(At("f"), At("g")));
    EXPECT_EQ(Read(At("g")), bytes);
    EXPECT_EQ(Entries(), 2u);
}

TEST_F(NativeFileSystem, FailuresLeaveNothingBehindAndSayWhy) {
    FileResult missing = files->CopyFileOverwriting(At("missing"), At("copy"));
    EXPECT_FALSE(missing);
    EXPECT_NE(missing.why().find(At("missing")), std::string::npos) << missing.why();
    EXPECT_FALSE(files->CopyFileOverwriting(dir.string(), At("copy")));  // a folder is not a file
    FileResult noFolder = files->WriteWholeFile(At("no") + files->GetSeparator() + "f", "x");
    EXPECT_FALSE(noFolder);
    EXPECT_NE(noFolder.why().find("'" + At("no")), std::string::npos) << noFolder.why();
    EXPECT_EQ(Entries(), 0u);

    ASSERT_TRUE(files->WriteWholeFile(At("kept"), "kept"));
    ASSERT_TRUE(files->CreateFolder(At("sub")));
    EXPECT_FALSE(files->CreateFolder(At("sub")));
    FileResult folder = files->WriteWholeFile(At("sub"), "a file cannot replace a folder");
    EXPECT_NE(folder.why().find("folder"), std::string::npos) << folder.why();
    EXPECT_FALSE(files->CopyFileOverwriting(At("kept"), At("sub")));
    EXPECT_EQ(Read(At("kept")), "kept");
    EXPECT_EQ(Entries(), 2u);
}

TEST_F(NativeFileSystem, NeverWritesThroughPlantedFilesAndCopiesNothingOntoItself) {
    // Files planted under every fixed temporary name ever used stay as they are.
    for (const char* suffix : {".pw-tmp", ".tmp", ".pwext-tmp"})
        ASSERT_TRUE(files->WriteWholeFile(At("page.html") + suffix, "planted"));
    ASSERT_TRUE(files->WriteWholeFile(At("page.html"), "new"));
    ASSERT_TRUE(files->CopyFileOverwriting(At("page.html"), At("copy.html")));
    for (const char* suffix : {".pw-tmp", ".tmp", ".pwext-tmp"}) EXPECT_EQ(Read(At("page.html") + suffix), "planted");
    EXPECT_EQ(Entries(), 5u);

    ASSERT_TRUE(files->CopyFileOverwriting(At("page.html"), At("page.html")));
    EXPECT_EQ(Read(At("page.html")), "new");
}

#if !defined(_WIN32)
TEST_F(NativeFileSystem, ALinkAtTheTargetIsReplacedNeverWrittenThrough) {
    ASSERT_TRUE(files->WriteWholeFile(At("victim"), "victim"));
    fs::create_symlink(At("victim"), At("link"));
    ASSERT_TRUE(files->WriteWholeFile(At("link"), "new"));
    EXPECT_EQ(Read(At("victim")), "victim");
    EXPECT_FALSE(fs::is_symlink(At("link")));

    // The longest names the file system takes are written like any other.
    std::string longest(255, 'n');
    EXPECT_TRUE(files->WriteWholeFile(At(longest), "x"));
    EXPECT_TRUE(files->CopyFileOverwriting(At(longest), At(longest.substr(0, 250) + ".jpeg")));
    EXPECT_EQ(Entries(), 4u);
}
#endif
