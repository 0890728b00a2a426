#pragma once
// The byte stream that grid cells write themselves to and read themselves
// from. Numbers are little-endian, texts carry a 32-bit length in front.
// Reading past the end never throws: it yields zeros and empty texts and
// marks the archive as failed, so a truncated record cannot crash a reader.
#include <cstdint>
#include <string>
#include <vector>

class CExtGridArchive {
public:
    // An archive for writing, starting empty.
    CExtGridArchive() : m_loading(false) {}
    // An archive for reading the given bytes.
    explicit CExtGridArchive(std::vector<std::uint8_t> bytes) : m_loading(true), m_bytes(std::move(bytes)) {}

    bool IsLoading() const { return m_loading; }
    bool IsStoring() const { return !m_loading; }
    // True once a read ran past the end of the data.
    bool Failed() const { return m_failed; }
    bool AtEnd() const { return m_readPos >= m_bytes.size(); }

    const std::vector<std::uint8_t>& Bytes() const { return m_bytes; }

    void WriteInt32(std::int32_t value);
    void WriteString(const std::string& text);
    void WriteBool(bool value) { WriteInt32(value ? 1 : 0); }

    std::int32_t ReadInt32();
    std::string ReadString();
    bool ReadBool() { return ReadInt32() != 0; }

    // Writes or reads depending on the direction, for Serialize bodies that
    // read the same way they write.
    void Exchange(std::int32_t& value);
    void Exchange(std::string& text);
    void Exchange(bool& value);

private:
    bool ReadBytes(void* out, std::size_t count);

    bool m_loading;
    bool m_failed = false;
    std::vector<std::uint8_t> m_bytes;
    std::size_t m_readPos = 0;
};
