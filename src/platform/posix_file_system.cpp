// The file system of POSIX systems. Files are written into a temporary file
// beside the target and renamed over it, so a failure never leaves half a
// file under the target's name.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace {

bool WriteAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        ssize_t n = ::write(fd, data, size);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

// Runs fill(fd) on a fresh temporary file next to path and renames it over
// path when fill succeeds; removes it otherwise.
template <class Fill>
bool ReplaceFileWith(const std::string& path, Fill&& fill) {
    std::vector<char> name(path.begin(), path.end());
    const char suffix[] = ".pw-XXXXXX";
    name.insert(name.end(), suffix, suffix + sizeof suffix);  // includes the terminator
    int fd = ::mkstemp(name.data());
    if (fd < 0) return false;
    bool ok = fill(fd);
    ok = (::fchmod(fd, 0644) == 0) && ok;
    ok = (::close(fd) == 0) && ok;
    if (ok && ::rename(name.data(), path.c_str()) == 0) return true;
    ::unlink(name.data());
    return false;
}

class CPosixFileSystem : public CFileSystem {
public:
    PathStyle GetPathStyle() const override { return PathStyle::Posix; }

    bool CreateFolder(const std::string& path) override { return ::mkdir(path.c_str(), 0755) == 0; }

    bool CopyFileOverwriting(const std::string& from, const std::string& to) override {
        int in = ::open(from.c_str(), O_RDONLY);
        if (in < 0) return false;
        struct stat info;
        if (::fstat(in, &info) != 0 || !S_ISREG(info.st_mode)) {
            ::close(in);
            return false;
        }
        bool ok = ReplaceFileWith(to, [in](int out) {
            std::vector<char> buffer(64 * 1024);
            for (;;) {
                ssize_t n = ::read(in, buffer.data(), buffer.size());
                if (n == 0) return true;
                if (n < 0) {
                    if (errno == EINTR) continue;
                    return false;
                }
                if (!WriteAll(out, buffer.data(), static_cast<std::size_t>(n))) return false;
            }
        });
        ::close(in);
        return ok;
    }

    bool WriteWholeFile(const std::string& path, std::string_view bytes) override {
        return ReplaceFileWith(path, [bytes](int fd) { return WriteAll(fd, bytes.data(), bytes.size()); });
    }
};

}  // namespace

std::unique_ptr<CFileSystem> CreateNativeFileSystem() { return std::make_unique<CPosixFileSystem>(); }
