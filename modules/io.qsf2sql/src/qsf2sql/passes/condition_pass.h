#pragma once

#include "qsf2sql/qsflib/BlockWalk.h"
#include "qsf2sql/variables/acquisition_key_map.h"
#include "qsf2sql/variables/variable_descriptions.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

namespace kvan::io::qsf2sql::passes {

/// Pass 4: reads the segment and spectrum conditions of the main file from where the walk has come to and fills the
/// tables `PerSegAcqKeyVariables` and `PerSpectrumVariables`.
///
/// Throws `std::runtime_error` where the conditions contradict one another, `std::bad_cast` for a value whose variable
/// is declared once more with another type, and what the reader and the database throw.
void readConditions(KVAN::io::QSF::BlockWalk& walk, const VariableDescriptions& descriptions,
                    const AcquisitionKeyMap& keys, cppsqlite::CppSQLite3DB& database, const logging::Logger& logger);

}  // namespace kvan::io::qsf2sql::passes
