#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

namespace kvan::compression {

/// The bytes of a block in memory, taken from the front. A step that asks for more than is left takes nothing and says
/// so: the one place where a coder's claims meet the end of its block.
class BlockBytes {
public:
    explicit BlockBytes(std::span<const unsigned char> bytes) : m_left(bytes) {}

    template <class Record>
    bool take(Record& record) {
        static_assert(std::is_trivially_copyable_v<Record>);
        if (m_left.size() < sizeof record)
            return false;
        std::memcpy(&record, m_left.data(), sizeof record);
        return skip(sizeof record);
    }

    bool skip(std::size_t count) {
        if (m_left.size() < count)
            return false;
        m_left = m_left.subspan(count);
        return true;
    }

    /// Copies what is left to the front of `room`, as far as that reaches; the room after it stays as it is.
    void copyTo(std::span<unsigned char> room) const {
        std::memcpy(room.data(), m_left.data(), std::min(m_left.size(), room.size()));
    }

    std::span<const unsigned char> left() const { return m_left; }

private:
    std::span<const unsigned char> m_left;
};

/// The bytes of `count` elements, which belong to somebody else.
template <class T>
std::span<const unsigned char> bytesOf(const T* elements, std::size_t count) {
    return {reinterpret_cast<const unsigned char*>(elements), count * sizeof(T)};
}

/// The bytes of `elements` after the first `used`, none if there are no more.
template <class T>
std::span<unsigned char> bytesAfter(std::vector<T>& elements, std::size_t used) {
    const std::size_t size = elements.size() * sizeof(T);
    const std::size_t begin = used < size ? used : size;
    return {reinterpret_cast<unsigned char*>(elements.data()) + begin, size - begin};
}

}  // namespace kvan::compression
