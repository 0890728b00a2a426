// The file system of POSIX systems; files are written and copied safely
// (safe_file.h).
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "platform/file_system.h"
#include "platform/safe_file.h"

namespace {

class CPosixFileSystem : public CFileSystem {
public:
    PathStyle GetPathStyle() const override { return PathStyle::kPosix; }

    FileResult CreateFolder(const std::string& path) override {
        if (::mkdir(path.c_str(), 0777) == 0) return {};
        return FileResult::Failed("cannot create the folder '" + path + "': " + std::strerror(errno));
    }
    FileResult CopyFileOverwriting(const std::string& from, const std::string& to) override {
        return CopyFileSafely(from, to);
    }
    FileResult WriteWholeFile(const std::string& path, std::string_view bytes) override {
        return WriteFileSafely(path, bytes);
    }
};

}  // namespace

std::unique_ptr<CFileSystem> CreateNativeFileSystem() { return std::make_unique<CPosixFileSystem>(); }
