#include "log_fixture.h"

#include <regex>

namespace kvan::logging::impl {
namespace {

/// Runs `logger.host`, a copy of it beside which the files of the test lie.
class HostTest : public LogFixture {
protected:
    HostTest() { boost::filesystem::copy_file(LOGGER_HOST, at("host")); }

    /// Gives its exit status, and what it printed in `m_output` and `m_errors`.
    int run(const std::string& arguments, const std::string& environment = "") {
        const int status = std::system(("cd '" + m_directory.string() + "' && " + environment + " timeout 120 ./host " +
                                        arguments + " >output 2>errors")
                                           .c_str());
        m_output = contentOf("output");
        m_errors = contentOf("errors");
        return status;
    }

    int runWith(const std::string& elements, const std::string& arguments) {
        put("conf", "<kvan-logconf>" + elements + "</kvan-logconf>");
        return run(arguments, "HOST_LOGCONF=\"$(cat conf)\"");
    }

    /// The texts after the name of the logger; a line that is not whole comes as it is.
    static std::multiset<std::string> textsOf(const std::string& lines) {
        static const std::regex form(
            R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{6} \[tid=0x[1-9a-f][0-9a-f]*\] \[WARN \] [a-z.]+: (.*[^0-9]))");
        std::multiset<std::string> texts;
        std::istringstream stream(lines);
        std::smatch parts;
        for (std::string line; std::getline(stream, line);)
            texts.insert(std::regex_match(line, parts, form) ? parts[1].str() : "torn: " + line);
        return texts;
    }

    static std::multiset<std::string> linesOf(const std::string& who, int count, int lines) {
        std::multiset<std::string> texts;
        for (int index = 0; index < count; ++index) {
            for (int line = 0; line < lines; ++line)
                texts.insert(who + ' ' + std::to_string(index) + ' ' + std::to_string(line) + '.');
        }
        return texts;
    }

