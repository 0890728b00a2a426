#include "xml/base64.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

constexpr unsigned char kInvalid = 0xFF;
constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

struct Tables {
    std::array<unsigned char, 256> value;
    // For the fast path: each character's six bits already placed where they
    // land in a little-endian 32-bit word holding the group's three bytes.
    // An invalid character sets bit 24, so one compare spots it.
    std::array<std::uint32_t, 256> d0, d1, d2, d3;

    Tables() {
        value.fill(kInvalid);
        for (int i = 0; i < 64; ++i) value[static_cast<unsigned char>(kAlphabet[i])] = static_cast<unsigned char>(i);
        for (int c = 0; c < 256; ++c) {
            std::uint32_t v = value[c];
            if (v == kInvalid) {
                d0[c] = d1[c] = d2[c] = d3[c] = 0x01FFFFFFu;
                continue;
            }
            d0[c] = v << 2;
            d1[c] = (v >> 4) | ((v & 0xFu) << 12);
            d2[c] = ((v >> 2) << 8) | ((v & 0x3u) << 22);
            d3[c] = v << 16;
        }
    }
};

const Tables& GetTables() {
    static const Tables tables;
    return tables;
}

bool LittleEndian() {
    const std::uint32_t one = 1;
    unsigned char first;
    std::memcpy(&first, &one, 1);
    return first == 1;
}

}  // namespace

bool Base64Decode(const char* source, int sourceLength, unsigned char* destination, int* length) {
    if (source == nullptr || length == nullptr) return false;
    Base64Outcome outcome = Base64DecodeInto(source, sourceLength, destination, *length);
    *length = outcome.length;
    return outcome.ok;
}

Base64Outcome Base64DecodeInto(const char* source, int sourceLength, unsigned char* destination, int capacityIn) {
    bool overflow = destination == nullptr;
    if (source == nullptr || sourceLength <= 0) return Base64Outcome{destination != nullptr, 0, 0};

    const Tables& t = GetTables();
    const unsigned char* s = reinterpret_cast<const unsigned char*>(source);
    const std::size_t n = static_cast<std::size_t>(sourceLength);
    const long long capacity = capacityIn;
    long long written = 0, stored = 0;
    std::size_t i = 0;
    static const bool kFastStores = LittleEndian();

    while (i < n) {
        // Fast path: four alphabet characters in a row make a full group.
        // It stores the group as one 4-byte word whose last byte is zero, so
        // it needs one spare byte of room, which the next group overwrites.
        if (kFastStores && !overflow) {
            while (i + 4 <= n && written + 4 <= capacity) {
                std::uint32_t w = t.d0[s[i]] | t.d1[s[i + 1]] | t.d2[s[i + 2]] | t.d3[s[i + 3]];
                if (w >= 0x01000000u) break;
                std::memcpy(destination + written, &w, 4);
                written += 3;
                stored = written;
                i += 4;
            }
        }
        if (i >= n) break;

        // General path: gather up to four valued characters, skipping others.
        std::uint32_t bits = 0;
        int b = 0;
        while (b < 24 && i < n) {
            unsigned char v = t.value[s[i++]];
            if (v == kInvalid) continue;
            bits = (bits << 6) | v;
            b += 6;
        }
        int bytes = b / 8;
        if (!overflow && written + bytes > capacity) overflow = true;
        if (bytes > 0) {
            bits <<= (24 - b);
            for (int k = 0; k < bytes; ++k) {
                if (!overflow) destination[written + k] = static_cast<unsigned char>(bits >> (16 - 8 * k));
            }
            written += bytes;
            if (!overflow) stored = written;
        }
    }
    return Base64Outcome{!overflow, static_cast<int>(written), static_cast<int>(stored)};
}

std::string Base64DecodeOrKeep(std::string_view text) {
    if (text.size() > 0x7FFFFFFF) return std::string(text);
    std::vector<unsigned char> buffer(text.size() + 1, 0);
    int length = static_cast<int>(text.size());
    if (!Base64Decode(text.data(), static_cast<int>(text.size()), buffer.data(), &length)) return std::string(text);
    return std::string(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(length));
}

std::string Base64Encode(std::string_view bytes, std::size_t lineLength) {
    std::string plain;
    plain.reserve((bytes.size() + 2) / 3 * 4);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t n = bytes.size(), i = 0;
    for (; i + 3 <= n; i += 3) {
        std::uint32_t v = (std::uint32_t(p[i]) << 16) | (std::uint32_t(p[i + 1]) << 8) | p[i + 2];
        plain += kAlphabet[(v >> 18) & 63];
        plain += kAlphabet[(v >> 12) & 63];
        plain += kAlphabet[(v >> 6) & 63];
        plain += kAlphabet[v & 63];
    }
    if (n - i == 1) {
        std::uint32_t v = std::uint32_t(p[i]) << 16;
        plain += kAlphabet[(v >> 18) & 63];
        plain += kAlphabet[(v >> 12) & 63];
        plain += "==";
    } else if (n - i == 2) {
        std::uint32_t v = (std::uint32_t(p[i]) << 16) | (std::uint32_t(p[i + 1]) << 8);
        plain += kAlphabet[(v >> 18) & 63];
        plain += kAlphabet[(v >> 12) & 63];
        plain += kAlphabet[(v >> 6) & 63];
        plain += '=';
    }
    if (lineLength == 0 || plain.size() <= lineLength) return plain;
    std::string lines;
    lines.reserve(plain.size() + plain.size() / lineLength * 2);
    for (std::size_t at = 0; at < plain.size(); at += lineLength) {
        if (at) lines += "\r\n";
        lines.append(plain, at, lineLength);
    }
    return lines;
}
