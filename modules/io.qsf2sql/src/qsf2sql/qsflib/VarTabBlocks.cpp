#include "qsf2sql/qsflib/VarTabBlocks.h"

#include "qsf2sql/qsflib/QSFUtil.h"

#include <algorithm>
#include <span>

// The tables of values in the pools of the conditions: a head, then entries of fixed size (scalar numbers) or with a
// head of their own (texts and vectors). A generation reads some of them for every spectrum, so the bytes of a table go
// into one block of memory that only grows, and an entry is a view of it.
//
// Counts and sizes are claims. A head's count is held against the bytes that the block and its pool leave, an entry's
// size against what is left of those, an entry's count against its size; each fault is a read error. Tolerated: bytes
// of an entry after what its count needs.
namespace KVAN::io::QSF {

namespace {

using kvan::io::QSFBlockedReader;

/// Reads the head of a table and moves to its first entry. Gives the bytes that the entries may take: at least
/// `entrySize` for each that the head counts.
template <class Header>
std::uint64_t readHeader(QSFBlockedReader& reader, _RESOURCE_TYPE type, std::uint64_t poolEnd, std::size_t entrySize,
                         Header& header) {
    const std::uint64_t start = reader.tell();
    header = CQSFUtil::ReadHeader<Header>(reader, type);
    const std::uint64_t first = start + header.entryOffset;
    const std::uint64_t end = std::min(start + header.resource.size, poolEnd);
    const std::uint64_t size = end > first ? end - first : 0;
    if (header.entryCount > size / entrySize)
        reader.readError();
    reader.seekTo(first);
    return size;
}

std::string_view textOf(std::string_view bytes, std::uint16_t count, bool& fits) {
    fits = count <= bytes.size();
    const std::string_view text = bytes.substr(0, count);
    return text.substr(0, text.find_last_not_of('\0') + 1);
}

template <class Element>
std::string_view vectorOf(std::string_view bytes, std::uint16_t count, bool& fits) {
    // Tolerated: an entry that is only its head, with any count, is an empty vector.
    fits = bytes.empty() || count <= bytes.size() / sizeof(Element);
    return bytes.substr(0, count * sizeof(Element));
}

template <>
std::string_view vectorOf<std::string>(std::string_view bytes, std::uint16_t count, bool&) {
    // Tolerated: another number of texts than counted gives an empty vector.
    const auto parts = std::count(bytes.begin(), bytes.end(), '\0') + 1;
    return parts == count ? bytes : std::string_view();
}

}  // namespace

void VarTabDataEntries::Read(QSFBlockedReader& reader, std::uint32_t count, std::uint64_t size, DataOf dataOf) {
    m_entries.clear();
    if (count == 0)
        return;
    // Checked as a whole and not by a `readArray` for each entry: all entries share this memory, of which they are
    // views, so it may not move, and shrinking it would fill it with zeros anew for each spectrum.
    reader.requireAvailable(size, 1);
    if (m_bytes.size() < size)
        m_bytes.resize(size);
    char* free = m_bytes.data();
    std::uint64_t left = size;
    for (; count > 0; --count) {
        const auto head = kvan::io::readRecord<VarTabEntryHead>(reader);
        if (head.size < sizeof head || head.size > left)
            reader.readError();
        const std::span bytesOfEntry(free, head.size - sizeof head);
        kvan::io::readArray(reader, bytesOfEntry);
        const std::string_view bytes(bytesOfEntry.data(), bytesOfEntry.size());
        bool fits = true;
        m_entries.push_back({head.variable, dataOf(bytes, head.count, fits)});
        if (!fits)
            reader.readError();
        free += bytes.size();
        left -= head.size;
    }
}

template <class Header>
void VarTabValueBlock_Generic<Header>::Read(QSFBlockedReader& reader, std::uint64_t poolEnd) {
    readHeader(reader, type, poolEnd, sizeof(VarTabValueEntry), header);
    kvan::io::readArray(reader, header.entryCount, entries);
}

template <class Header>
void VarTabStringBlock_Generic<Header>::Read(QSFBlockedReader& reader, std::uint64_t poolEnd) {
    const std::uint64_t size = readHeader(reader, type, poolEnd, sizeof(VarTabEntryHead), header);
    entries.Read(reader, header.entryCount, size, &textOf);
}

template <class Header, class Element>
void TypedVarTabValueBlock_Generic<Header, Element>::Read(QSFBlockedReader& reader, std::uint64_t poolEnd) {
    const std::uint64_t size = readHeader(reader, type, poolEnd, sizeof(VarTabEntryHead), header);
    entries.Read(reader, header.entryCount, size, &vectorOf<Element>);
}

template class VarTabValueBlock_Generic<_VAR_TAB_HEADER>;
template class VarTabStringBlock_Generic<_STRING_TAB_HEADER>;
template class TypedVarTabValueBlock_Generic<_TYPED_VAR_TAB_HEADER, int>;
template class TypedVarTabValueBlock_Generic<_TYPED_VAR_TAB_HEADER, double>;
template class TypedVarTabValueBlock_Generic<_TYPED_VAR_TAB_HEADER, std::string>;
template class VarTabValueBlock_Generic<_VAR_TAB_HEADER_EXTENDED>;
template class VarTabStringBlock_Generic<_STRING_TAB_HEADER_EXTENDED>;
template class TypedVarTabValueBlock_Generic<_TYPED_VAR_TAB_HEADER_EXTENDED, int>;
template class TypedVarTabValueBlock_Generic<_TYPED_VAR_TAB_HEADER_EXTENDED, double>;
template class TypedVarTabValueBlock_Generic<_TYPED_VAR_TAB_HEADER_EXTENDED, std::string>;

}  // namespace KVAN::io::QSF
