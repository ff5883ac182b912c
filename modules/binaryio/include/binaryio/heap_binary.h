#pragma once

#include <binaryio/binary_base.h>

#include <vector>

namespace kvan::binaryio {

/// Reads bytes in memory that belong to somebody else and outlive the stream.
class IHeapBinary final : public IRanAccessBinary {
public:
    IHeapBinary(const void* start, std::uint64_t size)
        : m_start(static_cast<const unsigned char*>(start)), m_size(size) {}

    void doRead(unsigned char* destination, std::uint64_t bytes) override;
    std::uint64_t readSome(unsigned char* destination, std::uint64_t bytes) override;
    void skip(std::uint64_t bytes) override;
    bool isAtEnd() override { return m_position == m_size; }
    void requireAvailable(std::uint64_t bytes) const override;

    std::int64_t getReadPos() const override { return static_cast<std::int64_t>(m_position); }
    void doSetReadPos(origin::type from, std::int64_t offset) override;
    std::int64_t size() const override { return static_cast<std::int64_t>(m_size); }

private:
    const unsigned char* m_start;
    std::uint64_t m_size;
    std::uint64_t m_position = 0;
};

/// Writes into memory of its own, over what is there and beyond its end.
class OHeapBinary final : public ORanAccessBinary {
public:
    void write(const unsigned char* source, std::uint64_t bytes) override;

    std::int64_t getWritePos() const override { return static_cast<std::int64_t>(m_position); }
    void doSetWritePos(origin::type from, std::int64_t offset) override;
    std::int64_t size() const override { return static_cast<std::int64_t>(m_bytes.size()); }

    /// Stays valid until the next write. Null while nothing has been written.
    unsigned char* data() { return m_bytes.empty() ? nullptr : m_bytes.data(); }

    /// Gives the memory back and starts anew.
    void clear();

private:
    std::vector<unsigned char> m_bytes;
    std::uint64_t m_position = 0;
};

}  // namespace kvan::binaryio
