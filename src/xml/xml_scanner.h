#pragma once
// The tolerant scanner under CXmlDocument::Parse, for readers that need its
// events without a tree: what counts as a tag, a tag's name and attribute
// text, and the value text between tags, exactly as the parser sees them.
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "xml/ascii.h"
#include "xml/xml_document.h"

namespace xml_scan {

// Classifies a tag with one '<' first and one '>' last and no bracket
// between: its inner text is a piece of it.
inline int ClassifyPlainTag(std::string_view tag, std::string_view& inner) {
    const std::size_t n = tag.size();
    std::string_view body = tag.substr(1, n - 2);
    inner = std::string_view();
    if (!body.empty() && (body[0] == '!' || body[0] == '?')) return -1;
    int kind = 0;
    if (!body.empty() && body[0] == '/') {
        kind = 1;
        body.remove_prefix(1);
    }
    if (tag[n - 2] == '/') {  // "/>", the '/' possibly the one just dropped
        kind = 2;
        if (!body.empty()) body.remove_suffix(1);
    }
    inner = body;
    return kind;
}

inline bool IsPlainTag(std::string_view tag) {
    const std::size_t n = tag.size();
    if (n < 2 || tag[0] != '<' || tag[n - 1] != '>') return false;
    for (std::size_t i = 1; i + 1 < n; ++i)
        if (tag[i] == '<' || tag[i] == '>') return false;
    return true;
}

// Splits a tag's inner text into name (up to the first blank, untrimmed) and
// the trimmed rest.
inline void SplitTag(std::string_view inner, std::string_view& name, std::string_view& attributes) {
    std::size_t space = inner.find(' ');
    if (space == std::string_view::npos) {
        name = inner;
        attributes = std::string_view();
    } else {
        name = inner.substr(0, space);
        attributes = ascii::Trim(inner.substr(space + 1));
    }
}

// The position of the next '<' or '>' at or after i, or n: eight bytes at a
// time ('<' and '>' differ only in the bit 0x02; the words are read
// little-endian, so the lowest flagged byte comes first).
inline std::size_t NextBracket(const char* s, std::size_t i, std::size_t n) {
    constexpr std::uint64_t kOnes = 0x0101010101010101ull, kHighs = 0x8080808080808080ull;
    while (i + 8 <= n) {
        std::uint64_t word;
        std::memcpy(&word, s + i, 8);
        std::uint64_t x = (word | (kOnes * 0x02)) ^ (kOnes * 0x3E);
        std::uint64_t found = (x - kOnes) & ~x & kHighs;
        if (found) return i + static_cast<std::size_t>(__builtin_ctzll(found) / 8);
        i += 8;
    }
    while (i < n && s[i] != '<' && s[i] != '>') ++i;
    return i;
}

// Scans source and calls sink.OnValue(text, inSource) before every '<' with
// the trimmed text since the last tag (inSource when it is a piece of
// source, not gathered around a stray '>'), and
// sink.OnTag(kind, inner, plain) for every complete tag that is not ignored
// (kind 0 start, 1 end, 2 empty-element; plain when inner lies in the
// source); scanning stops when OnTag returns false.
template <class Sink>
void Scan(std::string_view source, Sink& sink) {
    // tag and content gather the text of the tag and of the value being
    // scanned. A tag or a value that stands whole in the source, the usual
    // case, is read from there instead.
    std::string tag, content, scratch;
    bool inTag = false;

    // One complete tag. After an ignored tag the scanner stays "in a tag",
    // so what follows it is gathered into the next tag's text.
    auto take = [&](std::string_view whole, bool plain) {
        std::string_view inner;
        int r = plain ? ClassifyPlainTag(whole, inner) : CXmlDocument::ClassifyTag(whole, scratch);
        if (!plain) inner = scratch;
        if (r == -1) return true;
        inTag = false;
        return sink.OnTag(r, inner, plain);
    };

    const char* s = source.data();
    const std::size_t n = source.size();
    // A value that is one run of the source is read from there; only one
    // broken by a stray '>' is gathered in content.
    std::string_view run;
    bool gathered = false;
    std::size_t i = 0;
    while (i < n) {
        std::size_t j = NextBracket(s, i, n);
        if (j > i) {
            if (inTag) {
                tag.append(s + i, j - i);
            } else if (!gathered && run.empty()) {
                run = std::string_view(s + i, j - i);
            } else {
                if (!gathered) {
                    content.assign(run.data(), run.size());
                    gathered = true;
                }
                content.append(s + i, j - i);
            }
            i = j;
            if (i == n) break;
        }
        if (s[i] == '<') {
            sink.OnValue(ascii::Trim(gathered ? std::string_view(content) : run), !gathered);
            content.clear();
            run = std::string_view();
            gathered = false;
            inTag = true;
            if (tag.empty()) {
                std::size_t end = NextBracket(s, i + 1, n);
                if (end < n && s[end] == '>') {
                    if (!take(std::string_view(s + i, end + 1 - i), true)) break;
                    i = end + 1;
                    continue;
                }
            }
            tag.push_back('<');
        } else {  // '>'
            if (!inTag && !gathered && !run.empty()) {
                // A stray '>' inside a value: what follows it joins the value.
                content.assign(run.data(), run.size());
                gathered = true;
            }
            tag.push_back('>');
            bool more = take(tag, false);
            tag.clear();
            if (!more) break;
        }
        ++i;
    }
}

// The elements the parser makes of source, on top of Scan: the first start
// tag with a name names the root (one without a name tries again); every
// later one opens a child of the current element, unless the tree is
// CXmlDocument::kMaxDepth deep, where scanning stops; an end tag closes the
// current element, never the root; an empty-element tag opens and closes.
// Calls sink.OnValue(text, inSource) as Scan does, sink.OnRoot(name,
// attributes, plain), sink.OnOpen(name, attributes, plain) and
// sink.OnClose(); OnRoot and OnOpen may stop the scan by returning false.
// Returns false when the tree was cut at the depth limit.
template <class Sink>
bool ScanElements(std::string_view source, Sink& sink) {
    struct Structure {
        Sink& sink;
        bool rootNamed = false;
        bool truncated = false;
        int depth = 1;  // of the current element
        void OnValue(std::string_view text, bool inSource) { sink.OnValue(text, inSource); }
        bool OnTag(int kind, std::string_view inner, bool plain) {
            if (kind == 0 || kind == 2) {
                std::string_view name, attributes;
                SplitTag(inner, name, attributes);
                if (!rootNamed) {
                    rootNamed = !name.empty();
                    if (!sink.OnRoot(name, attributes, plain)) return false;
                } else if (depth == CXmlDocument::kMaxDepth) {
                    truncated = true;
                    return false;
                } else {
                    ++depth;
                    if (!sink.OnOpen(name, attributes, plain)) return false;
                }
            }
            if ((kind == 1 || kind == 2) && depth > 1) {
                --depth;
                sink.OnClose();
            }
            return true;
        }
    } structure{sink};
    Scan(source, structure);
    return !structure.truncated;
}

}  // namespace xml_scan
