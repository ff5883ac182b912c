#pragma once

#include "qsf2sql/variables/acquisition_key_map.h"
#include "qsf2sql/variables/variable_descriptions.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>
#include <qsf2sql/qsf_blocked_reader.h>

namespace kvan::io::qsf2sql::passes {

/// Pass 4: reads the segment and spectrum conditions of the main file from the reader's position on and fills the
/// tables `PerSegAcqKeyVariables` and `PerSpectrumVariables`.
///
/// Throws `std::runtime_error` where the conditions contradict one another, `std::bad_cast` for a value whose variable
/// is declared once more with another type, and what the reader and the database throw.
void readConditions(QSFBlockedReader& reader, const VariableDescriptions& descriptions, const AcquisitionKeyMap& keys,
                    cppsqlite::CppSQLite3DB& database, const logging::Logger& logger);

}  // namespace kvan::io::qsf2sql::passes
