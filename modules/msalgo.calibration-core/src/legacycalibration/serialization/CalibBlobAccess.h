#pragma once

#include <cstddef>
#include <cstring>
#include <vector>

namespace kvan::tqclegacy::CALIBRATION {

/// Reads a blob from its first byte on. The bytes stay the caller's and must outlive it.
class CalibBlobReadAccess {
public:
    explicit CalibBlobReadAccess(const std::vector<unsigned char>& blob) : m_next(blob.data()), m_left(blob.size()) {}

    /// Copies the next bytes and passes over them; false, with nothing done, when fewer are left.
    bool Read(void* buffer, std::size_t bytes) {
        if (bytes > m_left)
            return false;
        std::memcpy(buffer, m_next, bytes);
        m_next += bytes;
        m_left -= bytes;
        return true;
    }

    bool IsAtEnd() const { return m_left == 0; }

private:
    const unsigned char* m_next;
    std::size_t m_left;
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
