#include "analysis.h"
#include "calibration_in_force.h"
#include "calibration_kinds.h"
#include "commands.h"
#include "sketch.h"
#include "text.h"

#include <calibration-core/interfaces/Polarity.h>

#include <CLI/CLI.hpp>

// The summary of an analysis: one line an entry, its name padded to a column, all out of the cache but for the
// calibration in force. Properties come in the order of their rows; a value that is missing leaves its line out rather
// than showing a number that nobody measured.

namespace qsf2sql_tool {

namespace {

void writeEntry(Output& output, const std::string& name, const std::string& value) {
    output.write(padRight(name, 28) + printable(value) + "\n");
}

void writeProperties(Database& database, Output& output) {
    auto query = database.execQuery(
        "SELECT Key, Value FROM Properties WHERE Key <> 'SchemaType' AND Value <> '' ORDER BY rowid");
    for (; !query.eof(); query.nextRow())
        writeEntry(output, text(query, 0), text(query, 1));
}

void writeSpectraSummary(Database& database, Output& output) {
    const auto query = database.execQuery(
        // One pass over the table for all of it.
        "SELECT count(*), count(ProfileIntensityId), count(LineIndexId), count(DISTINCT Segment), min(Rt), "
        "max(Rt), min(MzAcqRangeLower), max(MzAcqRangeUpper) FROM Spectra");
    const auto count = [&query](int column) { return std::to_string(integer(query, column).value_or(0)); };
    writeEntry(output, "Spectra", count(0) + " (" + count(1) + " with profile, " + count(2) + " with peak list)");
    writeEntry(output, "Segments", count(3));
    // Without spectra there is neither a time nor a range.
    if (real(query, 4))
        writeEntry(output, "Retention time",
                   fixed(*real(query, 4), 2) + " to " + fixed(real(query, 5).value_or(0.0), 2) + " s");
    if (integer(query, 6))
        writeEntry(output, "Acquired m/z", count(6) + " to " + count(7));
}

void writeCalibration(Analysis& analysis, Output& output) {
    const CalibrationInForce calibration = calibrationInForce(analysis);
    writeEntry(output, "Calibration in force", calibration.source);
    for (const auto& [store, reason] : calibration.others)
        writeEntry(output, "  " + store, reason);
}

void writeKinds(Database& database, Output& output) {
    auto query = database.execQuery(
        "SELECT ak.MsLevel + 1, ak.Polarity, count(*) FROM Spectra s JOIN AcquisitionKeys ak ON "
        "ak.Id = s.AcquisitionKey GROUP BY 1, 2 ORDER BY 1, 2");
    for (; !query.eof(); query.nextRow())
        writeEntry(output,
                   "  MS" + text(query, 0) + (integer(query, 1) == kvan::POLARITY_NEGATIVE ? " negative" : " positive"),
                   text(query, 2));
}

void writeChromatogram(Database& database, Output& output) {
    auto query = database.execQuery(
        "SELECT s.Rt, s.SumIntensity FROM Spectra s JOIN AcquisitionKeys ak ON ak.Id = s.AcquisitionKey "
        "WHERE ak.MsLevel = 0 AND s.SumIntensity IS NOT NULL ORDER BY s.Rt");
    // Over time, of the survey spectra alone: fragments would draw the intensities of their precursors once more.
    std::vector<double> times;
    std::vector<double> sums;
    for (; !query.eof(); query.nextRow()) {
        times.push_back(real(query, 0).value_or(0.0));
        sums.push_back(real(query, 1).value_or(0.0));
    }
    const std::string curve = sketch(times, sums, "retention time / s");
    if (!curve.empty())
        output.write("\nSummed intensity of the MS1 spectra\n\n" + curve);
}

void writeInfo(const std::string& path, bool withSketch, Output& output) {
    Analysis analysis(path);
    writeEntry(output, "Analysis", analysis.mainFile());
    // A temporary cache is gone when the command ends, so its path would be of no use.
    writeEntry(output, "Cache",
               analysis.isCacheTemporary() ? "none kept, since the directory cannot be written" : analysis.cacheFile());
    writeProperties(analysis.database(), output);
    writeSpectraSummary(analysis.database(), output);
    writeKinds(analysis.database(), output);
    writeEntry(output, "Calibration", calibrationKinds(analysis.database()));
    writeCalibration(analysis, output);
    if (withSketch)
        writeChromatogram(analysis.database(), output);
}

}  // namespace

void addInfoCommand(CLI::App& app, Output& output) {
    struct Options {
        std::string path;
        bool noSketch = false;
    };
    CLI::App& command =
        *app.add_subcommand("info", "Tell what was measured, which calibration is in force, and where the cache lies");
    const auto options = std::make_shared<Options>();
    command.add_option("DIR", options->path, "Directory of the analysis or its main file")->required();
    command.add_flag("--no-sketch", options->noSketch, "Leave out the chromatogram");
    command.footer("Example:\n  qsf2sql info demo-run");
    command.callback(
        [options, &output] { readingCache([&] { writeInfo(options->path, !options->noSketch, output); }); });
}

}  // namespace qsf2sql_tool
