#include "configuration.h"

#include "diagnostic.h"
#include "self_holder.h"

#include <sysutils/environment.h>
#include <sysutils/platform.h>

#include <array>
#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>

// Where the configuration comes from, in this order: a text that the host exports, a file that it names, a file beside
// the executable, the built-in default. The first that gives a document rules. Whatever is wrong with it, from a file
// that does not open to a rule that is broken, is said on standard error and leads to the default: a log must never
// keep a program from running. Only a failure of the default itself ends the process.
namespace kvan::logging::impl {

namespace {

constexpr const char* g_default =
    R"(<kvan-logconf><sink name="console" class="kvan.logging.ConsoleSink"/><root level="INFO"><sink ref="console"/></root></kvan-logconf>)";
constexpr const char* g_unspecifiedFile = "<unspecified file>";
constexpr const char* g_fileName = "kvan-logconf.xml";
// Far above any configuration; a file that grows without end must not fill the memory.
constexpr std::size_t g_largestFile = 16 * 1024 * 1024;

using HostText = const char*();

/// What the host says is copied at once. A null text counts as a function that is not there.
std::optional<std::string> askHost(const os::self_holder& program, const char* function) {
    auto* const ask = program.function<HostText>(function);
    const char* text = ask != nullptr ? ask() : nullptr;
    // The text is the host's, who may free or change it after the call.
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

/// Empty if the file does not open.
std::optional<std::string> readFile(const boost::filesystem::path& path) {
    const auto file = sys::PositionedFile::open(path);
    if (!file)
        return std::nullopt;
    std::string text;
    std::array<char, 4096> bytes{};
    std::int64_t got = 0;
    // To the end, not to the size: the file may grow while it is read.
    while ((got = file->readAt(bytes.data(), bytes.size(), text.size())) > 0) {
        text.append(bytes.data(), static_cast<std::size_t>(got));
        if (text.size() > g_largestFile)
            BOOST_THROW_EXCEPTION(std::runtime_error("The file is too large"));
    }
    return text;
}

/// The document that rules, and in `name` what it is called in messages; empty if there is none but the default.
std::optional<std::string> findDocument(std::string& name) {
    const os::self_holder program;
    if (!program) {
        KVAN_DIAGNOSE(Error, "Could not acquire handle to executable\n");
        KVAN_DIAGNOSE(Error,
                      "self_loader could not be initialized. Any attempts to load the initializer functions "
                      "\"kvan_logging_get_logconf\" or \"kvan_logging_get_logconf_path\" will fail\n");
    } else if (auto document = askHost(program, "kvan_logging_get_logconf")) {
        return document;
    } else if (const auto path = askHost(program, "kvan_logging_get_logconf_path")) {
        name = *path;
        document = readFile(sys::pathFromUtf8(*path));
        if (!document)
            KVAN_DIAGNOSE(Error, "kvan_logging_get_logconf_path returned a file path that cannot be opened: " + *path);
        return document;
    }
    const auto path = sys::executablePath().parent_path() / g_fileName;
    boost::system::error_code fault;
    if (!boost::filesystem::exists(path, fault))
        return std::nullopt;
    name = sys::pathToUtf8(path);
    auto document = readFile(path);
    if (!document)
        BOOST_THROW_EXCEPTION(std::runtime_error("The file cannot be opened"));
    return document;
}

void diagnoseUnusable(const std::string& name, const std::string& reason) {
    KVAN_DIAGNOSE(Error, "kvan-logconf configuration could not be parsed: " + name + reason);
}

std::optional<LoggerSettings> configuredSettings() {
    std::string name = g_unspecifiedFile;
    try {
        if (const auto document = findDocument(name))
            return LoggerSettings::parse(*document, name);
    } catch (const std::exception& fault) {
        diagnoseUnusable(name, ":\n " + std::string(fault.what()) + "\n");
    } catch (...) {
        diagnoseUnusable(name, ":\n unknown exception.\n");
    }
    return std::nullopt;
}

}  // namespace

LoggerSettings loadSettings() noexcept {
    try {
        auto settings = configuredSettings();
        return settings ? std::move(*settings) : LoggerSettings::parse(g_default, g_unspecifiedFile);
    } catch (...) {
        KVAN_DIAGNOSE(Error, "Default configuration could not be loaded - program terminate\n");
        std::terminate();
    }
}

}  // namespace kvan::logging::impl
