#pragma once

#include "qsf2sql/variables/variable_descriptions.h"
#include "qsf2sql/variables/variable_settings.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

#include <cstdint>
#include <string>

namespace kvan::io::qsf2sql {

/// What differs between the two tables that hold values of variables.
struct VariableTable {
    const char* insert;  ///< parameters: segment or spectrum, acquisition key, variable, value
    bool isKeyed;        ///< holds the settings that have an acquisition key, else those that have none

    // Words of the log lines about a setting that is passed over.
    const char* copier;
    const char* wrongKey;
    std::string (*repeated)(const VariableDescription& variable);
};

extern const VariableTable g_segmentVariables;   ///< `PerSegAcqKeyVariables`
extern const VariableTable g_spectrumVariables;  ///< `PerSpectrumVariables`

/// Stores settings as rows of one of the tables. A setting that the table has no place for is logged at WARN and passed
/// over, one whose row exists already at the first time only.
class VariableRows {
public:
    /// `descriptions`, `database` and `logger` must outlive this object.
    VariableRows(const VariableTable& table, const VariableDescriptions& descriptions,
                 cppsqlite::CppSQLite3DB& database, const logging::Logger& logger);

    /// One row for each of the settings of the segment or spectrum of that number, counted from 1. Throws
    /// `std::bad_cast` for a value that is not of its variable's type, and `CppSQLite3Exception`.
    void insert(std::uint32_t owner, const VariableSettings& settings);

private:
    bool hasPlaceFor(const VariableSetting& setting) const;
    void bindValue(VariableType type, const VariableValue& value);
    bool insertRow();

    const VariableTable& m_table;
    const VariableDescriptions& m_descriptions;
    const logging::Logger& m_logger;
    cppsqlite::CppSQLite3Statement m_insert;
    std::string m_utf8;  // of the text that is bound
    bool m_repetitionReported = false;
};

}  // namespace kvan::io::qsf2sql
