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

TEST_F(NativeFileSystem, FailuresLeaveNothingBehind) {
    EXPECT_FALSE(files->CopyFileOverwriting(At("missing"), At("copy")));
    EXPECT_FALSE(files->CopyFileOverwriting(dir.string(), At("copy")));  // a folder is not a file
    EXPECT_FALSE(files->WriteWholeFile(At("no") + files->GetSeparator() + "f", "x"));
    EXPECT_EQ(Entries(), 0u);

    ASSERT_TRUE(files->WriteWholeFile(At("kept"), "kept"));
    ASSERT_TRUE(files->CreateFolder(At("sub")));
    EXPECT_FALSE(files->CreateFolder(At("sub")));
    EXPECT_FALSE(files->WriteWholeFile(At("sub"), "a file cannot replace a folder"));
    EXPECT_FALSE(files->CopyFileOverwriting(At("kept"), At("sub")));
    EXPECT_EQ(Read(At("kept")), "kept");
    EXPECT_EQ(Entries(), 2u);
}
