#pragma once

#include <sample-analysis/analysis_data.h>

#include <boost/filesystem/path.hpp>
#include <memory>

/// One writer for each of the three native files. They write what they are given in the order they get it, so that a
/// caller can also make files that no instrument makes; `AnalysisWriter` drives all three for an ordinary analysis.
///
/// All of them write to disk as they go and hold no more than a buffer. A writer that cannot create or write its file
/// throws `std::runtime_error` "Can't write file: " and the path. A file is whole after `finish` only.
namespace kvan::sample::native {

class BlockFile;

/// `analysis.qsf`. Each function writes one block and gives the offset of its first byte.
class MainFileWriter {
public:
    explicit MainFileWriter(const boost::filesystem::path& file);
    ~MainFileWriter();

    /// `guids` as text; throws `std::runtime_error` for a text that is no GUID.
    std::uint64_t compressionInfo(const std::vector<std::string>& guids);
    std::uint64_t instrumentInfo(const InstrumentInfo& info);
    /// The description, the declarations and the calibrations of `header` stand in the pool of the block; without any
    /// of them there is no pool.
    std::uint64_t analysisHeader(const AnalysisHeaderData& header);
    std::uint64_t segmentCondition(std::uint32_t segment, const Bytes& pool = {});
    std::uint64_t spectrumCondition(std::uint32_t segment, std::uint32_t spectrum, const Bytes& pool = {});
    std::uint64_t scan(const ScanData& data);
    /// Throws `std::invalid_argument` for fields of different lengths.
    std::uint64_t lines(const LineData& data);
    std::uint64_t endOfConditions();
    /// A block of any type with any body.
    std::uint64_t block(std::uint16_t type, const Bytes& body);

    /// The end marker; closes the file.
    void finish();

private:
    std::unique_ptr<BlockFile> m_file;
};

/// `analysis.qsf_idx`. The constructor writes the head, blocks up to the one that announces the entries.
class IndexFileWriter {
public:
    explicit IndexFileWriter(const boost::filesystem::path& file, const Bytes& head = standardHead());
    ~IndexFileWriter();

    static Bytes standardHead();

    /// `number` is the running number of the thing described, from 0; `offset` that of the block in the main file.
    void entry(std::uint16_t type, std::uint32_t number, std::uint64_t offset);
    void finish();

private:
    std::unique_ptr<BlockFile> m_file;
};

/// `analysis.qsf_xtr`. The constructor writes the head, blocks up to the one that announces the entries.
class ExtraFileWriter {
public:
    explicit ExtraFileWriter(const boost::filesystem::path& file, const Bytes& head = standardHead());
    ~ExtraFileWriter();

    static Bytes standardHead();

    /// `spectrum` counts from 1. Throws `std::invalid_argument` for a calibration of 1 to 3 bytes.
    void entry(std::uint32_t spectrum, const QuickInfo& info);
    void finish();

private:
    std::unique_ptr<BlockFile> m_file;
};

}  // namespace kvan::sample::native

namespace kvan::sample {
using namespace native;  // callers need not know the room
}
