#pragma once

#include "lib/logger_settings.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace kvan::logging::impl {

/// A directory of its own for the files of a test.
class LogFixture : public ::testing::Test {
protected:
    LogFixture() : m_directory(boost::filesystem::temp_directory_path() / boost::filesystem::unique_path()) {
        boost::filesystem::create_directory(m_directory);
    }
    ~LogFixture() override { boost::filesystem::remove_all(m_directory); }

    boost::filesystem::path at(const std::string& name) const { return m_directory / name; }

    std::string contentOf(const std::string& name) const {
        boost::filesystem::ifstream file(at(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void put(const std::string& name, const std::string& content) const {
        boost::filesystem::ofstream(at(name)) << content;
    }

    /// A `<sink>` element that writes to the file of that name; `options` are elements behind its path.
    std::string fileSink(const std::string& name, const std::string& file, const std::string& options = "") const {
        return "<sink name='" + name + "' class='kvan.logging.RollingFileSink'><file-path>" + at(file).string() +
               "</file-path>" + options + "</sink>";
    }

    static LoggerSettings settingsOf(const std::string& elements) {
        return LoggerSettings::parse("<kvan-logconf>" + elements + "</kvan-logconf>", "test");
    }

    boost::filesystem::path m_directory;
};

}  // namespace kvan::logging::impl
