#pragma once

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>

namespace kvan::binaryio {

/// What both directions of a stream share: one word of flags.
class BinaryBase {
public:
    /// Sizes of containers are 64 bits wide on this stream, otherwise 32.
    static constexpr std::uint32_t g_wideContainerSizes = 2;

    virtual ~BinaryBase() = default;

    std::uint32_t getFlags() const { return m_flags; }
    void setFlags(std::uint32_t flags) { m_flags = flags; }
    bool hasWideContainerSizes() const { return (m_flags & g_wideContainerSizes) != 0; }

protected:
    BinaryBase() = default;
    BinaryBase(const BinaryBase&) = default;
    BinaryBase& operator=(const BinaryBase&) = default;

private:
    std::uint32_t m_flags = 0;
};

/// From where a position counts. `End` counts backwards: the position is the size minus the offset. With any other
/// value the position stays.
namespace origin {
enum type { Begin = 0, Current = 1, End = 2 };
}

/// A stream that is read. All failures are `BinaryFailure`, none of them sticks, and the position stays where the last
/// success left it. One thread at a time.
class IBinaryBase : public virtual BinaryBase {
public:
    /// Reads exactly `bytes` or fails.
    virtual void doRead(unsigned char* destination, std::uint64_t bytes) = 0;
    /// Reads up to `bytes`; gives how many came, fewer only at the end of the data.
    virtual std::uint64_t readSome(unsigned char* destination, std::uint64_t bytes) = 0;
    /// Moves forward, at most to the end; all ones means up to the end.
    virtual void skip(std::uint64_t bytes) = 0;
    virtual bool isAtEnd() = 0;
    /// Fails as a read of `bytes` would, if the stream knows already that they are not there. To be asked before memory
    /// is taken for them.
    virtual void requireAvailable(std::uint64_t bytes) const = 0;
};

/// A stream that is written. Failures as with `IBinaryBase`. One thread at a time.
class OBinaryBase : public virtual BinaryBase {
public:
    virtual void write(const unsigned char* source, std::uint64_t bytes) = 0;
};

class IRanAccessBinary : public IBinaryBase {
public:
    virtual std::int64_t getReadPos() const = 0;
    /// The position must lie from 0 to the size, both included.
    virtual void doSetReadPos(origin::type from, std::int64_t offset) = 0;
    /// In bytes.
    virtual std::int64_t size() const = 0;
};

class ORanAccessBinary : public OBinaryBase {
public:
    virtual std::int64_t getWritePos() const = 0;
    virtual void doSetWritePos(origin::type from, std::int64_t offset) = 0;
    virtual std::int64_t size() const = 0;
};

template <class T>
concept StreamedNumber = std::integral<T> || std::floating_point<T>;

/// Turns bytes of the stream's order, little-endian, into the host's.
template <StreamedNumber T>
T fromStreamOrder(T value) {
    static_assert(std::endian::native == std::endian::little);
    return value;
}

/// Integers and floats of 8 to 64 bits, stored as their bytes.
template <StreamedNumber T>
IBinaryBase& operator>>(IBinaryBase& stream, T& value) {
    static_assert(sizeof(T) <= 8);
    T read;
    stream.doRead(reinterpret_cast<unsigned char*>(&read), sizeof read);
    value = fromStreamOrder(read);
    return stream;
}

/// One byte; any but zero is true.
IBinaryBase& operator>>(IBinaryBase& stream, bool& value);

/// A record that is packed as its format lays it out (see `binaryio/packed_record.h`).
template <class Record>
Record readRecord(IBinaryBase& stream) {
    static_assert(std::is_trivially_copyable_v<Record> && alignof(Record) == 1);
    static_assert(std::endian::native == std::endian::little);
    Record record;
    stream.doRead(reinterpret_cast<unsigned char*>(&record), sizeof record);
    return record;
}

/// A count of elements, in the width that the stream's flags say.
std::uint64_t readContainerSize(IBinaryBase& stream);

/// The bytes of `count` elements of `elementSize`, which is not 0. Fails as a read of them would, if the stream knows
/// already that they are not there.
std::uint64_t requireElements(const IBinaryBase& stream, std::uint64_t count, std::uint64_t elementSize);

/// `count` numbers or characters in their container: a vector or a string. The way to take an array out of a stream:
/// the count may be any claim of a file and takes no more memory than bytes are there to fill it.
template <class Container>
Container readArray(IBinaryBase& stream, std::uint64_t count) {
    using Element = typename Container::value_type;
    static_assert(StreamedNumber<Element> && std::endian::native == std::endian::little);
    // A stream that cannot tell how much is left is read piece by piece, so that a false count takes no memory.
    constexpr std::uint64_t largestPiece = 0x10000 / sizeof(Element);
    requireElements(stream, count, sizeof(Element));
    Container elements;
    for (std::uint64_t done = 0; done < count; done = elements.size()) {
        const std::uint64_t piece = std::min(count - done, largestPiece);
        elements.resize(done + piece);
        stream.doRead(reinterpret_cast<unsigned char*>(elements.data() + done), piece * sizeof(Element));
    }
    return elements;
}

/// A tagged text, "CString-ASCII" or "std_string_ascii". `text` is untouched unless all of it was read.
IBinaryBase& operator>>(IBinaryBase& stream, std::string& text);

}  // namespace kvan::binaryio
