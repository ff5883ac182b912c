#include "analysis.h"
#include "commands.h"
#include "table.h"
#include "text.h"

#include <binaryio/heap_binary.h>

#include <CLI/CLI.hpp>
#include <span>

// Values of variables, of one spectrum or over the run. The cache keeps scalars as SQLite values and vectors as blobs
// of their elements; the type of the declaration tells how to read the blob, and a value of an unknown type is shown as
// text.

namespace qsf2sql_tool {

namespace {

/// Codes of the column `Type`.
enum VariableType { Integer = 0, Double = 1, String = 2, IntegerVector = 10, DoubleVector = 11, StringVector = 12 };

struct VariablesOptions {
    std::string path;
    std::optional<std::int64_t> spectrum;
    bool csv = false;
};

constexpr const char* g_spectrumSql =
    "SELECT sv.PermanentName, sv.Type, sv.DisplayDimension, v.Value FROM Variables v "
    "JOIN SupportedVariables sv ON sv.Variable = v.Variable "
    "WHERE v.Spectrum = ? AND v.Value IS NOT NULL ORDER BY sv.PermanentName";

/// What is set for a spectrum or for the spectra of a segment and key, over the whole run.
constexpr const char* g_runSql =
    "SELECT sv.PermanentName, sv.Type, sv.DisplayDimension, min(v.Value), max(v.Value) FROM SupportedVariables sv "
    "JOIN (SELECT Variable, Value FROM PerSpectrumVariables UNION ALL "
    "SELECT Variable, Value FROM PerSegAcqKeyVariables) v ON v.Variable = sv.Variable "
    "WHERE v.Value IS NOT NULL GROUP BY sv.Variable ORDER BY sv.PermanentName";
enum ResultColumn { Name, Type, Unit, Value, Highest };

constexpr int g_digits = 7;

std::string numberText(double value, TableForm form) {
    return form == TableForm::Csv ? shortest(value) : significant(value, g_digits);
}

/// Numbers as the cache stores a vector: one after the other, little-endian. What is left at the end is no number.
template <class Element>
std::string joinNumbers(const Row& query, int column, TableForm form) {
    const std::span<const unsigned char> bytes = query.blobField(column);
    kvan::binaryio::IHeapBinary numbers(bytes.data(), bytes.size());
    std::string joined;
    for (auto count = bytes.size() / sizeof(Element); count > 0; --count) {
        Element element;
        numbers >> element;
        joined += (joined.empty() ? "" : "; ") + numberText(element, form);
    }
    return joined;
}

/// The texts of a vector stand apart by zero bytes.
std::string joinTexts(std::string_view bytes) {
    std::string joined;
    for (const char byte : bytes)
        joined += byte == '\0' ? std::string("; ") : std::string(1, byte);
    return joined;
}

std::string valueText(const Row& query, int column, TableForm form) {
    switch (integer(query, Type).value_or(-1)) {
        case Double:
            return numberText(real(query, column).value_or(0.0), form);
        case IntegerVector:
            return joinNumbers<std::int32_t>(query, column, form);
        case DoubleVector:
            return joinNumbers<double>(query, column, form);
        case StringVector:
            return joinTexts(query.fieldValue(column));
        default:
            return text(query, column);
    }
}

/// The one value of the run, or the range of those that change.
std::string rangeText(const Row& query, TableForm form) {
    const std::string lowest = valueText(query, Value, form);
    const std::string highest = valueText(query, Highest, form);
    // By their texts: what differs beyond the digits shown is one value to a reader.
    if (lowest == highest)
        return lowest;
    // Only of numbers the lowest and the highest mean something.
    const bool isOrdered = integer(query, Type) == Integer || integer(query, Type) == Double;
    return isOrdered ? lowest + " to " + highest : "(changes)";
}

void requireSpectrum(Database& database, std::int64_t spectrum) {
    auto statement = database.compileStatement("SELECT 1 FROM Spectra WHERE Id = ?");
    statement.bind(1, spectrum);
    if (statement.execQuery().eof())
        throw std::runtime_error("there is no spectrum " + std::to_string(spectrum));
}

void listVariables(const VariablesOptions& options, Output& output) {
    Analysis analysis(options.path, Analysis::AllVariables);
    if (options.spectrum)
        requireSpectrum(analysis.database(), *options.spectrum);
    auto statement = analysis.database().compileStatement(options.spectrum ? g_spectrumSql : g_runSql);
    if (options.spectrum)
        statement.bind(1, *options.spectrum);

    const TableForm form = options.csv ? TableForm::Csv : TableForm::Text;
    Table table(output, form,
                {{"Variable", "variable", 38, 0, Alignment::Left},
                 {"Value", "value", 24},
                 {"Unit", "unit", 6, 0, Alignment::Left}});
    for (auto query = statement.execQuery(); !query.eof(); query.nextRow()) {
        table.addText(text(query, Name));
        table.addText(options.spectrum ? valueText(query, Value, form) : rangeText(query, form));
        table.addText(text(query, Unit));
        table.endRow();
    }
}

}  // namespace

void addVariablesCommand(CLI::App& app, Output& output) {
    CLI::App& command = *app.add_subcommand("variables", "Show voltages, temperatures and other variables");
    const auto options = std::make_shared<VariablesOptions>();
    command.add_option("DIR", options->path, "Directory of the analysis or its main file")->required();
    command.add_option("SPECTRUM", options->spectrum, "Id of a spectrum; without it, the values that occur in the run");
    command.add_flag("--csv", options->csv, "Comma-separated values");
    command.footer(R"(The cache is made anew if it lacks variables.

Examples:
  qsf2sql variables demo-run
  qsf2sql variables demo-run 2)");
    command.callback([options, &output] { readingCache([&] { listVariables(*options, output); }); });
}

}  // namespace qsf2sql_tool
