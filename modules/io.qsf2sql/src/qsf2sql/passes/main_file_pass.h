#pragma once

#include "qsf2sql/passes/analysis_facts.h"
#include "qsf2sql/passes/reference_transformator_map.h"
#include "qsf2sql/qsflib/BlockWalk.h"
#include "qsf2sql/variables/variable_descriptions.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

#include <string>
#include <unordered_set>

namespace kvan::io::qsf2sql::passes {

struct WantedVariables {
    bool all;
    const std::unordered_set<std::string>& requested;  ///< permanent names of those wanted beyond the built-in ones
};

/// What the later passes and rows take from the main file.
struct MainFileHead {
    std::string compressor;  ///< GUID as text; empty if the file names none
    AnalysisFacts facts;
    ReferenceTransformatorMap references;
    VariableDescriptions variables;
};

/// Pass 1: reads the main file up to its two important blocks, COMPRESSION_INFO and ANALYSIS_HEADER, leaves the walk
/// after the later of them and fills the table `Properties`.
///
/// Throws `Qsf2SqlFileFormatError` also when one of the two is missing, `std::out_of_range` for an impossible
/// acquisition time, and what a reference calibration that cannot be read throws.
MainFileHead readMainFileHead(KVAN::io::QSF::BlockWalk& walk, const WantedVariables& wanted,
                              cppsqlite::CppSQLite3DB& database, const logging::Logger& logger);

}  // namespace kvan::io::qsf2sql::passes
