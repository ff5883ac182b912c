#pragma once

#include "qsf2sql/cache_generator.h"

#include <cppsqlite/CppSQLite3.h>
#include <sample-analysis/analysis_writer.h>
#include <test-support/support.h>

namespace kvan::io {

/// An analysis directory of its own and the cache generated from it, in memory.
class GeneratedCache : public ::testing::Test {
public:
    boost::filesystem::path file(const char* extension) const {
        return (directory / "analysis").replace_extension(extension);
    }

    /// An analysis of these spectra.
    void write(const std::vector<sample::SpectrumData>& spectra, const sample::AnalysisHeaderData& header = {}) const {
        sample::AnalysisWriter writer(directory, header);
        for (const sample::SpectrumData& spectrum : spectra)
            writer.addSpectrum(spectrum);
        writer.finish();
    }

    /// Replaces the main file by one of these blocks after the two that begin it.
    void writeMainFile(const std::function<void(sample::MainFileWriter&)>& blocks,
                       const sample::AnalysisHeaderData& header = {}) const {
        sample::MainFileWriter main(file(".qsf"));
        main.compressionInfo({});
        main.analysisHeader(header);
        blocks(main);
        main.finish();
    }

    /// Makes a new database for each generation.
    void generate(bool allVariables = false, const std::unordered_set<std::string>& requested = {}) {
        m_database = std::make_unique<cppsqlite::CppSQLite3DB>();
        m_database->open(":memory:");
        m_database->execDML(beforeFilling + "BEGIN TRANSACTION");
        CacheGenerator::fillSqlCacheFromQsf(file(".qsf"), *m_database, allVariables, requested);
        m_database->execDML("COMMIT TRANSACTION");
    }

    /// What generation fails with, as its text; "" if it does not.
    template <class Exception>
    std::string failure() {
        return test::failureOf<Exception>([&] { generate(); });
    }

    /// The texts of the lines at WARN that generation writes, each with a line end.
    std::string warnings(bool allVariables = false) {
        ::testing::internal::CaptureStdout();
        generate(allVariables);
        std::istringstream lines(::testing::internal::GetCapturedStdout());
        std::string texts;
        for (std::string line; std::getline(lines, line);) {
            const std::size_t level = line.find("[WARN ] ");
            if (level != std::string::npos)
                texts += line.substr(line.find(": ", level) + 2) + "\n";
        }
        return texts;
    }

    /// Fields joined by "|", rows by blanks, NULL as "-", reals with all digits that count.
    std::string rows(const std::string& sql) const {
        std::string text;
        for (auto query = m_database->execQuery(sql); !query.eof(); query.nextRow()) {
            for (int field = 0; field < query.numFields(); ++field) {
                if (!text.empty())
                    text += field == 0 ? ' ' : '|';
                text += query.fieldIsNull(field) ? "-" : query.fieldValue(field);
            }
        }
        return text;
    }

    const test::TemporaryDirectory directory;
    std::string beforeFilling;  ///< statements

private:
    std::unique_ptr<cppsqlite::CppSQLite3DB> m_database;
};

using test::calibrationBlob;

/// mass = index * slope + offset
inline sample::Bytes linearBlob(double offset, double slope) {
    return calibrationBlob(0x1002, {offset, slope});
}

/// mass = index * index * scale, for spectra of that key.
inline sample::Bytes referenceBlob(double scale, std::uint8_t polarity, std::uint8_t scanMode,
                                   std::uint8_t acquisitionMode, std::uint8_t msLevel) {
    return calibrationBlob(4, {0.0, 1.0, 0.0, 1e12 * scale, 0.0}, {acquisitionMode, polarity, msLevel, scanMode});
}

}  // namespace kvan::io
