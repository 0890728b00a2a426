// The POSIX file system: whole files or nothing.
#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "platform/file_system.h"

namespace {

class PosixFileSystem : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/pw-fs-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
        fs = CreateNativeFileSystem();
    }
    void TearDown() override { std::system(("rm -rf '" + dir + "'").c_str()); }

    std::string Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream s;
        s << in.rdbuf();
        return s.str();
    }
    int Entries() {
        int n = 0;
        DIR* d = opendir(dir.c_str());
        while (dirent* e = readdir(d))
            if (e->d_name[0] != '.') ++n;
        closedir(d);
        return n;
    }

    std::string dir;
    std::unique_ptr<CFileSystem> fs;
};

}  // namespace

TEST_F(PosixFileSystem, WritesAndCopiesWholeFilesOverExistingOnes) {
    EXPECT_EQ(fs->GetSeparator(), '/');
    std::string bytes("a\0b\xff", 4);
    ASSERT_TRUE(fs->WriteWholeFile(dir + "/f", bytes));
    EXPECT_EQ(Read(dir + "/f"), bytes);
    ASSERT_TRUE(fs->WriteWholeFile(dir + "/g", "old content that is longer"));
    ASSERT_TRUE(fs->CopyFileOverwriting(dir + "/f", dir + "/g"));
    EXPECT_EQ(Read(dir + "/g"), bytes);
    EXPECT_EQ(Entries(), 2);
}

TEST_F(PosixFileSystem, FailuresLeaveNothingBehind) {
    EXPECT_FALSE(fs->CopyFileOverwriting(dir + "/missing", dir + "/copy"));
    EXPECT_FALSE(fs->CopyFileOverwriting(dir, dir + "/copy"));  // a folder is not a file
    EXPECT_FALSE(fs->WriteWholeFile(dir + "/no/such/folder/f", "x"));
    EXPECT_EQ(Entries(), 0);

    ASSERT_TRUE(fs->WriteWholeFile(dir + "/kept", "kept"));
    ASSERT_TRUE(fs->CreateFolder(dir + "/sub"));
    EXPECT_FALSE(fs->CreateFolder(dir + "/sub"));
    EXPECT_FALSE(fs->WriteWholeFile(dir + "/sub", "a file cannot replace a folder"));
    EXPECT_EQ(Read(dir + "/kept"), "kept");
    EXPECT_EQ(Entries(), 2);
}

#endif
