// Safe file writing on Windows: a new file under a unique name in the
// target's folder (CREATE_NEW, which never opens an existing name or link),
// then MoveFileEx over the target. ANSI paths in the system code page.
#include <windows.h>

#include <cctype>
#include <string>
#include <vector>

#include "platform/safe_file.h"

namespace {

std::string SystemMessage(DWORD error) {
    char* text = nullptr;
    DWORD length =
        FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       nullptr, error, 0, reinterpret_cast<char*>(&text), 0, nullptr);
    std::string message = length && text ? std::string(text, length) : "error " + std::to_string(error);
    if (text) LocalFree(text);
    while (!message.empty() &&
           (message.back() == '\r' || message.back() == '\n' || message.back() == '.' || message.back() == ' '))
        message.pop_back();
    return message;
}

FileResult Failed(const char* verb, const std::string& path, const std::string& why) {
    return FileResult::Failed(std::string("cannot ") + verb + " '" + path + "': " + why);
}

FileResult LastError(const char* verb, const std::string& path) {
    return Failed(verb, path, SystemMessage(GetLastError()));
}

std::size_t NameStart(const std::string& path) {
    std::size_t separator = path.find_last_of("\\/:");
    return separator == std::string::npos ? 0 : separator + 1;
}

// CON, PRN, AUX, NUL, COM1-9, LPT1-9 (with any extension) name devices in
// every folder.
bool NamesDevice(const std::string& path) {
    std::string name = path.substr(NameStart(path));
    name = name.substr(0, name.find('.'));
    while (!name.empty() && name.back() == ' ') name.pop_back();
    for (char& c : name) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (name == "CON" || name == "PRN" || name == "AUX" || name == "NUL" || name == "CONIN$" || name == "CONOUT$")
        return true;
    return name.size() == 4 && (name.compare(0, 3, "COM") == 0 || name.compare(0, 3, "LPT") == 0) && name[3] >= '1' &&
           name[3] <= '9';
}

// Why path cannot be a file of ours, or null when it can: missing or a
// regular file (a link at the name is replaced, not followed).
const char* Refusal(const std::string& path) {
    if (NamesDevice(path)) return "it names a device, not a file";
    DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
        return "it is a folder, not a file";
    return nullptr;
}

struct FileIdentity {
    DWORD volume = 0, high = 0, low = 0;
    bool operator==(const FileIdentity& o) const { return volume == o.volume && high == o.high && low == o.low; }
};

bool IdentityOf(HANDLE file, FileIdentity& identity) {
    BY_HANDLE_FILE_INFORMATION info;
    if (!GetFileInformationByHandle(file, &info)) return false;
    identity = {info.dwVolumeSerialNumber, info.nFileIndexHigh, info.nFileIndexLow};
    return true;
}

bool IsSameFile(HANDLE source, const std::string& path) {
    HANDLE other = CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (other == INVALID_HANDLE_VALUE) return false;
    FileIdentity a, b;
    bool same = IdentityOf(source, a) && IdentityOf(other, b) && a == b;
    CloseHandle(other);
    return same;
}

bool WriteAll(HANDLE file, const char* data, std::size_t size) {
    while (size > 0) {
        DWORD chunk = size > 0x100000 ? 0x100000 : static_cast<DWORD>(size);
        DWORD written = 0;
        if (!WriteFile(file, data, chunk, &written, nullptr) || written != chunk) return false;
        data += chunk;
        size -= chunk;
    }
    return true;
}

// A new, empty file under an unused name "~pwXXXXXXXX.tmp" in path's folder.
HANDLE CreateTemporaryBeside(const std::string& path, std::string& name) {
    static LONG counter = 0;
    std::string folder = path.substr(0, NameStart(path));
    HANDLE file = INVALID_HANDLE_VALUE;
    for (int attempt = 0; attempt < 100 && file == INVALID_HANDLE_VALUE; ++attempt) {
        unsigned long unique = (GetTickCount() * 2654435761u) ^ (GetCurrentProcessId() << 16) ^
                               static_cast<unsigned long>(InterlockedIncrement(&counter));
        char suffix[32];
        wsprintfA(suffix, "~pw%08lx.tmp", unique);
        name = folder + suffix;
        file = CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                           FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
        if (file == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_EXISTS &&
            GetLastError() != ERROR_ALREADY_EXISTS)
            break;
    }
    return file;
}

// Runs fill(file) on a new temporary file beside path and moves it over path
// when fill succeeds; deletes it otherwise.
template <class Fill>
FileResult ReplaceWith(const std::string& path, Fill&& fill) {
    if (const char* refusal = Refusal(path)) return Failed("write", path, refusal);
    std::string temporary;
    HANDLE file = CreateTemporaryBeside(path, temporary);
    if (file == INVALID_HANDLE_VALUE) return LastError("write", path);
    FileResult result = fill(file);
    if (!CloseHandle(file) && result) result = LastError("write", path);
    if (result && !MoveFileExA(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
        result = LastError("write", path);
    if (!result) DeleteFileA(temporary.c_str());
    return result;
}

}  // namespace

FileResult WriteFileSafely(const std::string& path, std::string_view bytes) {
    return ReplaceWith(path, [&](HANDLE file) {
        return WriteAll(file, bytes.data(), bytes.size()) ? FileResult() : LastError("write", path);
    });
}

FileResult CopyFileSafely(const std::string& from, const std::string& to) {
    if (const char* refusal = Refusal(from)) return Failed("read", from, refusal);
    HANDLE in = CreateFileA(from.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
    if (in == INVALID_HANDLE_VALUE) return LastError("read", from);
    if (GetFileType(in) != FILE_TYPE_DISK) {
        CloseHandle(in);
        return Failed("read", from, "it is not a regular file");
    }
    if (IsSameFile(in, to)) {
        CloseHandle(in);
        return {};  // the picture is already where it is published
    }
    FileResult result = ReplaceWith(to, [&](HANDLE out) {
        std::vector<char> buffer(64 * 1024);
        for (;;) {
            DWORD read = 0;
            if (!ReadFile(in, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr))
                return LastError("read", from);
            if (read == 0) return FileResult();
            if (!WriteAll(out, buffer.data(), read)) return LastError("write", to);
        }
    });
    CloseHandle(in);
    return result;
}
