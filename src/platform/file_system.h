#pragma once
// The file operations that publishing needs, behind a small interface so the
// same publishing rules run on Windows, on POSIX systems and against test
// doubles.
//
// The path style is the folder separator the rules work with: a backslash on
// Windows, '/' on POSIX. Every rule that looks for or appends a separator
// when building a real path asks the file system for it.
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_result.h"

enum class PathStyle { kWindows, kPosix };

inline char SeparatorOf(PathStyle style) { return style == PathStyle::kWindows ? '\\' : '/'; }

class CFileSystem {
public:
    virtual ~CFileSystem() = default;

    virtual PathStyle GetPathStyle() const = 0;
    char GetSeparator() const { return SeparatorOf(GetPathStyle()); }

    // Creates one folder (not its parents). Fails when it could not be
    // created, which includes a folder that already exists.
    virtual FileResult CreateFolder(const std::string& path) = 0;
    // Copies a regular file, replacing an existing regular file at the
    // destination (see safe_file.h for what is refused). A file copied onto
    // itself is left alone and counts as copied.
    virtual FileResult CopyFileOverwriting(const std::string& from, const std::string& to) = 0;
    // Makes bytes the whole content of path, replacing an existing regular
    // file. A failure leaves no partial file behind.
    virtual FileResult WriteWholeFile(const std::string& path, std::string_view bytes) = 0;

    // A file name as the system spells it (the system code page on Windows,
    // the bytes as they are on POSIX, where names are UTF-8) in UTF-8, the
    // spelling URLs use.
    virtual std::string NameToUtf8(std::string_view name) const { return std::string(name); }
};

// The file system of the machine the code was built for: the Windows one on
// WIN32, the POSIX one elsewhere.
std::unique_ptr<CFileSystem> CreateNativeFileSystem();
