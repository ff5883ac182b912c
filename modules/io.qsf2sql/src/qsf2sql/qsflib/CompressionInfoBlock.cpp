#include "qsf2sql/qsflib/CompressionInfoBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/qsflib/MainFileRecords.h>

#include <algorithm>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>

namespace KVAN::io::QSF {

namespace {

/// The first three fields are numbers, stored low byte first; the canonical text has their high byte first.
std::string guidText(const CompressionInfoEntry& entry) {
    boost::uuids::uuid guid;
    std::copy(std::begin(entry.guid), std::end(entry.guid), guid.begin());
    std::reverse(guid.data, guid.data + 4);
    std::reverse(guid.data + 4, guid.data + 6);
    std::reverse(guid.data + 6, guid.data + 8);
    return boost::uuids::to_string(guid);
}

}  // namespace

//     0   CompressionInfoHeader: offset of the first entry from the block, number of entries
//     then, for each entry, CompressionInfoEntry: its size, the size of its text, the GUID; and the text
//
// The text is not used. It has to lie within the file all the same: an entry that promises one and ends before it is a
// read error, as a cut head is. Offsets are not held against the size of the block.
//
// Entries follow one another by the size that each claims. A size of 0 reads the same entry again, as often as the head
// counts, 255 times at most; so nothing here needs to be refused for the walk to end.
void CompressionInfoBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    const auto header = CQSFUtil::ReadHeader<CompressionInfoHeader>(reader, COMPRESSION_INFO);
    compressors.clear();
    std::uint64_t position = start + header.entryOffset;
    for (unsigned index = 0; index < header.entryCount; ++index) {
        reader.seekTo(position);
        const auto entry = kvan::io::readRecord<CompressionInfoEntry>(reader);
        reader.requireAvailable(entry.textSize, 1);
        compressors.push_back(guidText(entry));
        position += entry.size;
    }
}

}  // namespace KVAN::io::QSF
