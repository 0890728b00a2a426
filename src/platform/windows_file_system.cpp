// The file system of Windows, through the ANSI functions in the system code
// page. Files are written into a temporary file beside the target and moved
// over it, so a failure never leaves half a file under the target's name.
#include <windows.h>

#include <string>

#include "platform/file_system.h"

namespace {

const char kTemporarySuffix[] = ".pw-tmp";

bool MoveOver(const std::string& temporary, const std::string& path) {
    if (MoveFileExA(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) return true;
    DeleteFileA(temporary.c_str());
    return false;
}

class CWindowsFileSystem : public CFileSystem {
public:
    PathStyle GetPathStyle() const override { return PathStyle::Windows; }

    bool CreateFolder(const std::string& path) override { return CreateDirectoryA(path.c_str(), nullptr) != 0; }

    bool CopyFileOverwriting(const std::string& from, const std::string& to) override {
        std::string temporary = to + kTemporarySuffix;
        if (!CopyFileA(from.c_str(), temporary.c_str(), FALSE)) {
            DeleteFileA(temporary.c_str());
            return false;
        }
        return MoveOver(temporary, to);
    }

    bool WriteWholeFile(const std::string& path, std::string_view bytes) override {
        std::string temporary = path + kTemporarySuffix;
        HANDLE file = CreateFileA(temporary.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) return false;
        bool ok = true;
        const char* data = bytes.data();
        std::size_t left = bytes.size();
        while (ok && left > 0) {
            DWORD chunk = left > 0x100000 ? 0x100000 : static_cast<DWORD>(left);
            DWORD written = 0;
            ok = WriteFile(file, data, chunk, &written, nullptr) && written == chunk;
            data += chunk;
            left -= chunk;
        }
        ok = CloseHandle(file) && ok;
        if (!ok) {
            DeleteFileA(temporary.c_str());
            return false;
        }
        return MoveOver(temporary, path);
    }
};

}  // namespace

std::unique_ptr<CFileSystem> CreateNativeFileSystem() { return std::make_unique<CWindowsFileSystem>(); }
