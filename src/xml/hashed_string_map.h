#pragma once
// A string-to-string map that iterates in the host runtime's hash order.
//
// The host's string map hashes a key into one of 17 buckets (h = h * 33 + byte,
// unsigned 32-bit), walks the buckets in ascending order and, inside a bucket,
// returns the most recently inserted key first. Setting a key that is already
// present replaces its value and keeps its place. Attribute text and project
// records are written in this order, so the order is part of the file formats.
//
// Keys and values are arbitrary bytes (zero bytes included). Lookups are exact
// and case-sensitive.
//
// Most maps are an element's few attributes, so the map is small: the entries
// in one array, each bucket a chain through them (newest first), and a hash
// table of entry numbers only once there are more than a few keys.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class CHashedStringMap {
public:
    static constexpr unsigned kBucketCount = 17;
    static unsigned BucketOf(std::string_view key) { return HashOf(key) % kBucketCount; }

    CHashedStringMap();
    CHashedStringMap(const CHashedStringMap&) = default;
    CHashedStringMap& operator=(const CHashedStringMap&) = default;
    // A map moved from is left empty.
    CHashedStringMap(CHashedStringMap&& other) noexcept;
    CHashedStringMap& operator=(CHashedStringMap&& other) noexcept;

    // Creates or replaces the entry; a replaced entry keeps its place.
    void Set(std::string_view key, std::string_view value);
    // The value for key, or null when absent.
    const std::string* Find(std::string_view key) const;
    bool Contains(std::string_view key) const { return Find(key) != nullptr; }
    bool Remove(std::string_view key);
    void Clear();

    std::size_t Size() const { return size_; }
    bool Empty() const { return size_ == 0; }

    // Calls f(key, value) for every entry in iteration order.
    template <class F>
    void ForEach(F&& f) const {
        for (std::uint32_t head : heads_)
            for (std::uint32_t at = head; at != kNone; at = entries_[at].next) f(entries_[at].key, entries_[at].value);
    }
    // The entries in iteration order.
    std::vector<std::pair<std::string, std::string>> Items() const;

    bool operator==(const CHashedStringMap& other) const { return Items() == other.Items(); }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;
    // Up to this many keys are found by walking the entries.
    static constexpr std::size_t kScanLimit = 8;

    static std::uint32_t HashOf(std::string_view key) {
        std::uint32_t h = 0;
        for (unsigned char c : key) h = h * 33u + c;
        return h;
    }

    struct Entry {
        std::string key;
        std::string value;
        std::uint32_t hash = 0;
        std::uint32_t next = kNone;  // the next older entry of the same bucket
        bool live = false;
    };

    std::uint32_t Locate(std::string_view key, std::uint32_t hash) const;
    void Index(std::uint32_t entry);
    void Unindex(std::uint32_t entry);
    void RebuildIndex();

    std::vector<Entry> entries_;           // live ones and the free slots of removed ones
    std::vector<std::uint32_t> free_;      // slots of removed entries
    std::uint32_t heads_[kBucketCount];    // each bucket's newest entry
    std::vector<std::uint32_t> index_;     // open addressing over entry numbers; empty while small
    std::size_t size_ = 0;
};
