// The file system of Windows, through the ANSI functions in the system code
// page; files are written and copied safely (safe_file.h).
#include <windows.h>

#include <string>

#include "platform/file_system.h"
#include "platform/safe_file.h"

namespace {

class CWindowsFileSystem : public CFileSystem {
public:
    PathStyle GetPathStyle() const override { return PathStyle::kWindows; }

    FileResult CreateFolder(const std::string& path) override {
        if (CreateDirectoryA(path.c_str(), nullptr)) return {};
        return FileResult::Failed("cannot create the folder '" + path + "'");
    }
    FileResult CopyFileOverwriting(const std::string& from, const std::string& to) override {
        return CopyFileSafely(from, to);
    }
    FileResult WriteWholeFile(const std::string& path, std::string_view bytes) override {
        return WriteFileSafely(path, bytes);
    }

    std::string NameToUtf8(std::string_view name) const override {
        if (name.empty()) return {};
        int size = static_cast<int>(name.size());
        int wide = MultiByteToWideChar(CP_ACP, 0, name.data(), size, nullptr, 0);
        if (wide <= 0) return std::string(name);
        std::wstring text(static_cast<std::size_t>(wide), L'\0');
        MultiByteToWideChar(CP_ACP, 0, name.data(), size, &text[0], wide);
        int utf8 = WideCharToMultiByte(CP_UTF8, 0, text.data(), wide, nullptr, 0, nullptr, nullptr);
        if (utf8 <= 0) return std::string(name);
        std::string out(static_cast<std::size_t>(utf8), '\0');
        WideCharToMultiByte(CP_UTF8, 0, text.data(), wide, &out[0], utf8, nullptr, nullptr);
        return out;
    }
};

}  // namespace

std::unique_ptr<CFileSystem> CreateNativeFileSystem() { return std::make_unique<CWindowsFileSystem>(); }
