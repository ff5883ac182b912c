#include "lib/async_sink.h"
#include "lib/line_format.h"
#include "lib/multi_color_layout.h"
#include "lib/path_expansion.h"
#include "log_fixture.h"

#include <sysutils/environment.h>
#include <sysutils/process.h>

#include <boost/property_tree/xml_parser.hpp>
#include <csignal>

#include <sys/resource.h>

namespace kvan::logging::impl {
namespace {

namespace fs = boost::filesystem;

class SinksTest : public LogFixture {
protected:
    /// The settings of one file sink, which becomes `m_sink`.
    void open(const std::string& options, const std::string& file = "app.log") {
        m_settings = settingsOf(fileSink("file", file, options) + "<root><sink ref='file'/></root>");
        m_sink = m_settings.sinksOf("any").front().sink;
    }

    /// A line of `size` bytes that begins with `mark`.
    void write(char mark, std::size_t size) const { m_sink->write(std::string(size - 1, mark) + '\n'); }

    /// The marks of app.log and of the backups 0, 1 and 2, each file's lines in their order; '-' for a missing file.
    std::string marks() const {
        std::string all;
        for (const char* name : {"app.log", "app.0.log", "app.1.log", "app.2.log"}) {
            all += all.empty() ? "" : " ";
            std::istringstream lines(fs::exists(at(name)) ? contentOf(name) : "-");
            for (std::string line; std::getline(lines, line);)
                all += line[0];
        }
        return all;
    }

    LoggerSettings m_settings;
    std::shared_ptr<ISink> m_sink;
};

TEST_F(SinksTest, BackupsFormARingOrMoveOn) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"reset-oldest", "e d b c", "f d e c"},
        {" steady-rotate\n", "e d c b", "f e d c"},
        {"unknown", "e d b c", "f d e c"},
    };
    for (const auto& [type, afterFive, afterSix] : cases) {
        ::testing::internal::CaptureStderr();
        open("<max-file-size> 100 </max-file-size><max-backups>3</max-backups><rolling-type>" + std::string(type) +
             "</rolling-type>");
        EXPECT_EQ(::testing::internal::GetCapturedStderr().find("ERROR Invalid rolling-type provided: unknown") ==
                      std::string::npos,
                  std::string(type) != "unknown");
        write('a', 10240);
        EXPECT_EQ(marks(), "a - - -") << "at the limit";
        write('a', 1);
        EXPECT_TRUE(fs::exists(at("app.log")) && !fs::exists(at("app.0.log"))) << "above it, but nothing is written";
        for (const char mark : {'b', 'c', 'd', 'e'})
            write(mark, 10241);
        EXPECT_EQ(marks(), afterFive) << type;
        write('f', 10);
        EXPECT_EQ(marks(), afterSix) << type;
        for (const auto& file : fs::directory_iterator(m_directory))
            fs::remove(file);
    }
}

TEST_F(SinksTest, NumbersThatMakeNoSenseBecomeTheDefault) {
    for (const char* backups : {"0", "abc", "-3", "99999999999999999999", ""}) {
        open("<max-file-size>1</max-file-size><max-backups>" + std::string(backups) + "</max-backups>");
        for (int line = 0; line < 12; ++line)
            write('x', 10241);
        EXPECT_TRUE(fs::exists(at("app.9.log")) && !fs::exists(at("app.10.log"))) << backups;
        fs::remove(at("app.9.log"));
        fs::remove(at("app.log"));
    }
    for (const auto& [size, isRolled] : {std::pair("0", false), {"-1", true}, {"1e6", true}, {"1024000", true}}) {
        open("<max-file-size>" + std::string(size) + "</max-file-size>");
        write('x', 1024001);
        write('y', 2);
        EXPECT_EQ(fs::file_size(at("app.log")) == 2, isRolled) << size;
        fs::remove(at("app.log"));
    }
}

TEST_F(SinksTest, SteadyRotationSkipsMissingBackupsAndForeignNames) {
    for (const char* name : {"app.0.log", "app.2.log", "app.00.log", "app.x.log", "app.5000000000.log"})
        put(name, "old");
    open(
        "<max-file-size>1</max-file-size><max-backups>9000000000</max-backups><rolling-type>steady-rotate"
        "</rolling-type>");
    write('a', 10241);
    write('b', 2);
    for (const char* name : {"app.1.log", "app.3.log", "app.00.log", "app.x.log", "app.5000000001.log"})
        EXPECT_EQ(contentOf(name), "old") << name;
    EXPECT_EQ(marks(), "b a o -");
}

TEST_F(SinksTest, WhatCannotBeRemovedIsRenamedAside) {
    fs::create_directories(at("app.0.log") / "full");
    put("app.0.log.old0", "taken");
    open("<max-file-size>1</max-file-size>");
    write('a', 10241);
    ::testing::internal::CaptureStderr();
    write('b', 2);
    const std::string diagnostics = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(diagnostics.find("ERROR Error when trying to delete old log file: "), std::string::npos) << diagnostics;
    EXPECT_NE(diagnostics.find("So we rename it to filename: " + at("app.0.log.old1").string() + "\n"),
              std::string::npos);
    EXPECT_TRUE(fs::is_directory(at("app.0.log.old1")));
    EXPECT_EQ(marks(), "b a - -");
}

