#include "xml/hashed_string_map.h"

#include <algorithm>

unsigned CHashedStringMap::BucketOf(std::string_view key) {
    std::uint32_t h = 0;
    for (unsigned char c : key) h = h * 33u + c;
    return h % kBucketCount;
}

void CHashedStringMap::Set(std::string_view key, std::string_view value) {
    auto found = index_.find(std::string(key));
    if (found != index_.end()) {
        entries_[found->second].value.assign(value.data(), value.size());
        return;
    }
    std::size_t slot;
    if (!free_.empty()) {
        slot = free_.back();
        free_.pop_back();
        entries_[slot] = Entry{std::string(key), std::string(value)};
    } else {
        slot = entries_.size();
        entries_.push_back(Entry{std::string(key), std::string(value)});
    }
    buckets_[BucketOf(key)].push_back(slot);
    index_.emplace(std::string(key), slot);
}

const std::string* CHashedStringMap::Find(std::string_view key) const {
    auto found = index_.find(std::string(key));
    return found == index_.end() ? nullptr : &entries_[found->second].value;
}

bool CHashedStringMap::Remove(std::string_view key) {
    auto found = index_.find(std::string(key));
    if (found == index_.end()) return false;
    std::size_t slot = found->second;
    std::vector<std::size_t>& bucket = buckets_[BucketOf(key)];
    bucket.erase(std::find(bucket.begin(), bucket.end(), slot));
    index_.erase(found);
    entries_[slot] = Entry{};
    free_.push_back(slot);
    return true;
}

void CHashedStringMap::Clear() {
    entries_.clear();
    for (auto& b : buckets_) b.clear();
    index_.clear();
    free_.clear();
}

std::vector<std::pair<std::string, std::string>> CHashedStringMap::Items() const {
    std::vector<std::pair<std::string, std::string>> items;
    items.reserve(Size());
    ForEach([&](const std::string& k, const std::string& v) { items.emplace_back(k, v); });
    return items;
}
