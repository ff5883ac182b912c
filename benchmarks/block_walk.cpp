// Stepping through the heads of all blocks of a native file, against the same walk by seeking a std::ifstream.

#include "qsf2sql/qsflib/BlockWalk.h"
#include "ratio.h"

#include <qsf2sql/qsf_blocked_reader.h>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>
#include <functional>
#include <stdexcept>

namespace {

namespace fs = boost::filesystem;
using kvan::io::QSFBlockedReader;
using KVAN::io::QSF::ContainerHeader;
using KVAN::io::QSF::RESOURCE_HEADER;

/// A file of `blockCount` blocks; only their heads are written, what lies between is zeros.
class BlockFile {
public:
    BlockFile(std::uint64_t blockCount, bool isContainer, const std::function<std::uint32_t(std::uint64_t)>& sizeOf)
        : m_path(fs::temp_directory_path() / fs::unique_path()), m_blockCount(blockCount) {
        fs::ofstream stream(m_path, std::ios::binary);
        std::uint64_t position = 0;
        for (std::uint64_t index = 0; index < blockCount; ++index) {
            const std::uint32_t size = sizeOf(index);
            const auto type =
                isContainer ? KVAN::io::QSF::RESTYPE_CONTAINER : KVAN::io::QSF::RESTYPE_SPECTRUM_CONDITION;
            const ContainerHeader head{size, type, KVAN::io::QSF::g_version, size};
            stream.seekp(static_cast<std::streamoff>(position));
            stream.write(reinterpret_cast<const char*>(&head), sizeof head);
            position += size;
        }
        const RESOURCE_HEADER end{8, KVAN::io::QSF::RESTYPE_END_OF_FILE, KVAN::io::QSF::g_version};
        stream.seekp(static_cast<std::streamoff>(position));
        stream.write(reinterpret_cast<const char*>(&end), sizeof end);
        if (!stream.flush())
            throw std::runtime_error("cannot write the file of blocks");
    }
    BlockFile(const BlockFile&) = delete;
    BlockFile& operator=(const BlockFile&) = delete;
    ~BlockFile() {
        boost::system::error_code ignored;
        fs::remove(m_path, ignored);
    }

    /// As a pass of a generation does: finds each block and looks at its head.
    void walkByReader() const {
        QSFBlockedReader reader(m_path, QSFBlockedReader::Access::Scan);
        std::uint64_t found = 0;
        KVAN::io::QSF::BlockWalk walk(reader);
        while (const auto block = walk.next()) {
            benchmark::DoNotOptimize(kvan::io::readRecord<RESOURCE_HEADER>(reader));
            ++found;
        }
        check(found);
    }

    /// `looks` is 1 for one seek and one read a block, 2 for what `walkByReader` does: find the block, seek back to its
    /// first byte, read its head.
    void walkByStream(int looks) const {
        fs::ifstream stream(m_path, std::ios::binary);
        std::uint64_t found = 0;
        std::uint64_t position = 0;
        for (;; ++found) {
            RESOURCE_HEADER head{};
            for (int look = 0; look < looks; ++look) {
                stream.seekg(static_cast<std::streamoff>(position));
                stream.read(reinterpret_cast<char*>(&head), sizeof head);
            }
            if (!stream || head.type == KVAN::io::QSF::RESTYPE_END_OF_FILE)
                break;
            position += head.size;
        }
        check(found);
    }

private:
    void check(std::uint64_t found) const {
        if (found != m_blockCount)
            throw std::runtime_error("the walk missed blocks");
    }

    fs::path m_path;
    std::uint64_t m_blockCount;
};

void compare(benchmark::State& state, double goal, const BlockFile& file, int looks) {
    benchmarks::reportRatio(
        state, goal, [&] { file.walkByReader(); }, [&] { file.walkByStream(looks); });
}

void indexFile(benchmark::State& state) {
    compare(state, 0.05, BlockFile(100000, true, [](std::uint64_t) { return 48; }), 1);
}

/// Conditions of some hundred bytes in turn with short peak lists; the argument is the stream's looks at each block.
/// Bound by the copying of the whole file out of the page cache.
void mainFileOfSmallBlocks(benchmark::State& state) {
    constexpr std::uint32_t sizes[] = {212, 1460, 384, 692, 248, 2316, 300, 1012};
    compare(state, 0.05, BlockFile(100000, false, [&](std::uint64_t index) { return sizes[index % 8]; }),
            static_cast<int>(state.range(0)));
}

/// A condition in turn with a block of so many bytes that a generation steps over. No goal: for information.
void mainFileOfLargeBlocks(benchmark::State& state) {
    const auto large = static_cast<std::uint32_t>(state.range(0));
    compare(state, 1.0, BlockFile(10000, false, [&](std::uint64_t index) { return index % 2 == 0 ? 400 : large; }), 2);
}

BENCHMARK(indexFile)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(mainFileOfSmallBlocks)->Arg(1)->Arg(2)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(mainFileOfLargeBlocks)->Arg(5000)->Arg(20000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