TEST_F(SinksTest, LostFileSendsLinesToTheErrorChannel) {
    open("<max-file-size>1</max-file-size>");
    write('a', 10241);
    fs::rename(m_directory, m_directory.string() + ".moved");
    ::testing::internal::CaptureStderr();
    write('b', 2);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "") << "goes on into the file that was moved";
    fs::rename(m_directory.string() + ".moved", m_directory);
    EXPECT_EQ(marks(), "ab - - -");

    fs::create_symlink("/dev/full", at("full"));
    open("", "full");
    ::testing::internal::CaptureStderr();
    m_sink->write("kept\n");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "kept\n");
}

TEST_F(SinksTest, ALineThatWasCutIsNotContinued) {
    open("<max-file-size>0</max-file-size>");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit small{.rlim_cur = 4, .rlim_max = former.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    write('a', 10);
    ::setrlimit(RLIMIT_FSIZE, &former);
    write('b', 2);
    EXPECT_EQ(contentOf("app.log"), "aaaa\nb\n");
}

TEST(PathExpansion, TokensAreReplacedOnce) {
    ::setenv("KVAN_TEST", "<${pid}\xC3\xA9>", 1);
    ::setenv("KVAN_BAD", "\xFF", 1);
    std::wostringstream hexadecimal;
    hexadecimal << std::hex << sys::processId();
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"/a b/${pid}.${xpid}", L"/a b/" + std::to_wstring(sys::processId()) + L"." + hexadecimal.str()},
        {L"${env:KVAN_TEST}", L"<${pid}\u00e9>"},
        {L"[${env:KVAN_UNDEFINED}]", L"[]"},
        {L"${exe.home}/x", sys::executablePath().parent_path().wstring() + L"/x"},
        {L"${user.home}|${user.data.home}", sys::userHome().wstring() + L"|" + sys::userDataHome().wstring()},
        {L"${unknown}${pid", L"${unknown}${pid"},
        {L"${a${env:KVAN_UNDEFINED}}$", L"${a}$"},
    };
    for (const auto& [text, expanded] : cases)
        EXPECT_EQ(expandTokens(text), expanded);
    EXPECT_EQ(test::failureOf([] { expandTokens(L"${env:KVAN_BAD}"); }), "Value could not be stringified");
}

TEST(MultiColorLayout, LinesHaveTheColorsOfTheirLevel) {
    std::istringstream xml(
        "<layout class='kvan.logging.MultiColorLayout'><other/>"
        "<rule level='ERROR' fg-color='red' fg-style='bright' bg-color='white' text-style='underline'/>"
        "<rule level='INFO' fg-color='default' fg-style='bright' bg-color='blue' bg-style='bright'/>"
        "<rule level='DEBUG' fg-color='yellow'/><rule level='WARN' fg-color='none'/></layout>");
    boost::property_tree::ptree sink;
    boost::property_tree::read_xml(xml, sink);
    const auto layout = MultiColorLayout::of(sink);
    ASSERT_TRUE(layout);
    const std::pair<Level::type, const char*> cases[] = {
        {Level::ERROR, "\x1b[0;91;47;4m"}, {Level::INFO, "\x1b[0;1;104m"}, {Level::DEBUG, "\x1b[0;33m"}};
    for (const auto& [level, sequence] : cases) {
        const std::string line = formatLine("a.b", level, "text [INFO ] more\n\r\n");
        const std::string bare = line.substr(0, line.size() - 1);
        EXPECT_TRUE(bare.ends_with("] a.b: text [INFO ] more"));
        EXPECT_EQ(layout->colored(line), sequence + bare + "\x1b[0m\n");
    }
    const std::string unruled = formatLine("a", Level::WARN, "x");
    EXPECT_EQ(layout->colored(unruled), unruled);
    EXPECT_EQ(layout->colored("foreign\n"), "foreign\n");
}

TEST_F(SinksTest, AsynchronousSinkHandsOnEveryLineInOrder) {
    m_settings = settingsOf(
        fileSink("file", "app.log") +
        "<sink name='none' class='kvan.logging.NullSink'/>"
        "<sink name='inner' class='kvan.logging.AsyncSink'><sink ref='file'/><sink ref='none'/></sink>"
        "<sink name='outer' class='kvan.logging.AsyncSink'><sink ref='inner'/></sink><root><sink ref='outer'/></root>");
    m_sink = m_settings.sinksOf("any").front().sink;
    std::string expected;
    for (int line = 0; line < 2000; ++line) {
        m_sink->write(std::to_string(line) + "\n");
        expected += std::to_string(line) + "\n";
    }
    m_settings.stopSinks();
    m_sink->write("too late\n");
    EXPECT_EQ(contentOf("app.log"), expected);
}

}  // namespace
}  // namespace kvan::logging::impl
