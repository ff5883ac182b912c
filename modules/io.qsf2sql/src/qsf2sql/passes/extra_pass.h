#pragma once

#include "qsf2sql/passes/analysis_facts.h"
#include "qsf2sql/passes/number_set.h"
#include "qsf2sql/passes/reference_transformator_map.h"
#include "qsf2sql/variables/acquisition_key_map.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

#include <boost/filesystem/path.hpp>

namespace kvan::io::qsf2sql::passes {

/// Pass 3: reads the extra file, completes the rows of `Spectra` and fills `Transformators`, `Steps`,
/// `ReferenceTransformators` and `AcquisitionKeys`. Gives the keys of the analysis with their Ids.
///
/// `withoutData` holds the numbers, from 0, of the spectra that get neither range nor intensities. `references` are
/// used up: those that no spectrum asked for do not reach the cache.
///
/// Throws `Qsf2SqlCannotOpenFileError`, `Qsf2SqlFileFormatError`, `CppSQLite3Exception`, what a calibration throws at
/// an end of the acquired range, and `boost::math::rounding_error` where that end is no 32-bit mass.
AcquisitionKeyMap readExtraFile(const boost::filesystem::path& extraFile, const AnalysisFacts& facts,
                                const NumberSet& withoutData, ReferenceTransformatorMap references,
                                cppsqlite::CppSQLite3DB& database, const logging::Logger& logger);

}  // namespace kvan::io::qsf2sql::passes
