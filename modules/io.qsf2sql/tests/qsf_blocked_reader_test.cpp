#include "native_bytes.h"
#include "qsf2sql/qsflib/BlockWalk.h"

#include <qsf2sql/qsf_blocked_reader.h>

namespace kvan::io {
namespace {

using namespace native_bytes;
using KVAN::io::QSF::BlockWalk;
namespace fs = boost::filesystem;

TEST(QSFBlockedReader, FailsWhereTheFileEndsAndStaysFailed) {
    using Step = std::function<void(QSFBlockedReader&)>;
    char bytes[16];
    std::vector<std::uint32_t> words;
    const Step failures[] = {
        [&](auto& reader) { readArray(reader, std::span(bytes, 11)); },
        [&](auto& reader) { readArray(reader, std::uint64_t{1} << 62, words); },
        [&](auto& reader) { reader.seekTo(std::uint64_t{1} << 63); },
        [&](auto& reader) { reader.skip(-1); },
        [&](auto& reader) { reader.requireAvailable(11, 1); },
        [&](auto& reader) { reader.requireAvailable(4000000000u, 8); },
        [&](auto& reader) { reader.requireAvailable((std::uint64_t{1} << 61) + 1, 8); },
        [&](auto& reader) { reader.seekTo(INT64_MAX), readRecord<char>(reader); },
    };
    const Step laterSteps[] = {
        [&](auto& reader) { readRecord<char>(reader); }, [&](auto& reader) { readArray(reader, std::span<char>()); },
        [&](auto& reader) { reader.requireSound(); },    [&](auto& reader) { reader.seekTo(0); },
        [&](auto& reader) { reader.skip(0); },           [&](auto& reader) { reader.requireAvailable(0, 1); },
        [&](auto& reader) { BlockWalk(reader).next(); },
    };
    for (const Step& fail : failures) {
        const auto reader = readerOf("0123456789");
        EXPECT_EQ(failureOf([&] { fail(*reader); }), g_readError);
        for (const Step& step : laterSteps)
            EXPECT_EQ(failureOf([&] { step(*reader); }), g_readError);
    }
}

TEST(QSFBlockedReader, PositionsBeyondTheEndAreNoFailure) {
    const auto reader = readerOf("0123456789");
    for (const std::uint64_t position : {0U, 10U, 5000U}) {
        reader->seekTo(position);
        readArray(*reader, std::span<double>());
        reader->requireAvailable(0, 8);
    }
    reader->skip(-4991);
    reader->requireAvailable(1, 1);
    EXPECT_EQ(readRecord<char>(*reader), '9');
    EXPECT_EQ(reader->tell(), 10u);
}

TEST(QSFBlockedReader, AnyPatternOfReadsGivesTheBytesOfTheFile) {
    std::mt19937 random(7);
    std::string bytes(1 << 20, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    for (const Access access : {Access::Scan, Access::Arrays}) {
        const auto reader = readerOf(bytes, access);
        std::uint64_t position = 0;
        for (int round = 0; round < 5000; ++round) {
            const std::uint64_t reach = std::uint64_t{1} << (random() % 21);
            if (random() % 3 == 0)
                position = random() % bytes.size();
            const std::uint64_t count = std::min<std::uint64_t>(random() % reach, bytes.size() - position);
            std::string got;
            reader->seekTo(position);
            readArray(*reader, count, got);
            ASSERT_EQ(got.compare(0, count, bytes, position, count), 0) << position << " " << count;
            position = reader->tell();
        }
    }
}

TEST(QSFBlockedReader, FollowsAFileThatGrows) {
    const test::TemporaryDirectory directory;
    const fs::path path = directory / "growing";
    fs::ofstream writer(path);
    writer << "01234567" << std::flush;
    QSFBlockedReader reader(path, Access::Scan);
    reader.requireAvailable(8, 1);
    EXPECT_EQ(readRecord<std::uint32_t>(reader), 0x33323130u);
    writer << "89abcdefghijklmn" << std::flush;
    std::string bytes;
    readArray(reader, 20, bytes);
    EXPECT_EQ(bytes, "456789abcdefghijklmn");
}

TEST(QSFBlockedReader, NamesTheFileThatCannotBeOpened) {
    for (const fs::path& path : {fs::temp_directory_path(), fs::path("/missing/analysis.qsf")}) {
        EXPECT_EQ(test::failureOf<Qsf2SqlCannotOpenFileError>([&] { QSFBlockedReader(path, Access::Scan); }),
                  "Can't open file: " + path.string());
    }
}

Bytes container(std::uint32_t size) {
    return Bytes(48, '\0').set(0, 0xDDDDDDDDu).set(4, std::uint16_t{0x5001}).set(8, size);
}

TEST(BlockWalk, FindsBlocksAndContainersAndTheEnd) {
    using Sizes = std::array<std::uint64_t, 3>;  // of the block, start of its content and its size; all 0: the end
    const std::tuple<const char*, Bytes, Sizes> cases[] = {
        {"ordinary block", block(0x1001, 44), {44, 0, 44}},
        {"version is not looked at", block(0x1001, 44).set(6, std::uint16_t{1}), {44, 0, 44}},
        {"size is not held against the file", block(0x1001, 8).set(0, 4000000000u), {4000000000u, 0, 4000000000u}},
        {"size 0", block(0x1001, 44).set(0, 0u), {0, 0, 0}},
        {"end marker of any size", block(0x5003, 8).set(0, 999u), {0, 0, 0}},
        {"container", container(48), {48, 12, 24}},
        {"container that claims to be empty", container(24), {0, 0, 0}},
    };
    for (const auto& [name, bytes, sizes] : cases) {
        const auto reader = readerOf(bytes);
        const auto found = BlockWalk(*reader).next();
        EXPECT_EQ(found ? (Sizes{found->size, found->contentStart(), found->contentSize()}) : Sizes{}, sizes) << name;
        EXPECT_TRUE(!found || (found->start == 0 && reader->tell() == found->contentStart())) << name;
    }
    EXPECT_EQ(failureOf([] { BlockWalk(*readerOf(container(23))).next(); }), g_readError);
    EXPECT_EQ(failureOf([] { BlockWalk(*readerOf(container(48).cutAt(11))).next(); }), g_readError);
}

TEST(BlockWalk, SeeksForItselfAndKnowsWhatAContainerHolds) {
    const auto reader =
        readerOf(Bytes().add(container(48).set(16, std::uint16_t{0x4003})).add(block(0x2001, 20)).add(endOfFile()));
    BlockWalk walk(*reader);
    const auto first = walk.next();
    reader->seekTo(5000);
    EXPECT_EQ(walk.contentType(*first), 0x4003);
    EXPECT_EQ(reader->tell(), 12u);
    reader->seekTo(5000);
    const auto second = walk.next();
    EXPECT_EQ(second->start, 48u);
    EXPECT_EQ(walk.contentType(*second), 0x2001);
    EXPECT_FALSE(walk.next());
    EXPECT_FALSE(walk.next()) << "the end stays the end";
}

}  // namespace
}  // namespace kvan::io
