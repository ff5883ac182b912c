#pragma once

#include <io/qsf2sql/qsf2sql.h>
#include <sample-analysis/analysis_writer.h>
#include <test-support/support.h>

#include <sqlite3.h>

namespace road {

namespace fs = boost::filesystem;
namespace sample = kvan::sample;
using kvan::test::Bytes;
using kvan::test::calibrationBlob;
using sample::AnalysisHeaderData;
using sample::AnalysisWriter;
using sample::LineData;
using sample::SpectrumData;
using Counts = std::vector<std::uint32_t>;
using Doubles = std::vector<double>;
using Floats = std::vector<float>;

constexpr std::uint64_t arrayId(std::uint64_t kind, std::uint64_t offset) {
    return kind << 56 | offset;
}

inline std::string lastError() {
    std::string text(qsf2sql_get_last_error_string(nullptr, 0), '\0');
    qsf2sql_get_last_error_string(text.data(), static_cast<std::uint32_t>(text.size()));
    text.pop_back();
    return text;
}

/// An open handle that closes itself.
class Storage {
public:
    explicit Storage(const std::string& mainFile, int rawCalibration = 1)
        : m_handle(qsf2sql_array_open_storage(rawCalibration, mainFile.c_str())) {}
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;
    ~Storage() { qsf2sql_array_close_storage(m_handle); }

    explicit operator bool() const { return m_handle != 0; }
    std::uint64_t handle() const { return m_handle; }

    /// -1 on failure.
    std::int64_t length(std::uint64_t id) const {
        std::uint64_t count = 4711;
        if (qsf2sql_array_get_num_elements(m_handle, id, &count) == 0) {
            EXPECT_EQ(count, 4711u) << "untouched on failure";
            return -1;
        }
        return static_cast<std::int64_t>(count);
    }

    template <class T>
    int readInto(std::uint64_t id, T* out) const {
        if constexpr (std::is_same_v<T, double>)
            return qsf2sql_array_read_double(m_handle, id, out);
        else if constexpr (std::is_same_v<T, float>)
            return qsf2sql_array_read_float(m_handle, id, out);
        else
            return qsf2sql_array_read_uint32(m_handle, id, out);
    }

    /// The whole array; a failure is a failure of the test.
    template <class T>
    std::vector<T> read(std::uint64_t id) const {
        std::vector<T> elements(static_cast<std::size_t>(std::max<std::int64_t>(length(id), 0)));
        EXPECT_EQ(readInto(id, elements.data()), 1) << lastError();
        return elements;
    }

    /// The text of a read that must fail and leave the caller's memory alone.
    std::string failureOf(std::uint64_t id) const {
        double untouched = 42.0;
        EXPECT_EQ(qsf2sql_array_read_double(m_handle, id, &untouched), 0);
        EXPECT_EQ(untouched, 42.0);
        return lastError();
    }

private:
    std::uint64_t m_handle;
};

/// A directory for one analysis, gone after the test.
class Road : public ::testing::Test {
protected:
    std::string mainFile() const { return (m_directory / "analysis.qsf").string(); }
    std::string cacheFile() const { return (m_directory / "analysis.sqlite").string(); }

    /// Writes an analysis of these spectra. Removes the cache, which would fit another analysis of the same sizes.
    std::vector<sample::SpectrumLocation> write(const std::vector<SpectrumData>& spectra,
                                                const AnalysisHeaderData& header = {}) const {
        fs::remove(cacheFile());
        AnalysisWriter writer(m_directory, header);
        std::vector<sample::SpectrumLocation> locations;
        for (const SpectrumData& spectrum : spectra)
            locations.push_back(writer.addSpectrum(spectrum));
        writer.finish();
        return locations;
    }

    /// Runs statements on a database; gives the first value of the last row as text, "" for none.
    std::string sql(const std::string& statements, const char* name = "analysis.sqlite") const {
        sqlite3* database = nullptr;
        std::string value;
        char* fault = nullptr;
        EXPECT_EQ(sqlite3_open((m_directory / name).c_str(), &database), SQLITE_OK);
        const auto take = [](void* result, int, char** texts, char**) {
            *static_cast<std::string*>(result) = texts[0] != nullptr ? texts[0] : "NULL";
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(database, statements.c_str(), take, &value, &fault), SQLITE_OK) << fault;
        sqlite3_free(fault);
        sqlite3_close(database);
        return value;
    }

    std::uint64_t id(const std::string& column, int spectrum = 1) const {
        return std::stoull(sql("SELECT " + column + " FROM Spectra WHERE Id = " + std::to_string(spectrum)));
    }

    const kvan::test::TemporaryDirectory m_directory;
};

}  // namespace road
