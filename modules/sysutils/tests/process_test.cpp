#include <sysutils/environment.h>
#include <sysutils/loaded_module.h>
#include <sysutils/process.h>
#include <test-support/support.h>

#include <signal.h>

namespace kvan::sys {
namespace {

class Variable {
public:
    Variable(const char* name, const char* value) : m_name(name) {
        if (const char* before = std::getenv(name))
            m_before = before;
        set(value);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(m_before ? m_before->c_str() : nullptr); }

private:
    void set(const char* value) { value != nullptr ? ::setenv(m_name, value, 1) : ::unsetenv(m_name); }

    const char* m_name;
    std::optional<std::string> m_before;
};

TEST(Environment, DirectoriesComeFromVariablesAndElseFromTheUserDatabase) {
    EXPECT_EQ(executablePath().filename(), "sysutils.tests");
    const Variable home("HOME", "/homes/ann");
    {
        const Variable data("XDG_DATA_HOME", "/data");
        EXPECT_EQ(userHome(), "/homes/ann");
        EXPECT_EQ(userDataHome(), "/data");
    }
    const Variable noData("XDG_DATA_HOME", "");
    EXPECT_EQ(userDataHome(), "/homes/ann/.local/share");
    const Variable noHome("HOME", nullptr);
    EXPECT_TRUE(boost::filesystem::is_directory(userHome()));
    EXPECT_EQ(userDataHome(), userHome() / ".local/share");
}

TEST(LoadedModule, ProgramGivesItsOwnSymbolsOnly) {
    auto program = LoadedModule::program();
    ASSERT_TRUE(program);
    EXPECT_EQ(program->symbol("gnu_get_libc_version"), nullptr) << "of a library";
    EXPECT_EQ(program->symbol("no_such_symbol"), nullptr);
    EXPECT_TRUE(program->release());
    EXPECT_TRUE(LoadedModule::pinned(reinterpret_cast<const void*>(&std::getenv)));
    int local = 0;
    EXPECT_FALSE(LoadedModule::pinned(&local));
}

TEST(StartQuietThread, SignalsStayWithTheOtherThreads) {
    bool isBlocked = false;
    startQuietThread([&] {
        sigset_t held;
        pthread_sigmask(SIG_SETMASK, nullptr, &held);
        isBlocked = sigismember(&held, SIGTERM) == 1;
    }).join();
    EXPECT_TRUE(isBlocked);
    sigset_t held;
    pthread_sigmask(SIG_SETMASK, nullptr, &held);
    EXPECT_EQ(sigismember(&held, SIGTERM), 0);
}

}  // namespace
}  // namespace kvan::sys
