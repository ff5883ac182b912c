#pragma once

#include "lib/logger_settings.h"

#include <test-support/support.h>

namespace kvan::logging::impl {

/// A directory of its own for the files of a test.
class LogFixture : public ::testing::Test {
protected:
    boost::filesystem::path at(const std::string& name) const { return m_directory / name; }

    std::string contentOf(const std::string& name) const { return test::readFile(at(name)); }
    void put(const std::string& name, const std::string& content) const { test::writeFile(at(name), content); }

    /// A `<sink>` element that writes to the file of that name; `options` are elements after its path.
    std::string fileSink(const std::string& name, const std::string& file, const std::string& options = "") const {
        return "<sink name='" + name + "' class='kvan.logging.RollingFileSink'><file-path>" + at(file).string() +
               "</file-path>" + options + "</sink>";
    }

    static LoggerSettings settingsOf(const std::string& elements) {
        return LoggerSettings::parse("<kvan-logconf>" + elements + "</kvan-logconf>", "test");
    }

    const test::TemporaryDirectory m_directory;
};

}  // namespace kvan::logging::impl
