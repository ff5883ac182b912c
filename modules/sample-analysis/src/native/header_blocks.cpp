#include "native/header_blocks.h"

#include "native/block_file.h"

#include <qsf2sql/qsflib/MainFileRecords.h>
#include <qsf2sql/qsflib/VariableTableRecords.h>

#include <algorithm>
#include <boost/numeric/conversion/cast.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid.hpp>
#include <cstring>

// The blocks before the spectra are a record of fixed size and then what its offsets point at, counted from the first
// byte of the block. The record can be filled in only when the rest is there; so room is left for it, the rest
// appended, and the record put over the room. A text has no terminator: it ends where the next one begins or the block
// ends, unless its record gives its size. An empty text is left out. Arrays of texts have their index in the record as
// index, with null where nothing is written.

namespace kvan::sample::native {

namespace qsf = KVAN::io::QSF;

using boost::numeric_cast;

namespace {

/// Puts the finished fixed part over the room that was left for it at the start of `block`.
template <class Record>
void putFixedPart(Bytes& block, const Record& record) {
    std::memcpy(block.data(), &record, sizeof record);
}

/// The first three fields of a GUID are little-endian numbers in the file.
qsf::CompressionInfoEntry compressorEntry(const std::string& guid) {
    boost::uuids::uuid id = boost::uuids::string_generator()(guid);
    std::reverse(id.begin(), id.begin() + 4);
    std::reverse(id.begin() + 4, id.begin() + 6);
    std::reverse(id.begin() + 6, id.begin() + 8);
    qsf::CompressionInfoEntry entry{};
    entry.size = sizeof entry;
    std::copy(id.begin(), id.end(), entry.guid);
    return entry;
}

Bytes descriptionBlock(const AnalysisDescription& description) {
    const std::string* const texts[] = {nullptr,
                                        &description.instrumentName,
                                        &description.operatorName,
                                        &description.acquisitionSoftware,
                                        &description.acquisitionSoftwareVersion,
                                        &description.acquisitionMethod,
                                        nullptr,
                                        nullptr,
                                        &description.sampleName,
                                        &description.description};
    // Texts stand in the order of their numbers, since one ends where the next begins.
    qsf::AnalysisDescriptionRecord record{};
    Bytes block(sizeof record);
    for (std::size_t text = 0; text < std::size(texts); ++text) {
        if (texts[text] != nullptr)
            record.textOffset[text] = numeric_cast<std::uint32_t>(appendText(block, *texts[text]));
    }
    record.resource = makeHead(qsf::RESTYPE_ANALYSIS_DESCRIPTION, block.size());
    record.instrumentSourceType = description.instrumentSourceType;
    record.instrumentFamily = description.instrumentFamily;
    record.serialFallback = description.serialFallback;
    record.instrumentRevision = description.instrumentRevision;
    putFixedPart(block, record);
    return block;
}

Bytes declarationEntry(const VariableDeclaration& declaration) {
    const std::string* const texts[] = {&declaration.permanentName, &declaration.displayGroupName,
                                        &declaration.displayName,   &declaration.displayValueText,
                                        &declaration.displayFormat, &declaration.displayDimension};
    qsf::VarTabDescEntryRecord record{};
    Bytes entry(sizeof record);
    for (std::size_t text = 0; text < std::size(texts); ++text)
        record.textOffset[text] = numeric_cast<std::uint16_t>(appendText(entry, *texts[text]));
    record.size = numeric_cast<std::uint16_t>(entry.size());
    record.variable = declaration.variable;
    record.elementType = declaration.elementType;
    record.isVector = declaration.isVector ? 1 : 0;
    putFixedPart(entry, record);
    return entry;
}

Bytes declarationsBlock(const std::vector<VariableDeclaration>& declarations) {
    qsf::VarTabDescHeader header{};
    Bytes block(sizeof header);
    for (const VariableDeclaration& declaration : declarations) {
        const Bytes entry = declarationEntry(declaration);
        block.insert(block.end(), entry.begin(), entry.end());
    }
    header.resource = makeHead(qsf::RESTYPE_VAR_TAB_DESCRIPTION, block.size());
    header.entryOffset = sizeof header;
    header.entryCount = numeric_cast<std::uint16_t>(declarations.size());
    putFixedPart(block, header);
    return block;
}

Bytes calibrationBlock(const Bytes& blob) {
    qsf::CalibrationBlockHeader header{};
    header.resource = makeHead(qsf::RESTYPE_CALIBRATION, sizeof header + blob.size());
    Bytes block;
    append(block, header);
    block.insert(block.end(), blob.begin(), blob.end());
    return block;
}

Bytes headerPool(const AnalysisHeaderData& header) {
    Bytes pool;
    const auto add = [&pool](const Bytes& block) { pool.insert(pool.end(), block.begin(), block.end()); };
    // The reader takes blocks out of a pool by their type, so the order is free; this is the usual one.
    if (header.description)
        add(descriptionBlock(*header.description));
    if (!header.variables.empty())
        add(declarationsBlock(header.variables));
    for (const Bytes& blob : header.calibrations)
        add(calibrationBlock(blob));
    return pool;
}

}  // namespace

Bytes compressionInfoBlock(const std::vector<std::string>& guids) {
    qsf::CompressionInfoHeader header{};
    Bytes block(sizeof header);
    for (const std::string& guid : guids)
        append(block, compressorEntry(guid));
    header.resource = makeHead(qsf::COMPRESSION_INFO, block.size());
    header.entryOffset = sizeof header;
    header.entryCount = numeric_cast<std::uint8_t>(guids.size());
    putFixedPart(block, header);
    return block;
}

Bytes instrumentInfoBlock(const InstrumentInfo& info) {
    qsf::InstrumentInfoRecord record{};
    Bytes block(sizeof record);
    // Two of the texts make the serial number; the others and the list stay out.
    record.textOffset[0] = numeric_cast<std::uint32_t>(appendText(block, info.textA));
    record.textSize[0] = numeric_cast<std::uint16_t>(info.textA.size());
    record.textOffset[2] = numeric_cast<std::uint32_t>(appendText(block, info.textB));
    record.textSize[2] = numeric_cast<std::uint16_t>(info.textB.size());
    record.resource = makeHead(qsf::INSTRUMENT_INFO, block.size());
    putFixedPart(block, record);
    return block;
}

Bytes analysisHeaderBlock(const AnalysisHeaderData& header) {
    const Bytes pool = headerPool(header);
    qsf::AnalysisHeaderRecord record{};
    record.resource = makeHead(qsf::ANALYSIS_HEADER, sizeof record + pool.size());
    // An offset of 0 says that there is no pool, and readers look no further.
    record.poolOffset = pool.empty() ? 0 : std::uint32_t{sizeof record};
    record.timebase = header.timebase;
    record.day = header.time.day;
    record.month = header.time.month;
    record.year = header.time.year;
    record.timeZoneMinutes = header.time.timeZoneMinutes;
    record.milliseconds = header.time.milliseconds;
    record.second = header.time.second;
    record.minute = header.time.minute;
    record.hour = header.time.hour;
    Bytes block;
    append(block, record);
    block.insert(block.end(), pool.begin(), pool.end());
    return block;
}

}  // namespace kvan::sample::native
