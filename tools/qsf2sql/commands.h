#pragma once

#include "output.h"

namespace CLI {
class App;
}

/// Each function adds one subcommand, which runs while the command line is parsed and writes its data to `output`. A
/// subcommand that fails throws `std::runtime_error` with the reason.
namespace qsf2sql_tool {

void addSampleCommand(CLI::App& app, Output& output);
void addInfoCommand(CLI::App& app, Output& output);
void addSpectraCommand(CLI::App& app, Output& output);
void addReadCommand(CLI::App& app, Output& output);
void addVariablesCommand(CLI::App& app, Output& output);

}  // namespace qsf2sql_tool
