#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace kvan::tqclegacy::CALIBRATION {

/// Reads a blob. The bytes stay the caller's and must outlive it.
class CalibBlobReadAccess {
public:
    explicit CalibBlobReadAccess(const std::vector<unsigned char>& blob) : m_bytes(blob.data()), m_size(blob.size()) {}

    /// Copies the next bytes and passes over them; false, with nothing done, when fewer are left.
    bool Read(void* buffer, std::size_t bytes) {
        if (bytes > BytesLeft())
            return false;
        std::memcpy(buffer, m_bytes + m_position, bytes);
        m_position += bytes;
        m_farthest = std::max(m_farthest, m_position);
        return true;
    }

    /// Goes on at that byte; false, with nothing done, beyond the end.
    bool Seek(std::size_t position) {
        if (position > m_size)
            return false;
        m_position = position;
        return true;
    }

    /// Goes on after the farthest byte that was read.
    void SeekToFarthest() { m_position = m_farthest; }

    std::size_t Position() const { return m_position; }
    std::size_t BytesLeft() const { return m_size - m_position; }
    bool IsAtEnd() const { return m_position == m_size; }

private:
    const unsigned char* m_bytes;
    std::size_t m_size;
    std::size_t m_position = 0;
    std::size_t m_farthest = 0;
};

/// Appends to a blob, which must outlive it.
class CalibBlobWriteAccess {
public:
    explicit CalibBlobWriteAccess(std::vector<unsigned char>& blob) : m_blob(blob) {}

    bool Write(const void* buffer, std::size_t bytes) {
        const auto* const first = static_cast<const unsigned char*>(buffer);
        m_blob.insert(m_blob.end(), first, first + bytes);
        return true;
    }

private:
    std::vector<unsigned char>& m_blob;
};

}  // namespace kvan::tqclegacy::CALIBRATION
