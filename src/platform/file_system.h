#pragma once
// The file operations that publishing needs, behind a small interface so the
// same publishing rules run on Windows (CreateDirectoryA, CopyFileA,
// CreateFileA), on POSIX systems and against test doubles.
//
// The path style is the folder separator the rules work with: a backslash on
// Windows, '/' on POSIX. Every rule that looks for or appends a separator
// when building a real path asks the file system for it.
#include <memory>
#include <string>
#include <string_view>

enum class PathStyle { Windows, Posix };

inline char SeparatorOf(PathStyle style) { return style == PathStyle::Windows ? '\\' : '/'; }

class CFileSystem {
public:
    virtual ~CFileSystem() = default;

    virtual PathStyle GetPathStyle() const = 0;
    char GetSeparator() const { return SeparatorOf(GetPathStyle()); }

    // Creates one folder (not its parents). False when it could not be
    // created, which includes a folder that already exists.
    virtual bool CreateFolder(const std::string& path) = 0;
    // Copies a file, replacing an existing destination. False on failure;
    // a failed copy leaves no partial destination behind.
    virtual bool CopyFileOverwriting(const std::string& from, const std::string& to) = 0;
    // Creates or truncates path and writes bytes. False on failure; a failed
    // write leaves no partial file behind.
    virtual bool WriteWholeFile(const std::string& path, std::string_view bytes) = 0;
};

// The file system of the machine the code was built for: the Windows one on
// WIN32, the POSIX one elsewhere.
std::unique_ptr<CFileSystem> CreateNativeFileSystem();
