#include "native/block_file.h"

#include <qsf2sql/qsflib/ExtraFileRecords.h>
#include <sample-analysis/native_files.h>

#include <algorithm>
#include <boost/numeric/conversion/cast.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

// Index and extra file are alike: three blocks of bare heads say what the file is and that entries follow, then come
// containers of one entry each, up to the end marker. Entries of the index have one size; those of the extra file end
// with the masses of the precursors and the calibration, so the container's size says where the next one begins.

namespace kvan::sample::native {

namespace qsf = KVAN::io::QSF;

using boost::numeric_cast;

namespace {

/// A container of the index file is filled up to this size.
constexpr std::uint32_t g_indexContainerSize = 48;

std::unique_ptr<BlockFile> openSideFile(const boost::filesystem::path& path, const Bytes& head) {
    auto file = std::make_unique<BlockFile>(path);
    file->append(head);
    return file;
}

Bytes sideFileHead(std::uint16_t headType, std::uint16_t entriesFollowType) {
    Bytes head;
    for (const std::uint16_t type : {std::uint16_t{qsf::RESTYPE_SIDE_FILE_HEAD}, headType, entriesFollowType})
        append(head, makeHead(type, sizeof(qsf::RESOURCE_HEADER)));
    return head;
}

const Bytes& noCalibration() {
    static const Bytes blob{0xFF, 0x00, 0x00, 0x00};
    return blob;
}

qsf::ContainerHeader containerHead(std::uint64_t size) {
    return {0, qsf::RESTYPE_CONTAINER, qsf::g_version, numeric_cast<std::uint32_t>(size)};
}

}  // namespace

IndexFileWriter::IndexFileWriter(const boost::filesystem::path& file, const Bytes& head)
    : m_file(openSideFile(file, head)) {}

IndexFileWriter::~IndexFileWriter() = default;

Bytes IndexFileWriter::standardHead() {
    return sideFileHead(qsf::RESTYPE_INDEX_HEAD, qsf::RESTYPE_INDEX_ENTRIES_FOLLOW);
}

void IndexFileWriter::entry(std::uint16_t type, std::uint32_t number, std::uint64_t offset) {
    struct {
        qsf::ContainerHeader container = containerHead(g_indexContainerSize);
        qsf::FILE_CONTAINER_INDEX_ENTRY entry = {};
        std::uint8_t unread36[12] = {};
    } record;
    static_assert(sizeof record == g_indexContainerSize);
    record.entry.type = type;
    record.entry.EntryIndexNo = number;
    record.entry.offset = offset;
    m_file->append(record);
}

void IndexFileWriter::finish() {
    m_file->finish();
}

ExtraFileWriter::ExtraFileWriter(const boost::filesystem::path& file, const Bytes& head)
    : m_file(openSideFile(file, head)) {}

ExtraFileWriter::~ExtraFileWriter() = default;

Bytes ExtraFileWriter::standardHead() {
    return sideFileHead(qsf::RESTYPE_EXTRA_HEAD, qsf::RESTYPE_EXTRA_ENTRIES_FOLLOW);
}

void ExtraFileWriter::entry(std::uint32_t spectrum, const QuickInfo& info) {
    qsf::QuickInfoRecord record{};
    const Bytes& calibration = info.calibration.empty() ? noCalibration() : info.calibration;
    if (calibration.size() < sizeof record.calibrationHead)
        BOOST_THROW_EXCEPTION(std::invalid_argument("Calibration without its head."));
    const auto calibrationTail = calibration.begin() + sizeof record.calibrationHead;
    // The first four bytes of a calibration blob stand in the record itself, the others at its end.
    const std::size_t calibrationOffset = sizeof record + info.masses.size() * sizeof(float);
    const std::size_t size = calibrationOffset + static_cast<std::size_t>(calibration.end() - calibrationTail);

    record.size = numeric_cast<std::uint16_t>(size);
    // An offset of 0 stands for none, of masses as of the rest of a calibration.
    record.massOffset = info.masses.empty() ? 0 : std::uint16_t{sizeof record};
    record.calibrationOffset =
        size == calibrationOffset ? std::uint16_t{0} : numeric_cast<std::uint16_t>(calibrationOffset);
    record.retentionTime = info.retentionTime;
    record.spectrum = spectrum;
    record.acquiredLower = info.acquiredLower;
    record.acquiredUpper = info.acquiredUpper;
    record.maxIntensity = info.maxIntensity;
    record.sumIntensity = info.sumIntensity;
    record.polarity = info.polarity;
    record.acquisitionMode = info.acquisitionMode;
    // The reader takes as many masses as the level says; a caller that sets it by hand may lie on purpose.
    record.msLevel = info.msLevel ? *info.msLevel : numeric_cast<std::uint8_t>(info.masses.size());
    record.scanMode = info.scanMode;
    std::copy(calibration.begin(), calibrationTail, record.calibrationHead);

    qsf::QuickInfoHead head{};
    head.recordOffset = sizeof head;
    // Head of the container, head of the entry, record, masses, rest of the calibration: in the order of the bytes.
    m_file->append(containerHead(sizeof(qsf::ContainerHeader) + sizeof head + size));
    m_file->append(head);
    m_file->append(record);
    m_file->append(info.masses.data(), info.masses.size() * sizeof(float));
    m_file->append(calibration.data() + sizeof record.calibrationHead, size - calibrationOffset);
}

void ExtraFileWriter::finish() {
    m_file->finish();
}

}  // namespace kvan::sample::native
