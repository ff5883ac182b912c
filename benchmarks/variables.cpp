// Generation with 40 variables a spectrum, of every type, over 50,000 spectra, against bare inserts of the rows of
// these variables alone through SQLite's C interface.

#include "bare_sqlite.h"
#include "qsf2sql/cache/cache_schema.h"
#include "qsf2sql/cache_generator.h"
#include "ratio.h"

#include <cppsqlite/CppSQLite3.h>
#include <sample-analysis/analysis_writer.h>
#include <sample-analysis/variable_tables.h>

#include <boost/filesystem/operations.hpp>
#include <string>
#include <vector>

namespace {

namespace fs = boost::filesystem;
using namespace benchmarks;
using namespace kvan;

constexpr std::uint32_t g_spectra = 50000;
constexpr std::uint16_t g_variables = 40;

enum Kind { Integer = 5, Double = 10, String = 11 };

struct Variable {
    Kind kind;
    bool isVector;
    sample::VariableValue value;
};

/// Half of the variables are doubles, as readings of voltages and temperatures are.
std::vector<Variable> variables(bool vectors) {
    const std::vector<Variable> scalars = {{Double, false, 29.5},
                                           {Double, false, -4500.25},
                                           {Integer, false, 2500},
                                           {String, false, "Electrospray, 3 \xB5L/min"}};
    const std::vector<Variable> all = {
        {Double, false, 29.5},     {Double, true, std::vector{2.6, 3.1e-3, 1.4e-7}},
        {Double, false, -4500.25}, {Integer, true, std::vector<std::int32_t>{5, 40, 300}},
        {Integer, false, 2500},    {String, false, "Gradient"},
        {Double, false, 0.125},    {String, true, std::vector<std::string>{"Hexapole", "\xB0\x43"}}};
    return vectors ? all : scalars;
}

/// An analysis without spectra data. Gone with its directory when the object goes.
class Analysis {
public:
    explicit Analysis(bool vectors)
        : m_directory(fs::temp_directory_path() / fs::unique_path("qsf-variables-%%%%-%%%%")) {
        const std::vector<Variable> kinds = variables(vectors);
        sample::AnalysisHeaderData header;
        std::vector<sample::VariableSetting> settings;
        for (std::uint16_t index = 0; index < g_variables; ++index) {
            const Variable& variable = kinds[index % kinds.size()];
            const auto fileIndex = static_cast<std::uint16_t>(100 + index);
            // Names in another order than indices, as in files.
            header.variables.push_back({fileIndex, static_cast<std::uint16_t>(variable.kind), variable.isVector,
                                        "Device_Reading" + std::to_string(index * 17 % g_variables) + "_Act"});
            settings.push_back({fileIndex, variable.value});
        }
        sample::AnalysisWriter writer(m_directory, header);
        const sample::SpectrumData spectrum{.pool = sample::variableTables(settings)};
        for (std::uint32_t number = 0; number < g_spectra; ++number)
            writer.addSpectrum(spectrum);
        writer.finish();
    }
    ~Analysis() { fs::remove_all(m_directory); }

    void generate() const {
        fs::remove(cacheFile());
        cppsqlite::CppSQLite3DB database;
        database.open(cacheFile(), cppsqlite::CppSQLite3DB::OpenMode::Private);
        database.execDML("BEGIN TRANSACTION");
        io::CacheGenerator::fillSqlCacheFromQsf(m_directory / "analysis.qsf", database, true, {});
        database.execDML("COMMIT TRANSACTION");
    }
    std::string cacheFile() const { return (m_directory / "cache.sqlite").string(); }

private:
    fs::path m_directory;
};

/// The rows of all spectra, which are those of the first one but for its number.
void insertBare(const std::string& file, const Rows& rowsOfASpectrum) {
    fs::remove(file);
    sqlite3* connection = nullptr;
    check(sqlite3_open(file.c_str(), &connection), connection);
    const auto execute = [connection](const char* sql) {
        check(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), connection);
    };
    execute("PRAGMA journal_mode=MEMORY");
    execute("BEGIN TRANSACTION");
    for (const char* const statement : io::qsf2sql::cache::g_createTables)
        execute(statement);
    {
        BareStatement insert(connection, "INSERT INTO PerSpectrumVariables (Variable,Value,Spectrum) VALUES (?,?,?)");
        for (std::uint32_t number = 1; number <= g_spectra; ++number) {
            insert.bind(3, number);
            rowsOfASpectrum.runAll(insert);
        }
    }
    execute("COMMIT TRANSACTION");
    sqlite3_close(connection);
}

/// The yardstick writes the rows of a spectrum in the order of their key (0), or in that of the names (1), in which the
/// generation writes them.
void variablesOfACache(benchmark::State& state) {
    const Analysis analysis(state.range(0) != 0);
    analysis.generate();
    const Rows rows(analysis.cacheFile(),
                    "SELECT v.Variable, v.Value FROM PerSpectrumVariables v JOIN SupportedVariables s ON "
                    "s.Variable = v.Variable WHERE v.Spectrum = 1 ORDER BY " +
                        std::string(state.range(1) != 0 ? "s.PermanentName" : "v.Variable"));
    reportRatio<boost::chrono::steady_clock>(
        state, 1.5, [&] { analysis.generate(); }, [&] { insertBare(analysis.cacheFile(), rows); });
}
BENCHMARK(variablesOfACache)
    ->ArgNames({"vectors", "by_name"})
    ->Args({0, 0})
    ->Args({1, 0})
    ->Args({1, 1})
    ->Iterations(7)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
