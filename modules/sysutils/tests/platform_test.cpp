#include <sysutils/platform.h>
#include <test-support/support.h>

namespace kvan::sys {
namespace {

namespace fs = boost::filesystem;

class Platform : public ::testing::Test {
protected:
    ~Platform() override { EXPECT_EQ(openFiles(), m_openFiles); }

    static std::ptrdiff_t openFiles() { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); }

    fs::path fileWith(const std::string& name, const std::string& bytes) const {
        test::writeFile(m_directory / name, bytes);
        return m_directory / name;
    }

    const test::TemporaryDirectory m_directory;
    std::ptrdiff_t m_openFiles = openFiles();
};

TEST_F(Platform, PositionedFileReadsToTheEndAndRefusesWhatIsNoFile) {
    const auto file = PositionedFile::open(fileWith("data", "0123456789"));
    ASSERT_TRUE(file);
    char bytes[16] = {};
    EXPECT_EQ(file->size(), 10u);
    EXPECT_EQ(file->readAt(bytes, 4, 3), 4);
    EXPECT_EQ(std::string(bytes, 4), "3456");
    EXPECT_EQ(file->readAt(bytes, 16, 8), 2);
    EXPECT_EQ(file->readAt(bytes, 1, 100), 0);

    const std::string pipe = (m_directory / "pipe").string();
    ASSERT_EQ(std::system(("mkfifo '" + pipe + "'").c_str()), 0);
    for (const fs::path& other : {fs::path(m_directory), fs::path(pipe), m_directory / "missing"})
        EXPECT_FALSE(PositionedFile::open(other)) << other;
}

TEST_F(Platform, AStampTellsAWriteToAFileAtRest) {
    const fs::path file = fileWith("data", "one");
    const auto first = stampOf(file);
    ASSERT_TRUE(first);
    EXPECT_EQ(first, stampOf(file));
    EXPECT_FALSE(first->isAtRest()) << "written just now";
    fs::last_write_time(file, 1'000'000'000);
    const auto second = stampOf(file);
    EXPECT_NE(second, first);
    EXPECT_FALSE(second->isAtRest()) << "the status was changed just now";
    FileStamp old = *second;
    old.changed = old.modified;
    EXPECT_TRUE(old.isAtRest());
    fileWith("data", "two");
    EXPECT_NE(stampOf(file), second);
    EXPECT_FALSE(stampOf(m_directory / "missing"));
}

TEST_F(Platform, PrivateFileIsLockedWhileHeldAndMovesInOneStep) {
    const fs::path path = m_directory / "private";
    const fs::path target = fileWith("target", "old");
    boost::system::error_code fault;
    {
        const auto file = PrivateFile::create(path, fault);
        ASSERT_TRUE(file);
        EXPECT_FALSE(PrivateFile::create(path, fault)) << "the name is taken";
        EXPECT_EQ(fault, boost::system::errc::file_exists);
        EXPECT_TRUE(file->append("probe"));
        EXPECT_EQ(fs::file_size(path), 5u);
        EXPECT_TRUE(file->clear());
        EXPECT_TRUE(file->append("new"));
        EXPECT_FALSE(removeAbandonedPrivateFile(path)) << "somebody holds it";
        EXPECT_TRUE(file->moveTo(m_directory)) << "a directory is no target";
        EXPECT_FALSE(file->moveTo(target));
    }
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(fs::file_size(target), 3u);

    const auto other = PrivateFile::create(m_directory / "50%-%%%%", fault);
    EXPECT_NE(other->path().filename(), "50%-%%%%");
    PrivateFile::create(path, fault).reset();
    EXPECT_FALSE(fs::exists(path)) << "goes with its owner";
    fileWith("private", "left behind");
    EXPECT_TRUE(removeAbandonedPrivateFile(path));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(Platform, PrivateFileNeverWritesThroughALink) {
    const fs::path target = fileWith("target", "precious");
    fs::create_symlink(target, m_directory / "private");
    boost::system::error_code fault;
    EXPECT_FALSE(PrivateFile::create(m_directory / "private", fault));
    EXPECT_FALSE(removeAbandonedPrivateFile(m_directory / "private"));
    EXPECT_EQ(fs::file_size(target), 8u);
}

TEST_F(Platform, AppendedFileGrowsAtItsEndAndRefusesPipes) {
    const fs::path path = fileWith("log", "one\n");
    boost::system::error_code fault;
    const auto first = AppendedFile::open(path, fault);
    const auto second = AppendedFile::open(path, fault);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->append("two\n"), 4u);
    EXPECT_EQ(second->append("three\n"), 6u);
    EXPECT_EQ(fs::file_size(path), 14u);

    const std::string pipe = (m_directory / "pipe").string();
    ASSERT_EQ(std::system(("mkfifo '" + pipe + "'").c_str()), 0);
    for (const fs::path& other : {fs::path(pipe), fs::path(m_directory), m_directory / "missing" / "log"}) {
        EXPECT_FALSE(AppendedFile::open(other, fault)) << other;
        EXPECT_TRUE(fault);
    }
    EXPECT_EQ(AppendedFile::open("/dev/full", fault)->append("lost"), 0u);
}

}  // namespace
}  // namespace kvan::sys
