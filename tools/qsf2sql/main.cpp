#include "commands.h"

#include <sysutils/platform.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>
#include <sstream>

// The frame of the command: parses the line, runs one subcommand, and turns every failure into a line on the standard
// error and a status. The library logs to the standard output, so that is diverted to the standard error first, before
// anything can log; the data have the real one for themselves. A reader that leaves early, such as `head`, is no
// failure.

namespace qsf2sql_tool {
namespace {

enum ExitStatus { Success = 0, Failure = 1, UsageError = 2 };

constexpr const char* g_examples = R"(Examples:
  qsf2sql sample demo-run                  write a synthetic LC-MS/MS run
  qsf2sql info demo-run                    what was measured, and where the cache lies
  qsf2sql spectra demo-run --ms-level 2    list the fragment spectra
  qsf2sql read demo-run 1 --top 10         sketch a spectrum, list its ten highest peaks
  qsf2sql read demo-run 1 --csv > 1.csv    all peaks for another program
  qsf2sql variables demo-run 2             voltages, temperatures, collision energy ... of a spectrum

DIR is the directory of an analysis or its file analysis.qsf. Data go to the standard output, messages and errors to the
standard error. The exit status is 1 for a failure and 2 for a wrong command line.)";

int reportUsage(const CLI::App& app, const CLI::ParseError& error, Output& output) {
    std::ostringstream data;
    std::ostringstream message;
    const int status = app.exit(error, data, message);
    // Help and the version are data that were asked for; messages about a wrong line are not.
    output.write(data.str());
    output.finish();
    if (status == 0)
        return Success;
    std::cerr << "qsf2sql: " << error.what() << "\nTry 'qsf2sql --help'.\n";
    return UsageError;
}

int run(int argumentCount, char** arguments, Output& output) {
    CLI::App app("Reads QSF analyses: metadata as SQL, spectra as arrays.", "qsf2sql");
    app.footer(g_examples);
    app.set_version_flag("--version", "qsf2sql " QSF2SQL_VERSION);
    app.require_subcommand(1);
    addSampleCommand(app, output);
    addInfoCommand(app, output);
    addSpectraCommand(app, output);
    addReadCommand(app, output);
    addVariablesCommand(app, output);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        return reportUsage(app, error, output);
    }
    output.finish();
    return Success;
}

int guardedRun(int argumentCount, char** arguments) {
    try {
        kvan::sys::reportBrokenPipesAsErrors();
        // Log lines of the library go to the standard output, which is for the data asked for.
        std::FILE* const data = kvan::sys::divertStandardOutput();
        if (data == nullptr)
            throw std::runtime_error("no standard output");
        Output output(data);
        return run(argumentCount, arguments, output);
    } catch (const OutputClosed&) {
        return Success;
    } catch (const std::exception& error) {
        std::cerr << "qsf2sql: " << error.what() << '\n';
        return Failure;
    }
}

}  // namespace
}  // namespace qsf2sql_tool

int main(int argumentCount, char** arguments) {
    return qsf2sql_tool::guardedRun(argumentCount, arguments);
}
