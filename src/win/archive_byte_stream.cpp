#include "win/archive_byte_stream.h"

#include "win/mfc42_runtime.h"

std::size_t CArchiveByteSource::Read(void* destination, std::size_t size) {
    return mfc42::ArchiveRead(archive_, destination, size);
}

void CArchiveByteSink::Write(const void* bytes, std::size_t size) { mfc42::ArchiveWrite(archive_, bytes, size); }
