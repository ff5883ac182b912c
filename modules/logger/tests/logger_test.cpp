#include <logger/logger.h>
#include <test-support/support.h>

#include <regex>

namespace kvan::logging {
namespace {

using test::failureOf;

TEST(Logger, NamesAreDottedWords) {
    for (const char* name : {"a", "a.b-c_d.e1", "kvan.io.qsf2sql"})
        EXPECT_NO_THROW(Logger::getLogger(name)) << name;
    for (const char* name : {"", "1a", "a..b", ".a", "a.", "a b"})
        EXPECT_EQ(failureOf([&] { Logger::getLogger(name); }), "Invalid logger name: \"" + std::string(name) + "\"");
    EXPECT_EQ(failureOf([] { Logger::getLogger(nullptr); }), "Invalid logger name: <NULL>");
    EXPECT_EQ(failureOf([] { Logger::getLogger("a").isEnabled(static_cast<Level::type>(6)); }),
              "Invalid logging level (ordinal value: 6)");
}

TEST(Logger, WritesInfoAndAboveToStandardOutputAndEvaluatesNothingBelow) {
    const Logger logger = Logger::getLogger("kvan.test");
    bool evaluated = false;
    const auto text = [&] {
        evaluated = true;
        return "seen";
    };
    ::testing::internal::CaptureStdout();
    KVAN_LOG(logger, DEBUG) << text();
    EXPECT_FALSE(evaluated);
    KVAN_LOG(logger, WARN) << text() << ' ' << 7;
    const std::string output = ::testing::internal::GetCapturedStdout();
    EXPECT_TRUE(std::regex_match(
        output,
        std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{6} \[tid=0x[0-9a-f]+\] \[WARN \] kvan\.test: seen 7\n)")))
        << output;
}

}  // namespace
}  // namespace kvan::logging
