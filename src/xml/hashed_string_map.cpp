#include "xml/hashed_string_map.h"

CHashedStringMap::CHashedStringMap() {
    for (std::uint32_t& head : heads_) head = kNone;
}

CHashedStringMap::CHashedStringMap(CHashedStringMap&& other) noexcept : CHashedStringMap() { *this = std::move(other); }

CHashedStringMap& CHashedStringMap::operator=(CHashedStringMap&& other) noexcept {
    if (this == &other) return *this;
    entries_ = std::move(other.entries_);
    free_ = std::move(other.free_);
    index_ = std::move(other.index_);
    for (unsigned b = 0; b < kBucketCount; ++b) heads_[b] = other.heads_[b];
    size_ = other.size_;
    other.Clear();
    return *this;
}

std::uint32_t CHashedStringMap::Locate(std::string_view key, std::uint32_t hash) const {
    if (index_.empty()) {
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            const Entry& e = entries_[i];
            if (e.live && e.hash == hash && e.key == key) return static_cast<std::uint32_t>(i);
        }
        return kNone;
    }
    const std::size_t mask = index_.size() - 1;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        std::uint32_t entry = index_[at];
        if (entry == kNone) return kNone;
        const Entry& e = entries_[entry];
        if (e.hash == hash && e.key == key) return entry;
    }
}

void CHashedStringMap::Index(std::uint32_t entry) {
    const std::size_t mask = index_.size() - 1;
    std::size_t at = entries_[entry].hash & mask;
    while (index_[at] != kNone) at = (at + 1) & mask;
    index_[at] = entry;
}

void CHashedStringMap::Unindex(std::uint32_t entry) {
    const std::size_t mask = index_.size() - 1;
    std::size_t at = entries_[entry].hash & mask;
    while (index_[at] != entry) at = (at + 1) & mask;
    index_[at] = kNone;
    // The entries after it in its run go where a lookup will find them now.
    for (at = (at + 1) & mask; index_[at] != kNone; at = (at + 1) & mask) {
        std::uint32_t moved = index_[at];
        index_[at] = kNone;
        Index(moved);
    }
}

void CHashedStringMap::RebuildIndex() {
    index_.clear();
    if (size_ <= kScanLimit) return;
    std::size_t slots = 16;
    while (slots < size_ * 2) slots *= 2;
    index_.assign(slots, kNone);
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (entries_[i].live) Index(static_cast<std::uint32_t>(i));
}

void CHashedStringMap::Set(std::string_view key, std::string_view value) {
    const std::uint32_t hash = HashOf(key);
    std::uint32_t found = Locate(key, hash);
    if (found != kNone) {
        entries_[found].value.assign(value.data(), value.size());
        return;
    }
    std::uint32_t slot;
    if (!free_.empty()) {
        slot = free_.back();
        free_.pop_back();
    } else {
        slot = static_cast<std::uint32_t>(entries_.size());
        entries_.emplace_back();
    }
    Entry& e = entries_[slot];
    e.key.assign(key.data(), key.size());
    e.value.assign(value.data(), value.size());
    e.hash = hash;
    e.live = true;
    std::uint32_t& head = heads_[hash % kBucketCount];
    e.next = head;
    head = slot;
    ++size_;
    if (size_ > kScanLimit && size_ * 2 > index_.size())
        RebuildIndex();
    else if (!index_.empty())
        Index(slot);
}

const std::string* CHashedStringMap::Find(std::string_view key) const {
    std::uint32_t found = Locate(key, HashOf(key));
    return found == kNone ? nullptr : &entries_[found].value;
}

bool CHashedStringMap::Remove(std::string_view key) {
    const std::uint32_t hash = HashOf(key);
    std::uint32_t found = Locate(key, hash);
    if (found == kNone) return false;
    for (std::uint32_t* link = &heads_[hash % kBucketCount]; *link != kNone; link = &entries_[*link].next) {
        if (*link == found) {
            *link = entries_[found].next;
            break;
        }
    }
    if (!index_.empty()) Unindex(found);
    entries_[found] = Entry{};
    free_.push_back(found);
    --size_;
    return true;
}

void CHashedStringMap::Clear() {
    entries_.clear();
    free_.clear();
    index_.clear();
    for (std::uint32_t& head : heads_) head = kNone;
    size_ = 0;
}

std::vector<std::pair<std::string, std::string>> CHashedStringMap::Items() const {
    std::vector<std::pair<std::string, std::string>> items;
    items.reserve(size_);
    ForEach([&](const std::string& k, const std::string& v) { items.emplace_back(k, v); });
    return items;
}
