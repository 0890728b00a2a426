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
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

class CHashedStringMap {
public:
    static constexpr unsigned kBucketCount = 17;
    static unsigned BucketOf(std::string_view key);

    CHashedStringMap() = default;
    CHashedStringMap(const CHashedStringMap&) = default;
    CHashedStringMap& operator=(const CHashedStringMap&) = default;
    CHashedStringMap(CHashedStringMap&&) noexcept = default;
    CHashedStringMap& operator=(CHashedStringMap&&) noexcept = default;

    // Creates or replaces the entry; a replaced entry keeps its place.
    void Set(std::string_view key, std::string_view value);
    // The value for key, or null when absent.
    const std::string* Find(std::string_view key) const;
    bool Contains(std::string_view key) const { return Find(key) != nullptr; }
    bool Remove(std::string_view key);
    void Clear();

    std::size_t Size() const { return index_.size(); }
    bool Empty() const { return index_.empty(); }

    // Calls f(key, value) for every entry in iteration order.
    template <class F>
    void ForEach(F&& f) const {
        for (unsigned b = 0; b < kBucketCount; ++b) {
            const std::vector<std::size_t>& slots = buckets_[b];
            for (auto it = slots.rbegin(); it != slots.rend(); ++it) {
                const Entry& e = entries_[*it];
                f(e.key, e.value);
            }
        }
    }
    // The entries in iteration order.
    std::vector<std::pair<std::string, std::string>> Items() const;

    bool operator==(const CHashedStringMap& other) const { return Items() == other.Items(); }

private:
    struct Entry {
        std::string key;
        std::string value;
    };
    // entries_ holds every live and removed entry; buckets_[b] lists the slots
    // of bucket b, oldest first; index_ finds a key's slot.
    std::vector<Entry> entries_;
    std::vector<std::size_t> buckets_[kBucketCount];
    std::unordered_map<std::string, std::size_t> index_;
    std::vector<std::size_t> free_;
};
