#include "grid/grid_archive.h"

#include <cstring>

void CExtGridArchive::WriteInt32(std::int32_t value) {
    std::uint32_t v = static_cast<std::uint32_t>(value);
    for (int i = 0; i < 4; ++i) m_bytes.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

void CExtGridArchive::WriteString(const std::string& text) {
    WriteInt32(static_cast<std::int32_t>(text.size()));
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
}

bool CExtGridArchive::ReadBytes(void* out, std::size_t count) {
    if (m_failed || m_bytes.size() - m_readPos < count) {
        m_failed = true;
        m_readPos = m_bytes.size();
        std::memset(out, 0, count);
        return false;
    }
    std::memcpy(out, m_bytes.data() + m_readPos, count);
    m_readPos += count;
    return true;
}

std::int32_t CExtGridArchive::ReadInt32() {
    std::uint8_t b[4];
    if (!ReadBytes(b, 4)) return 0;
    return static_cast<std::int32_t>(std::uint32_t(b[0]) | std::uint32_t(b[1]) << 8 | std::uint32_t(b[2]) << 16 |
                                     std::uint32_t(b[3]) << 24);
}

std::string CExtGridArchive::ReadString() {
    std::int32_t length = ReadInt32();
    if (length < 0 || static_cast<std::size_t>(length) > m_bytes.size() - m_readPos) {
        m_failed = true;
        m_readPos = m_bytes.size();
        return std::string();
    }
    std::string text(reinterpret_cast<const char*>(m_bytes.data() + m_readPos), length);
    m_readPos += length;
    return text;
}

void CExtGridArchive::Exchange(std::int32_t& value) {
    if (m_loading)
        value = ReadInt32();
    else
        WriteInt32(value);
}

void CExtGridArchive::Exchange(std::string& text) {
    if (m_loading)
        text = ReadString();
    else
        WriteString(text);
}

void CExtGridArchive::Exchange(bool& value) {
    if (m_loading)
        value = ReadBool();
    else
        WriteBool(value);
}
