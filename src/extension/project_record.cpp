#include "extension/project_record.h"

#include <algorithm>
#include <cstring>

std::size_t CMemoryByteSource::Read(void* destination, std::size_t size) {
    std::size_t n = std::min(size, bytes_.size() - position_);
    if (n) std::memcpy(destination, bytes_.data() + position_, n);
    position_ += n;
    return n;
}

void CMemoryByteSink::Write(const void* bytes, std::size_t size) {
    bytes_.append(static_cast<const char*>(bytes), size);
}

namespace {

void WriteLittleEndian(CByteSink& sink, std::uint32_t value, int bytes) {
    unsigned char out[4];
    for (int i = 0; i < bytes; ++i) out[i] = static_cast<unsigned char>(value >> (8 * i));
    sink.Write(out, static_cast<std::size_t>(bytes));
}

// Reads the record field by field; every read names what it is reading so
// that a record that ends early is reported precisely.
class RecordReader {
public:
    explicit RecordReader(CByteSource& source) : source_(source) {}

    bool Number(int bytes, std::uint32_t& value, const std::string& what) {
        unsigned char in[4] = {0, 0, 0, 0};
        if (source_.Read(in, static_cast<std::size_t>(bytes)) != static_cast<std::size_t>(bytes)) {
            return Fail(what);
        }
        value = 0;
        for (int i = 0; i < bytes; ++i) value |= std::uint32_t(in[i]) << (8 * i);
        return true;
    }

    bool Count(std::uint32_t& count, const std::string& what) {
        if (!Number(2, count, what)) return false;
        if (count != 0xFFFF) return true;
        return Number(4, count, what);
    }

    bool String(std::string& text, const std::string& what) {
        std::uint32_t length = 0;
        if (!Number(1, length, what)) return false;
        if (length == 0xFF) {
            if (!Number(2, length, what)) return false;
            if (length == 0xFFFF && !Number(4, length, what)) return false;
        }
        // Grow with what actually arrives, so a garbled length cannot make
        // us allocate gigabytes for a record that is a few bytes long.
        text.clear();
        constexpr std::size_t kChunk = 64 * 1024;
        std::size_t remaining = length;
        while (remaining > 0) {
            std::size_t want = std::min(remaining, kChunk);
            std::size_t old = text.size();
            text.resize(old + want);
            std::size_t got = source_.Read(&text[old], want);
            if (got != want) {
                text.resize(old + got);
                return Fail(what);
            }
            remaining -= want;
        }
        return true;
    }

    const std::string& Failure() const { return failure_; }

private:
    bool Fail(const std::string& what) {
        failure_ = "the project record ends inside " + what;
        return false;
    }

    CByteSource& source_;
    std::string failure_;
};

}  // namespace

void WriteArchiveCount(CByteSink& sink, std::uint32_t count) {
    if (count < 0xFFFF) {
        WriteLittleEndian(sink, count, 2);
    } else {
        WriteLittleEndian(sink, 0xFFFF, 2);
        WriteLittleEndian(sink, count, 4);
    }
}

void WriteArchiveString(CByteSink& sink, std::string_view text) {
    std::size_t length = text.size();
    if (length < 0xFF) {
        WriteLittleEndian(sink, static_cast<std::uint32_t>(length), 1);
    } else if (length < 0xFFFE) {
        WriteLittleEndian(sink, 0xFF, 1);
        WriteLittleEndian(sink, static_cast<std::uint32_t>(length), 2);
    } else {
        WriteLittleEndian(sink, 0xFF, 1);
        WriteLittleEndian(sink, 0xFFFF, 2);
        WriteLittleEndian(sink, static_cast<std::uint32_t>(length), 4);
    }
    if (length) sink.Write(text.data(), length);
}

void WriteProjectRecord(CByteSink& sink, std::int32_t id, const CHashedStringMap& values) {
    WriteLittleEndian(sink, kProjectRecordVersion, 4);
    WriteLittleEndian(sink, static_cast<std::uint32_t>(id), 4);
    WriteArchiveCount(sink, static_cast<std::uint32_t>(values.Size()));
    values.ForEach([&sink](const std::string& key, const std::string& value) {
        WriteArchiveString(sink, key);
        WriteArchiveString(sink, value);
    });
}

RecordReadResult ReadProjectRecord(CByteSource& source, ProjectRecord& record, ProjectRecordProgress* progress) {
    ProjectRecordProgress local;
    ProjectRecordProgress& seen = progress ? *progress : local;
    RecordReader in(source);
    RecordReadResult result;
    auto fail = [&in, &result]() {
        result.status = RecordReadStatus::kEndOfData;
        result.message = in.Failure();
        return result;
    };

    std::uint32_t number = 0;
    if (!in.Number(4, number, "the version")) return fail();
    record.version = number;
    seen.versionRead = true;
    if (!in.Number(4, number, "the object ID")) return fail();
    record.id = static_cast<std::int32_t>(number);
    seen.idRead = true;

    std::uint32_t count = 0;
    if (!in.Count(count, "the property count")) return fail();
    for (std::uint32_t i = 0; i < count; ++i) {
        std::string of = " of pair " + std::to_string(i + 1) + " of " + std::to_string(count);
        std::string key, value;
        if (!in.String(key, "the key" + of)) return fail();
        if (!in.String(value, "the value" + of)) return fail();
        record.pairs.emplace_back(std::move(key), std::move(value));
    }
    return result;
}
