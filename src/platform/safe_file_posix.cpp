// Safe file writing on POSIX systems: mkstemp in the target's folder, then
// rename(2) over the target.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "platform/safe_file.h"

namespace {

std::string Quoted(const std::string& path) { return "'" + path + "'"; }

FileResult Failed(const char* verb, const std::string& path, const std::string& why) {
    return FileResult::Failed(std::string("cannot ") + verb + " " + Quoted(path) + ": " + why);
}

std::string FolderOf(const std::string& path) {
    std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

const char* KindOf(mode_t mode) {
    if (S_ISDIR(mode)) return "it is a folder, not a file";
    if (S_ISFIFO(mode)) return "it is a FIFO, not a regular file";
    if (S_ISCHR(mode) || S_ISBLK(mode)) return "it is a device, not a regular file";
    if (S_ISSOCK(mode)) return "it is a socket, not a regular file";
    return "it is not a regular file";
}

// The target may be missing, a regular file or a symbolic link (which the
// rename replaces without following); anything else stays as it is.
FileResult CheckTarget(const std::string& path) {
    struct stat info;
    if (::lstat(path.c_str(), &info) != 0) {
        if (errno == ENOENT) return {};
        return Failed("write", path, std::strerror(errno));
    }
    if (S_ISREG(info.st_mode) || S_ISLNK(info.st_mode)) return {};
    return Failed("write", path, KindOf(info.st_mode));
}

// The permissions a newly created file gets: read and write for the owner,
// read for others, less what the process's mask takes away.
mode_t NewFileMode() {
    mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

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

// Runs fill(fd) on a fresh temporary file in path's folder and renames it
// over path when fill succeeds; removes it otherwise.
template <class Fill>
FileResult ReplaceWith(const std::string& path, Fill&& fill) {
    if (FileResult target = CheckTarget(path); !target) return target;
    std::string pattern = FolderOf(path) + "/.pw-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    int fd = ::mkstemp(name.data());
    if (fd < 0) return Failed("write", path, std::strerror(errno));

    FileResult result = fill(fd);
    if (result && ::fchmod(fd, NewFileMode()) != 0) result = Failed("write", path, std::strerror(errno));
    if (::close(fd) != 0 && result) result = Failed("write", path, std::strerror(errno));
    if (result && ::rename(name.data(), path.c_str()) != 0) result = Failed("write", path, std::strerror(errno));
    if (!result) ::unlink(name.data());
    return result;
}

}  // namespace

FileResult WriteFileSafely(const std::string& path, std::string_view bytes) {
    return ReplaceWith(path, [&](int fd) {
        return WriteAll(fd, bytes.data(), bytes.size()) ? FileResult() : Failed("write", path, std::strerror(errno));
    });
}

FileResult CopyFileSafely(const std::string& from, const std::string& to) {
    // Opening without blocking: a FIFO would otherwise wait for a writer.
    int in = ::open(from.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (in < 0) return Failed("read", from, std::strerror(errno));
    struct stat source;
    const char* refusal = nullptr;
    if (::fstat(in, &source) != 0)
        refusal = std::strerror(errno);
    else if (!S_ISREG(source.st_mode))
        refusal = KindOf(source.st_mode);
    if (refusal) {
        ::close(in);
        return Failed("read", from, refusal);
    }
    struct stat target;
    if (::stat(to.c_str(), &target) == 0 && target.st_dev == source.st_dev && target.st_ino == source.st_ino) {
        ::close(in);
        return {};  // the picture is already where it is published
    }
    FileResult result = ReplaceWith(to, [&](int out) {
        std::vector<char> buffer(64 * 1024);
        for (;;) {
            ssize_t n = ::read(in, buffer.data(), buffer.size());
            if (n == 0) return FileResult();
            if (n < 0) {
                if (errno == EINTR) continue;
                return Failed("read", from, std::strerror(errno));
            }
            if (!WriteAll(out, buffer.data(), static_cast<std::size_t>(n)))
                return Failed("write", to, std::strerror(errno));
        }
    });
    ::close(in);
    return result;
}
