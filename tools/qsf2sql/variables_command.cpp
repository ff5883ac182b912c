#include "analysis.h"
#include "commands.h"
#include "table.h"
#include "text.h"

#include <CLI/CLI.hpp>
#include <cstring>

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

template <class Element>
std::string joinNumbers(std::string_view bytes, TableForm form) {
    std::string text;
    for (; bytes.size() >= sizeof(Element); bytes.remove_prefix(sizeof(Element))) {
        Element element;
        std::memcpy(&element, bytes.data(), sizeof element);
        text += (text.empty() ? "" : "; ") + numberText(element, form);
    }
    return text;
}

std::string joinTexts(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes)
        text += byte == '\0' ? std::string("; ") : std::string(1, byte);
    return text;
}

std::string valueText(const Query& query, int column, TableForm form) {
    switch (query.integer(Type).value_or(-1)) {
        case Double:
            return numberText(query.real(column).value_or(0.0), form);
        case IntegerVector:
            return joinNumbers<std::int32_t>(query.bytes(column), form);
        case DoubleVector:
            return joinNumbers<double>(query.bytes(column), form);
        case StringVector:
            return joinTexts(query.bytes(column));
        default:
            return query.text(column);
    }
}

/// The one value of the run, or the range of those that change.
std::string rangeText(const Query& query, TableForm form) {
    const std::string lowest = valueText(query, Value, form);
    const std::string highest = valueText(query, Highest, form);
    if (lowest == highest)
        return lowest;
    const bool isOrdered = query.integer(Type) == Integer || query.integer(Type) == Double;
    return isOrdered ? lowest + " to " + highest : "(changes)";
}

void requireSpectrum(Database& database, std::int64_t spectrum) {
    Query query(database, "SELECT 1 FROM Spectra WHERE Id = ?");
    query.bind(1, spectrum);
    if (!query.next())
        throw std::runtime_error("there is no spectrum " + std::to_string(spectrum));
}

void listVariables(const VariablesOptions& options, Output& output) {
    Analysis analysis(options.path, Analysis::AllVariables);
    if (options.spectrum)
        requireSpectrum(analysis.database(), *options.spectrum);
    Query query(analysis.database(), options.spectrum ? g_spectrumSql : g_runSql);
    if (options.spectrum)
        query.bind(1, *options.spectrum);

    const TableForm form = options.csv ? TableForm::Csv : TableForm::Text;
    Table table(output, form,
                {{"Variable", "variable", 38, 0, Alignment::Left},
                 {"Value", "value", 24},
                 {"Unit", "unit", 6, 0, Alignment::Left}});
    while (query.next()) {
        table.addText(query.text(Name));
        table.addText(options.spectrum ? valueText(query, Value, form) : rangeText(query, form));
        table.addText(query.text(Unit));
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
    command.callback([options, &output] { listVariables(*options, output); });
}

}  // namespace qsf2sql_tool
