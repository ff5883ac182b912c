#include "analysis.h"
#include "commands.h"
#include "sketch.h"
#include "table.h"
#include "text.h"

#include <calibration-core/interfaces/Polarity.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>

// One spectrum as a table: which component is shown, which arrays it has, the heading, the sketch and the rows. All
// arrays of a component run over the same points, so a row is one point; a component whose arrays differ in length is
// refused, since no row of it could be trusted.

namespace qsf2sql_tool {

namespace {

struct ReadOptions {
    std::string path;
    std::int64_t spectrum = 0;
    bool profile = false;
    bool lines = false;
    bool csv = false;
    bool rawCalibration = false;
    bool noSketch = false;
    std::optional<std::size_t> top;
};

/// One array of a spectrum and how it is shown.
struct Component {
    Column column;
    std::vector<double> values;
};

/// The components of a spectrum, the m/z values first and the intensities second.
using Spectrum = std::vector<Component>;

/// Columns of the query for the arrays, in the order in which they are shown.
constexpr const char* g_spectrumSql =
    "SELECT s.Rt, ak.MsLevel + 1, ak.Polarity, s.LineMzId, s.LineIntensityId, s.LineIndexId, s.LineIndexWidthId, "
    "s.LinePeakAreaId, s.LineSnrId, s.ProfileMzId, s.ProfileIntensityId FROM Spectra s "
    "LEFT JOIN AcquisitionKeys ak ON ak.Id = s.AcquisitionKey WHERE s.Id = ?";
enum ResultColumn { Rt, MsLevel, Polarity, LineMz, LineIntensity, LineIndex, LineWidth, LineArea, LineSnr, ProfileMz };

constexpr int g_mzDecimals = 6;
constexpr std::size_t g_mzWidth = 13;

Spectrum readArrays(ArrayStorage& storage, const Row& query, bool profile) {
    const int first = profile ? ProfileMz : LineMz;
    std::vector<Column> columns = {{"m/z", "mz", g_mzWidth, g_mzDecimals}, {"Intensity", "intensity", 12, 1}};
    if (!profile)
        columns.insert(columns.end(), {{"Index", "index", 13, 3},
                                       {"Width", "index_width", 8, 2},
                                       {"Area", "peak_area", 13, 1},
                                       {"SNR", "snr", 9, 1}});
    Spectrum spectrum;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        const auto id = integer(query, first + static_cast<int>(column));
        if (!id)
            throw std::runtime_error("the spectrum lacks an array Id in the cache");
        spectrum.push_back({columns[column], storage.read(static_cast<std::uint64_t>(*id))});
    }
    // A peak list has the fields that its instrument stores.
    std::erase_if(spectrum, [](const Component& component) { return component.values.empty(); });
    const bool isWhole =
        spectrum.empty() || (spectrum.size() > 1 && spectrum[1].column.csvName == "intensity" &&
                             std::all_of(spectrum.begin(), spectrum.end(), [&](const Component& other) {
                                 return other.values.size() == spectrum.front().values.size();
                             }));
    if (!isWhole)
        throw std::runtime_error("the spectrum has no m/z values or no intensities");
    return spectrum;
}

std::string precursorsOf(Database& database, std::int64_t spectrum) {
    auto statement = database.compileStatement("SELECT Mass FROM Steps WHERE TargetSpectrum = ? ORDER BY Number");
    statement.bind(1, spectrum);
    std::string precursors;
    for (auto query = statement.execQuery(); !query.eof(); query.nextRow())
        precursors += (precursors.empty() ? "  precursor " : " > ") + fixed(real(query, 0).value_or(0.0), 4);
    return precursors;
}

std::string headingOf(Analysis& analysis, const Row& query, std::int64_t spectrum, bool profile, std::size_t size) {
    return "Spectrum " + std::to_string(spectrum) + "  RT " + fixed(real(query, Rt).value_or(0.0), 3) + " s  MS" +
           text(query, MsLevel) + (integer(query, Polarity) == kvan::POLARITY_NEGATIVE ? "  negative" : "  positive") +
           precursorsOf(analysis.database(), spectrum) + "  " + std::to_string(size) +
           (profile ? " profile points" : " lines") + "\n";
}

/// The rows to show, in the order of the spectrum: all, or those with the highest intensities.
std::vector<std::size_t> chooseRows(const std::vector<double>& intensities, std::optional<std::size_t> top) {
    std::vector<std::size_t> rows(intensities.size());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    if (!top || *top >= rows.size())
        return rows;
    // The highest first, then back into the order of the spectrum.
    const auto end = rows.begin() + static_cast<std::ptrdiff_t>(*top);
    std::partial_sort(rows.begin(), end, rows.end(),
                      [&](std::size_t left, std::size_t right) { return intensities[left] > intensities[right]; });
    rows.erase(end, rows.end());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void writeRows(const Spectrum& spectrum, const ReadOptions& options, Output& output) {
    std::vector<Column> columns;
    for (const Component& component : spectrum)
        columns.push_back(component.column);
    Table table(output, options.csv ? TableForm::Csv : TableForm::Text, columns);
    for (const std::size_t row : chooseRows(spectrum[1].values, options.top)) {
        for (const Component& component : spectrum)
            table.addReal(component.values[row]);
        table.endRow();
    }
}

void readSpectrum(const ReadOptions& options, Output& output) {
    Analysis analysis(options.path);
    auto statement = analysis.database().compileStatement(g_spectrumSql);
    statement.bind(1, options.spectrum);
    const Row query = statement.execQuery();
    if (query.eof())
        throw std::runtime_error("there is no spectrum " + std::to_string(options.spectrum));
    const bool hasLines = integer(query, LineMz).has_value();
    const bool hasProfile = integer(query, ProfileMz).has_value();
    // The peak list unless the profile was asked for or there is nothing else.
    const bool profile = options.profile || (!hasLines && !options.lines);
    if (profile ? !hasProfile : !hasLines)
        throw std::runtime_error("spectrum " + std::to_string(options.spectrum) + " has no " +
                                 (options.profile ? "profile"
                                  : options.lines ? "peak list"
                                                  : "data"));

    ArrayStorage storage(analysis, options.rawCalibration);
    const Spectrum spectrum = readArrays(storage, query, profile);
    const std::size_t size = spectrum.empty() ? 0 : spectrum.front().values.size();
    // CSV is for programs: no heading and no sketch.
    if (!options.csv) {
        output.write(headingOf(analysis, query, options.spectrum, profile, size));
        if (size > 0 && !options.noSketch)
            output.write("\n" + sketch(spectrum[0].values, spectrum[1].values, "m/z") + "\n");
    }
    if (size > 0)
        writeRows(spectrum, options, output);
}

}  // namespace

void addReadCommand(CLI::App& app, Output& output) {
    CLI::App& command = *app.add_subcommand("read", "Show the m/z values and intensities of one spectrum");
    const auto options = std::make_shared<ReadOptions>();
    command.add_option("DIR", options->path, "Directory of the analysis or its main file")->required();
    command.add_option("SPECTRUM", options->spectrum, "Id of the spectrum, as 'qsf2sql spectra' lists it")->required();
    CLI::Option* const lines = command.add_flag("--lines", options->lines, "The peak list (default if there is one)");
    command.add_flag("--profile", options->profile, "The profile")->excludes(lines);
    command.add_option("--top", options->top, "Only the points with the highest intensities");
    command.add_flag("--csv", options->csv, "Comma-separated values with all digits");
    command.add_flag("--no-sketch", options->noSketch, "Leave out the sketch");
    command.add_flag("--raw-calibration", options->rawCalibration,
                     "m/z by the calibration stored at acquisition, not by a re-calibration");
    command.footer(R"(Examples:
  qsf2sql read demo-run 1 --top 10
  qsf2sql read demo-run 1 --profile --csv > profile.csv)");
    command.callback([options, &output] { readingCache([&] { readSpectrum(*options, output); }); });
}

}  // namespace qsf2sql_tool
