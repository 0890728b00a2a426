#pragma once
// Byte-wise text helpers with the C locale's rules: white space is blank, tab,
// line feed, vertical tab, form feed and carriage return; case folding touches
// A-Z only. Bytes above 127 are never white space and never change case.
#include <string>
#include <string_view>

namespace ascii {

inline bool IsSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
// The white space of XML itself: blank, tab, line feed, carriage return.
inline bool IsXmlSpace(unsigned char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

inline char ToLower(char c) { return (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c; }
inline char ToUpper(char c) { return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c; }

inline std::string Lower(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = ToLower(c);
    return out;
}
inline std::string Upper(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = ToUpper(c);
    return out;
}

inline bool EqualsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (ToLower(a[i]) != ToLower(b[i])) return false;
    return true;
}

inline std::string_view Trim(std::string_view s) {
    std::size_t b = 0, e = s.size();
    while (b < e && IsSpace(static_cast<unsigned char>(s[b]))) ++b;
    while (e > b && IsSpace(static_cast<unsigned char>(s[e - 1]))) --e;
    return s.substr(b, e - b);
}

}  // namespace ascii
