#pragma once
// The host's CArchive as a byte source and sink for the project record codec:
// every byte goes through the archive's own Read and Write.
#include <cstddef>

#include "extension/project_record.h"

class CArchiveByteSource : public CByteSource {
public:
    explicit CArchiveByteSource(void* archive) : archive_(archive) {}
    std::size_t Read(void* destination, std::size_t size) override;

private:
    void* archive_;
};

class CArchiveByteSink : public CByteSink {
public:
    explicit CArchiveByteSink(void* archive) : archive_(archive) {}
    void Write(const void* bytes, std::size_t size) override;

private:
    void* archive_;
};