    std::string m_output;
    std::string m_errors;
};

std::string asyncSink(const std::string& target) {
    return "<sink name='async' class='kvan.logging.AsyncSink'><sink ref='" + target + "'/></sink>";
}

const std::string g_rootOfFile = "<root><sink ref='file'/></root>";
const std::string g_rootOfAsync = "<root><sink ref='async'/></root>";

TEST_F(HostTest, ConfigurationIsLookedForInOrder) {
    const auto document = [&](const std::string& file) {
        return "<kvan-logconf>" + fileSink("file", file) +
               "<sink name='warnings' class='kvan.logging.StdOutSink' level='WARN'/>"
               "<sink name='errors' class='kvan.logging.StdErrSink' level='ERROR'/>"
               "<root><sink ref='file'/><sink ref='warnings'/><sink ref='errors'/></root></kvan-logconf>";
    };
    EXPECT_EQ(run("lines 1 1"), 0);
    EXPECT_EQ(textsOf(m_output), std::multiset<std::string>{"thread 0 0."}) << "the default";
    EXPECT_EQ(m_errors, "asked\n");

    put("kvan-logconf.xml", document("beside.log"));
    put("path.xml", document("path.log"));
    put("text.xml", document("text.log"));
    EXPECT_EQ(run("lines 1 1"), 0);
    EXPECT_EQ(run("lines 1 1", "HOST_LOGCONF_PATH=path.xml"), 0);
    EXPECT_EQ(run("lines 1 1", "HOST_LOGCONF=\"$(cat text.xml)\" HOST_LOGCONF_PATH=path.xml"), 0);
    EXPECT_EQ(textsOf(m_output), std::multiset<std::string>{"thread 0 0."}) << "its sink takes warnings and above";
    EXPECT_EQ(m_errors, "asked\n") << "its sink takes errors and above";
    for (const char* file : {"beside.log", "path.log", "text.log"})
        EXPECT_EQ(textsOf(contentOf(file)).count("thread 0 0."), 1u) << file;
}

TEST_F(HostTest, UnusableConfigurationIsReportedAndLeadsToTheDefault) {
    put("kvan-logconf.xml", "<kvan-logconf>" + fileSink("file", "beside.log") + g_rootOfFile + "</kvan-logconf>");
    put("bad.xml", "<kvan-logconf>\n<sink name='s' class='kvan.logging.NullSink'/>" + fileSink("made", "made.log") +
                       asyncSink("made") + "</kvan-logconf>");
    put("large.xml", "");
    boost::filesystem::resize_file(at("large.xml"), 16 * 1024 * 1024 + 1);
    const std::string unparsed = "kvan-logconf configuration could not be parsed: ";
    const std::string unopened = "kvan_logging_get_logconf_path returned a file path that cannot be opened: ";
    const std::pair<const char*, std::string> cases[] = {
        {"HOST_LOGCONF=", unparsed + R"(<unspecified file>:\n [^]*)"},
        {"HOST_LOGCONF='<a>'", unparsed + R"(<unspecified file>:\n [^]*)"},
        {"HOST_LOGCONF_PATH=missing.xml", unopened + R"(missing\.xml)"},
        {"HOST_LOGCONF_PATH=.", unopened + R"(\.)"},
        {"HOST_LOGCONF_PATH=large.xml", unparsed + R"(large\.xml:\n The file is too large)"},
        {"HOST_LOGCONF_PATH=bad.xml", unparsed + R"(bad\.xml:\n No <root> element found)"},
    };
    for (const auto& [environment, words] : cases) {
        EXPECT_EQ(run("lines 1 1", environment), 0);
        EXPECT_TRUE(std::regex_match(m_errors, std::regex(R"(asked\nconfiguration\.cpp:\d+ ERROR )" + words + "\n")))
            << environment << '\n'
            << m_errors;
        EXPECT_EQ(textsOf(m_output).count("thread 0 0."), 1u) << environment;
    }
    EXPECT_FALSE(boost::filesystem::exists(at("beside.log")));
    boost::filesystem::remove(at("kvan-logconf.xml"));
    boost::filesystem::create_directory(at("kvan-logconf.xml"));
    EXPECT_EQ(run("lines 1 1"), 0);
    EXPECT_NE(m_errors.find("kvan-logconf.xml:\n The file cannot be opened\n"), std::string::npos) << m_errors;
}

TEST_F(HostTest, NoLineIsLostOrTornWhoeverWrites) {
    const std::string rolling =
        fileSink("file", "app.log", "<max-file-size>10240</max-file-size><max-backups>1000</max-backups>");
    for (const std::string& elements : {rolling + g_rootOfFile, rolling + asyncSink("file") + g_rootOfAsync}) {
        EXPECT_EQ(runWith(elements, "lines 4 2000"), 0);
        std::string all;
        std::string file = "app.log";
        for (int backup = 0; boost::filesystem::exists(at(file)); ++backup) {
            all += contentOf(file);
            boost::filesystem::remove(at(file));
            file = "app." + std::to_string(backup) + ".log";
        }
        EXPECT_EQ(textsOf(all), linesOf("thread", 4, 2000));
        EXPECT_EQ(m_errors, "asked\n");
    }
}

TEST_F(HostTest, ExitInTheMiddleLeavesWholeLinesInOrder) {
    const std::string file = fileSink("file", "app.log", "<max-file-size>0</max-file-size>");
    EXPECT_EQ(runWith(file + asyncSink("file") + g_rootOfAsync, "exit"), 0);
    const auto texts = textsOf(contentOf("app.log"));
    EXPECT_EQ(std::count_if(texts.begin(), texts.end(), [](const auto& text) { return text.starts_with("torn"); }), 0);
    EXPECT_GT(texts.size(), 100u);
}

TEST_F(HostTest, ForkedChildrenLogOnWithoutTheLinesOfTheirParent) {
#if defined(QSF2SQL_SANITIZED)
    GTEST_SKIP() << "allocators of sanitizers do not survive a fork beside running threads: a child may wait for ever";
#endif
    const std::string file = fileSink("file", "app.log", "<max-file-size>0</max-file-size>");
    for (const std::string& elements : {file + g_rootOfFile, file + asyncSink("file") + g_rootOfAsync}) {
        EXPECT_EQ(runWith(elements, "fork 20"), 0) << m_errors;
        auto expected = linesOf("thread", 3, 2000);
        expected.merge(linesOf("child", 20, 50));
        EXPECT_EQ(textsOf(contentOf("app.log")), expected);
        boost::filesystem::remove(at("app.log"));
    }
}

TEST_F(HostTest, ModulesOfOneProcessShareTheConfiguration) {
    EXPECT_EQ(runWith(fileSink("file", "app.log") + asyncSink("file") + g_rootOfAsync, "modules '" LOGGER_MODULE "'"),
              0);
    EXPECT_EQ(textsOf(contentOf("app.log")), (std::multiset<std::string>{"program 0.", "module", "module", "module"}));
    EXPECT_EQ(m_errors, "asked\n") << "once for all";
}

}  // namespace
}  // namespace kvan::logging::impl
