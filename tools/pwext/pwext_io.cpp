#include "pwext_io.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "command.h"
#include "platform/safe_file.h"

namespace pwext {

std::string ReadInput(const std::string& path) {
    if (path.empty() || path == "-") {
        std::ostringstream buffer;
        buffer << std::cin.rdbuf();
        return buffer.str();
    }
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) throw Failure{"cannot read '" + path + "': it is a folder"};
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Failure{"cannot read '" + path + "': " + std::strerror(errno)};
    try {
        std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (in.bad()) throw Failure{"cannot read '" + path + "'"};
        return data;
    } catch (const std::ios_base::failure&) {
        throw Failure{"cannot read '" + path + "'"};
    }
}

void WriteOutput(std::string_view bytes) {
    std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    std::cout.flush();
}

void WriteFileAtomically(const std::string& path, std::string_view bytes) {
    if (FileResult written = WriteFileSafely(path, bytes); !written) throw Failure{written.why()};
}

Failure TooDeep(const std::string& what) {
    return Failure{what + ": elements nest deeper than " + std::to_string(CXmlDocument::kMaxDepth) + " levels"};
}

void RequireWholeDocument(const CXmlDocument& document, const std::string& what) {
    if (document.IsTruncated()) throw TooDeep(what);
}

std::string JsonLatin1(std::string_view bytes) {
    static const char kHex[] = "0123456789abcdef";
    std::string out = "\"";
    for (unsigned char c : bytes) {
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20 || c >= 0x7F) {
                    out += "\\u00";
                    out += kHex[c >> 4];
                    out += kHex[c & 15];
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    out += '"';
    return out;
}

}  // namespace pwext
