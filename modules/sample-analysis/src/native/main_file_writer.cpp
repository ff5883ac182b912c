#include "native/block_file.h"
#include "native/element_types.h"
#include "native/header_blocks.h"

#include <qsf2sql/qsflib/MainFileRecords.h>
#include <sample-analysis/native_files.h>

#include <array>
#include <boost/numeric/conversion/cast.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

// Each function writes one block: its record of fixed size, then what follows at once (a pool, the elements of a
// vector, the fields of a peak list). Sizes are computed before the first byte is written, since a file only grows; a
// size that does not fit its field throws then and leaves the file as it was. The caller keeps the offset that comes
// back: it is the number that Ids of arrays and the entries of the index are made of.

namespace kvan::sample::native {

namespace qsf = KVAN::io::QSF;

namespace {

template <class Record>
std::uint64_t appendBlock(BlockFile& file, const Record& record, const Bytes& rest) {
    const std::uint64_t offset = file.position();
    file.append(record);
    file.append(rest);
    return offset;
}

template <class Record>
Record conditionRecord(std::uint16_t type, const Bytes& pool) {
    Record record{};
    record.resource = makeHead(type, sizeof record + pool.size());
    record.poolOffset = pool.empty() ? 0 : std::uint32_t{sizeof record};
    return record;
}

template <class T>
void writeScan(BlockFile& file, const std::vector<T>& elements) {
    qsf::ScanSpectrumHeader header{};
    header.resource = makeHead(qsf::RESTYPE_SCAN_SPECTRUM, sizeof header + elements.size() * sizeof(T));
    // The packed type stays 0, which no compressor supports: by that readers tell a plain vector.
    header.plainType = elementTypeOf(T{});
    header.unread21 = sizeof(T);
    header.count = boost::numeric_cast<std::uint32_t>(elements.size());
    file.append(header);
    file.append(elements.data(), elements.size() * sizeof(T));
}

void writeScan(BlockFile& file, const PackedVector& packed) {
    qsf::ScanSpectrumHeader header{};
    header.resource = makeHead(qsf::RESTYPE_SCAN_SPECTRUM, sizeof header + packed.bytes.size());
    header.packedType = packed.elementType;
    // Of a packed vector the count is that of its bytes; how many elements there are only the compressor knows.
    header.count = boost::numeric_cast<std::uint32_t>(packed.bytes.size());
    file.append(header);
    file.append(packed.bytes);
}

/// The line fields in the order of their numbers, 16 to 21.
std::array<const LineData::Field*, 6> fieldsOf(const LineData& data) {
    return {&data.index, &data.intensity, &data.indexWidth, &data.peakArea, &data.snr, &data.field21};
}

std::size_t numberOfLines(const LineData& data) {
    std::optional<std::size_t> count;
    for (const LineData::Field* field : fieldsOf(data)) {
        if (!field->has_value())
            continue;
        if (count.value_or((*field)->size()) != (*field)->size())
            BOOST_THROW_EXCEPTION(std::invalid_argument("Line fields of different lengths."));
        count = (*field)->size();
    }
    return count.value_or(0);
}

// Values come as doubles and are rounded to the element type of the layout.
template <class T>
void writeField(BlockFile& file, const std::vector<double>& values) {
    for (const double value : values)
        file.append(static_cast<T>(value));
}

template <class TIndex, class TValue>
void writeLines(BlockFile& file, const LineData& data) {
    // The offsets count from the extended head, which the layout makes as wide as it is; a field without an offset does
    // not exist, one without lines does.
    const auto fields = fieldsOf(data);
    const std::size_t count = numberOfLines(data);
    qsf::ExtendedLineHeader<TValue> extended{};
    std::uint64_t end = sizeof extended;
    for (std::size_t field = 0; field < fields.size(); ++field) {
        if (!fields[field]->has_value())
            continue;
        extended.fieldOffset[field] = boost::numeric_cast<std::uint32_t>(end);
        // The index of a line needs more digits than what was measured of it; so it alone may be wider.
        end += count * (field == 0 ? sizeof(TIndex) : sizeof(TValue));
    }

    qsf::LineSpectrumHeader header{};
    header.resource = makeHead(qsf::RESTYPE_LINE_SPECTRUM, sizeof header + end);
    header.layout = data.layout;
    header.count = boost::numeric_cast<std::uint32_t>(count);
    file.append(header);
    file.append(extended);
    for (std::size_t field = 0; field < fields.size(); ++field) {
        if (!fields[field]->has_value())
            continue;
        if (field == 0)
            writeField<TIndex>(file, **fields[field]);
        else
            writeField<TValue>(file, **fields[field]);
    }
}

}  // namespace

MainFileWriter::MainFileWriter(const boost::filesystem::path& file) : m_file(std::make_unique<BlockFile>(file)) {}

MainFileWriter::~MainFileWriter() = default;

std::uint64_t MainFileWriter::compressionInfo(const std::vector<std::string>& guids) {
    const std::uint64_t offset = m_file->position();
    m_file->append(compressionInfoBlock(guids));
    return offset;
}

std::uint64_t MainFileWriter::instrumentInfo(const InstrumentInfo& info) {
    const std::uint64_t offset = m_file->position();
    m_file->append(instrumentInfoBlock(info));
    return offset;
}

std::uint64_t MainFileWriter::analysisHeader(const AnalysisHeaderData& header) {
    const std::uint64_t offset = m_file->position();
    m_file->append(analysisHeaderBlock(header));
    return offset;
}

std::uint64_t MainFileWriter::segmentCondition(std::uint32_t segment, const Bytes& pool) {
    auto record = conditionRecord<qsf::SegmentConditionRecord>(qsf::RESTYPE_SEGMENT_CONDITION, pool);
    record.segment = segment;
    return appendBlock(*m_file, record, pool);
}

std::uint64_t MainFileWriter::spectrumCondition(std::uint32_t segment, std::uint32_t spectrum, const Bytes& pool) {
    auto record = conditionRecord<qsf::SpectrumConditionRecord>(qsf::RESTYPE_SPECTRUM_CONDITION, pool);
    record.segment = segment;
    record.spectrum = spectrum;
    return appendBlock(*m_file, record, pool);
}

std::uint64_t MainFileWriter::scan(const ScanData& data) {
    const std::uint64_t offset = m_file->position();
    std::visit([this](const auto& elements) { writeScan(*m_file, elements); }, data);
    return offset;
}

std::uint64_t MainFileWriter::lines(const LineData& data) {
    const std::uint64_t offset = m_file->position();
    switch (data.layout) {
        case qsf::LINES_FLOAT_FLOAT:
            writeLines<float, float>(*m_file, data);
            break;
        case qsf::LINES_DOUBLE_DOUBLE:
            writeLines<double, double>(*m_file, data);
            break;
        case qsf::LINES_DOUBLE_FLOAT:
            writeLines<double, float>(*m_file, data);
            break;
    }
    return offset;
}

std::uint64_t MainFileWriter::endOfConditions() {
    // Two types end the conditions; an instrument writes either.
    return block(qsf::RESTYPE_END_OF_CONDITIONS_8, {});
}

std::uint64_t MainFileWriter::block(std::uint16_t type, const Bytes& body) {
    return appendBlock(*m_file, makeHead(type, sizeof(qsf::RESOURCE_HEADER) + body.size()), body);
}

void MainFileWriter::finish() {
    m_file->finish();
}

}  // namespace kvan::sample::native
