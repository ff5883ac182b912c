#include <sysutils/environment.h>
#include <sysutils/loaded_module.h>
#include <sysutils/process.h>
#include <test-support/support.h>

#include <signal.h>

namespace kvan::sys {
namespace {

TEST(Environment, DirectoriesComeFromVariablesAndElseFromTheUserDatabase) {
    EXPECT_EQ(executablePath().filename(), "sysutils.tests");
    ::setenv("HOME", "/homes/ann", 1);
    ::setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(userHome(), "/homes/ann");
    EXPECT_EQ(userDataHome(), "/data");
    ::setenv("XDG_DATA_HOME", "", 1);
    EXPECT_EQ(userDataHome(), "/homes/ann/.local/share");
    ::unsetenv("HOME");
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
