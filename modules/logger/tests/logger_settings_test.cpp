#include "lib/isink.h"
#include "log_fixture.h"

#include <regex>

namespace kvan::logging::impl {
namespace {

using LoggerSettingsTest = LogFixture;

std::string failureOf(const std::string& document) {
    return test::failureOf([&] { LoggerSettings::parse(document, "test"); });
}

TEST(LoggerSettings, BrokenRulesHaveTheirReasons) {
    const std::string s = "<sink name='s' class='kvan.logging.NullSink'/>";
    const std::string r = "<root><sink ref='s'/></root>";
    const std::string color = "<sink name='c' class='kvan.logging.StdOutSink'><layout ";
    const std::string rule = color + "class='kvan.logging.MultiColorLayout'><rule ";
    const std::string layoutEnd = "</layout></sink>";
    const std::pair<std::string, const char*> cases[] = {
        {"", "No <sink> element found"},
        {s, "No <root> element found"},
        {r + s, "No <sink> element before <root> element"},
        {s + r + s, "<root> element before <sink> element"},
        {s + r + r, "Duplicate <root> element found"},
        {s + "<root/>", "No <sink> reference within <root> element"},
        {s + "<root><sink ref='x'/></root>", "Unknown <sink> reference 'x'"},
        {s + "<root><sink/></root>", "No such node (<xmlattr>.ref)"},
        {s + "<root level='info'><sink ref='s'/></root>", R"(conversion of data to type ".*" failed)"},
        {s + s, "<sink> element with duplicate name 's' found"},
        {"<sink class='kvan.logging.NullSink'/>", "No such node (<xmlattr>.name)"},
        {"<sink name='a b' class='kvan.logging.NullSink'/>", "Invalid sink name provided: 'a b'"},
        {"<sink name='s' class='X'/>", "<sink> element with unknown class attribute 'X'"},
        {"<logger name='a'/>", "No <sink> element before <logger> element"},
        {s + "<logger name='a'/>" + r, "No <root> element before <logger> element"},
        {s + r + "<logger name='a'/><logger name='a'/>", "<logger> element with duplicate name 'a' found"},
        {"<sink name='s' class='kvan.logging.AsyncSink'/>", "No <sink> reference within sink 's' element"},
        {"<sink name='s' class='kvan.logging.AsyncSink'><sink ref='s'/></sink>",
         "Invalid self-reference within <sink> reference of sink 's'"},
        {"<sink name='s' class='kvan.logging.AsyncSink'><sink ref='t'/></sink>", "Unknown <sink> reference 't'"},
        {"<sink name='s' class='kvan.logging.RollingFileSink'/>", "No such node (file-path)"},
        {"<sink name='s' class='kvan.logging.RollingFileSink'><file-path>/no/such/log</file-path></sink>",
         "Failed to open file for writing: .*/no/such/log.*"},
        {color + "class='X'>" + layoutEnd, "<layout> element with unknown class attribute 'X'"},
        {rule + "fg-color='red'/>" + layoutEnd, "No such node (<xmlattr>.level)"},
        {rule + "level='INFO'/><rule level='INFO'/>" + layoutEnd, "<rule> element with duplicate level 'INFO' found"},
        {rule + "level='INFO' bg-color='pink'/>" + layoutEnd, "Invalid color provided: 'pink'"},
        {rule + "level='INFO' fg-style='underline'/>" + layoutEnd, "Invalid style provided: 'underline'"},
    };
    for (const auto& [elements, reason] : cases) {
        const std::string failure = failureOf("<kvan-logconf>" + elements + "</kvan-logconf>");
        EXPECT_TRUE(failure == reason || std::regex_match(failure, std::regex(reason))) << elements << '\n' << failure;
    }
    EXPECT_EQ(failureOf("<other/>"), "No such node (kvan-logconf)");
    EXPECT_EQ(failureOf("no xml"), "test(1): expected <");
    EXPECT_NE(failureOf(""), "");
    const auto failureOfMany = [](int count, const char* element) {
        std::string elements;
        while (count-- > 0)
            elements += element;
        return failureOf("<kvan-logconf>" + elements + "</kvan-logconf>");
    };
    EXPECT_EQ(failureOfMany(3998, "<a/>"), "No <sink> element found");
    EXPECT_EQ(failureOfMany(3999, "<a/>"), "The document has too many elements");
    EXPECT_EQ(failureOfMany(100000, "<a>"), "The document has too many elements");
}

TEST_F(LoggerSettingsTest, LongestNameRulesAndInheritsWhatItLeavesOpen) {
    const auto settings =
        settingsOf("text <!-- comment --><sink name='none' class='kvan.logging.NullSink'/>" + fileSink("a", "a.log") +
                   fileSink("b", "b.log") +
                   "<unknown/><root extra='1'><sink ref='a'/><other/></root>"
                   "<logger name='x.y' level='TRACE'/><logger name='x'><sink ref='b'/><sink ref='b'/></logger>"
                   "<logger name='x.y.z' level='ERROR'><sink ref='none'/></logger><logger name='1 bad name'/>");
    const std::tuple<const char*, Level::type, std::size_t> expected[] = {
        {"other", Level::INFO, 1}, {"xy", Level::INFO, 1},     {"x", Level::INFO, 2},      {"x.w", Level::INFO, 2},
        {"x.y", Level::TRACE, 2},  {"x.y.q", Level::TRACE, 2}, {"x.y.z", Level::ERROR, 0}, {"x.y.z.a", Level::ERROR, 0},
    };
    for (const auto& [name, level, sinks] : expected) {
        EXPECT_EQ(settings.levelOf(name), level) << name;
        EXPECT_EQ(settings.sinksOf(name).size(), sinks) << name;
    }
    for (const SinkEntry& entry : settings.sinksOf("x"))
        entry.sink->write("line\n");
    EXPECT_EQ(contentOf("b.log"), "line\nline\n");
    EXPECT_EQ(contentOf("a.log"), "") << "made, though nothing was written";
}

TEST_F(LoggerSettingsTest, ExamplesOfTheDocumentationAreAccepted) {
    ::setenv("HOME", m_directory.c_str(), 1);
    ::setenv("XDG_DATA_HOME", m_directory.c_str(), 1);
    const std::string text = test::readFile(LOGGING_DOCUMENTATION);
    const std::regex block("(<kvan-logconf>[^]*?</kvan-logconf>)");
    int examples = 0;
    for (std::sregex_iterator found(text.begin(), text.end(), block), end; found != end; ++found, ++examples) {
        const std::string example = std::regex_replace((*found)[1].str(), std::regex("exe\\.home"), "user.home");
        EXPECT_NO_THROW(LoggerSettings::parse(example, "example")) << example;
    }
    EXPECT_EQ(examples, 6);
    EXPECT_TRUE(boost::filesystem::exists(at("qsf.log")));
}

}  // namespace
}  // namespace kvan::logging::impl
