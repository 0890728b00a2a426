#include "html/published_names.h"

std::string_view PublishedFileName(std::string_view path) {
    // The name follows the last '\\' or '/' (searched for by hand:
    // find_last_of calls memchr once per character).
    std::size_t start = path.size();
    while (start > 0 && path[start - 1] != '\\' && path[start - 1] != '/') --start;
    std::string_view name = path.substr(start);
    // A NUL ends the path at the file system's boundary ("a/..\0x" is "a/.."
    // there), so a path holding one names no file.
    if (name == "." || name == ".." || path.find('\0') != std::string_view::npos) return {};
    return name;
}

bool StaysInsideFolder(std::string_view name) {
    if (!name.empty() && (name.front() == '\\' || name.front() == '/')) return false;
    if (name.find_first_of(std::string_view(":\0", 2)) != std::string_view::npos) return false;
    std::size_t start = 0;
    while (start <= name.size()) {
        std::size_t end = name.find_first_of("\\/", start);
        if (end == std::string_view::npos) end = name.size();
        if (name.substr(start, end - start) == "..") return false;
        start = end + 1;
    }
    return true;
}

std::string UrlPathOf(std::string_view path) {
    static const char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(path.size());
    for (unsigned char c : path) {
        bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                     c == '.' || c == '_' || c == '~' || c == '/';
        if (plain) {
            out += static_cast<char>(c);
        } else {
            out += '%';
            out += kHex[c >> 4];
            out += kHex[c & 15];
        }
    }
    return out;
}
