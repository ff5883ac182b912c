#pragma once

#include <qsf2sql/qsflib/ResourceRecords.h>
#include <sample-analysis/analysis_data.h>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/path.hpp>
#include <type_traits>

namespace kvan::sample::native {

/// The head of a block of `size` bytes, head included.
KVAN::io::QSF::RESOURCE_HEADER makeHead(std::uint16_t type, std::uint64_t size);

void append(Bytes& bytes, const void* first, std::size_t size);

template <class Record>
void append(Bytes& bytes, const Record& record) {
    static_assert(std::is_trivially_copyable_v<Record>);
    append(bytes, &record, sizeof record);
}

/// Appends `text` and gives its offset in `bytes`, 0 for an empty text.
std::uint64_t appendText(Bytes& bytes, const std::string& text);

/// A native file that grows at its end, through a buffer.
class BlockFile {
public:
    explicit BlockFile(const boost::filesystem::path& path);

    std::uint64_t position() const { return m_position; }

    void append(const void* bytes, std::size_t size);
    void append(const Bytes& bytes) { append(bytes.data(), bytes.size()); }
    template <class Record>
    requires std::is_trivially_copyable_v<Record>
    void append(const Record& record) { append(&record, sizeof record); }

    /// Writes the end marker and closes the file.
    void finish();

private:
    void flush();
    [[noreturn]] void fail() const;

    boost::filesystem::path m_path;
    boost::filesystem::ofstream m_stream;
    std::vector<char> m_buffer;
    std::uint64_t m_position = 0;
};

}  // namespace kvan::sample::native
