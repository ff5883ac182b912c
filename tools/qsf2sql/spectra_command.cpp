#include "analysis.h"
#include "commands.h"
#include "table.h"

#include <calibration-core/interfaces/Polarity.h>

#include <CLI/CLI.hpp>

// A row a spectrum, straight out of the cache in one statement. A condition that was not given is a parameter without a
// value, which the statement passes over; so there is one text of it, and SQLite plans it once.

namespace qsf2sql_tool {

namespace {

struct SpectraOptions {
    std::string path;
    std::optional<std::int64_t> msLevel;
    std::optional<double> from;
    std::optional<double> to;
    std::int64_t count = -1;
    bool csv = false;
};

/// Levels count from 0 in the cache and from 1 in the list. A spectrum without quick-info has no key, and a survey
/// spectrum no stage; both joins are outer ones, so that they are listed all the same, with empty columns.
///
/// The mass of the last stage is what was fragmented into the spectrum itself.
constexpr const char* g_spectraSql =
    "SELECT s.Id, s.Rt, ak.MsLevel + 1, ak.Polarity, p.Mass, s.Parent, s.MzAcqRangeLower, s.MzAcqRangeUpper, "
    "s.SumIntensity, s.MaxIntensity, s.LineIndexId IS NOT NULL, s.ProfileIntensityId IS NOT NULL FROM Spectra s "
    "LEFT JOIN AcquisitionKeys ak ON ak.Id = s.AcquisitionKey "
    "LEFT JOIN (SELECT TargetSpectrum, Mass, max(Number) FROM Steps GROUP BY TargetSpectrum) p "
    "ON p.TargetSpectrum = s.Id "
    "WHERE (?1 IS NULL OR ak.MsLevel + 1 = ?1) AND (?2 IS NULL OR s.Rt >= ?2) AND (?3 IS NULL OR s.Rt <= ?3) "
    "ORDER BY s.Id LIMIT ?4";

std::string dataForms(bool lines, bool profile) {
    if (lines && profile)
        return "both";
    return lines ? "lines" : profile ? "profile" : "none";
}

void listSpectra(const SpectraOptions& options, Output& output) {
    Analysis analysis(options.path);
    auto statement = analysis.database().compileStatement(g_spectraSql);
    // What is not bound is NULL: no limit.
    if (options.msLevel)
        statement.bind(1, *options.msLevel);
    if (options.from)
        statement.bind(2, *options.from);
    if (options.to)
        statement.bind(3, *options.to);
    statement.bind(4, options.count);

    Table table(output, options.csv ? TableForm::Csv : TableForm::Text,
                {{"Id", "id", 8},
                 {"RT / s", "rt_seconds", 10, 3},
                 {"MS", "ms_level", 3},
                 {"Pol", "polarity", 3},
                 {"Precursor", "precursor_mz", 10, 4},
                 {"Parent", "parent_id", 8},
                 {"Lower", "mz_lower", 6},
                 {"Upper", "mz_upper", 6},
                 {"Sum", "sum_intensity", 14, 0},
                 {"Maximum", "max_intensity", 12, 0},
                 {"Data", "data", 7}});
    for (auto query = statement.execQuery(); !query.eof(); query.nextRow()) {
        table.addInteger(integer(query, 0));
        table.addReal(real(query, 1));
        table.addInteger(integer(query, 2));
        table.addText(integer(query, 3) == kvan::POLARITY_NEGATIVE ? "-" : "+");
        table.addReal(real(query, 4));
        for (int column = 5; column <= 7; ++column)
            table.addInteger(integer(query, column));
        table.addReal(real(query, 8));
        table.addReal(real(query, 9));
        // What the spectrum is stored as, not what could be read of it.
        table.addText(dataForms(integer(query, 10) == 1, integer(query, 11) == 1));
        table.endRow();
    }
}

}  // namespace

void addSpectraCommand(CLI::App& app, Output& output) {
    CLI::App& command = *app.add_subcommand("spectra", "List the spectra");
    const auto options = std::make_shared<SpectraOptions>();
    command.add_option("DIR", options->path, "Directory of the analysis or its main file")->required();
    command.add_option("--ms-level", options->msLevel, "Only this level: 1 for survey spectra, 2 for MS/MS")
        ->check(CLI::PositiveNumber);
    command.add_option("--from", options->from, "Only from this retention time on, in seconds");
    command.add_option("--to", options->to, "Only up to this retention time, in seconds");
    command.add_option("--count", options->count, "At most so many")->check(CLI::NonNegativeNumber);
    command.add_flag("--csv", options->csv, "Comma-separated values with all digits");
    command.footer(R"(Examples:
  qsf2sql spectra demo-run --count 20
  qsf2sql spectra demo-run --ms-level 2 --from 10 --to 12
  qsf2sql spectra demo-run --csv > spectra.csv)");
    command.callback([options, &output] { readingCache([&] { listSpectra(*options, output); }); });
}

}  // namespace qsf2sql_tool
