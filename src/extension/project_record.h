#pragma once
// The record an extension object keeps in the host's project file, in the host
// archive's little-endian encoding:
//
//   version      32-bit integer, always 100 when written, not checked on load
//   object ID    32-bit signed integer
//   count        16-bit; 65535 or more is 0xFFFF followed by a 32-bit count
//   pairs        count x (key, value)
//
// A string is its length and its bytes: below 255 one length byte; below
// 65534 the byte 0xFF and a 16-bit length; otherwise 0xFF, 0xFFFF and a
// 32-bit length. Pairs are written in the property values map's iteration
// order.
//
// Bytes travel through CByteSource / CByteSink, so the plug-in can feed the
// host archive's Read and Write and pwext can use plain files.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xml/hashed_string_map.h"

class CByteSource {
public:
    virtual ~CByteSource() = default;
    // Reads up to size bytes into destination; returns how many were read.
    // Fewer than size means the data has ended.
    virtual std::size_t Read(void* destination, std::size_t size) = 0;
};

class CByteSink {
public:
    virtual ~CByteSink() = default;
    virtual void Write(const void* bytes, std::size_t size) = 0;
};

// Bytes held in memory.
class CMemoryByteSource : public CByteSource {
public:
    explicit CMemoryByteSource(std::string_view bytes) : bytes_(bytes) {}
    std::size_t Read(void* destination, std::size_t size) override;
    std::size_t Position() const { return position_; }

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
};

class CMemoryByteSink : public CByteSink {
public:
    void Write(const void* bytes, std::size_t size) override;
    const std::string& Bytes() const { return bytes_; }

private:
    std::string bytes_;
};

constexpr std::uint32_t kProjectRecordVersion = 100;

// What a record holds, pairs in stored order.
struct ProjectRecord {
    std::uint32_t version = 0;
    std::int32_t id = 0;
    std::vector<std::pair<std::string, std::string>> pairs;
};

enum class RecordReadStatus {
    kComplete,
    // The bytes ended inside the field named by the error's message.
    kEndOfData,
};

struct RecordReadResult {
    RecordReadStatus status = RecordReadStatus::kComplete;
    // One line for the user, e.g. "the project record ends inside the value
    // of pair 3 of 5"; empty when complete.
    std::string message;
    bool ok() const { return status == RecordReadStatus::kComplete; }
};

// Writes version 100, id and the map's pairs in iteration order.
void WriteProjectRecord(CByteSink& sink, std::int32_t id, const CHashedStringMap& values);

// Reads a record of any version. On failure, record holds every field and
// every whole pair read before the failure (versionRead / idRead tell
// whether those fields arrived). A record claiming more bytes than the source
// holds is reported without allocating what it claims.
struct ProjectRecordProgress {
    bool versionRead = false;
    bool idRead = false;
};
RecordReadResult ReadProjectRecord(CByteSource& source, ProjectRecord& record,
                                   ProjectRecordProgress* progress = nullptr);

// The archive encodings of single fields, for callers that need them alone.
void WriteArchiveCount(CByteSink& sink, std::uint32_t count);
void WriteArchiveString(CByteSink& sink, std::string_view text);
