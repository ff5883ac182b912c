#pragma once

#include "qsf2sql/qsflib/AnalysisHeaderBlock.h"

#include <cppsqlite/CppSQLite3.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace kvan::io::qsf2sql::passes {

/// Fills the table `Properties`.
class AnalysisProperties {
public:
    explicit AnalysisProperties(cppsqlite::CppSQLite3DB& database);

    void insert(std::string_view key, std::string_view value);
    void insert(std::string_view key, int value);

    /// All that the analysis header tells. Texts go in as read.
    void insertAll(const KVAN::io::QSF::AnalysisHeaderRecord& header,
                   const KVAN::io::QSF::AnalysisDescriptionBlock& description);

private:
    cppsqlite::CppSQLite3Statement m_insert;
};

/// What the serial number of the instrument is made of. "-1" stands for a text that the file does not have.
struct SerialNumberParts {
    std::string textA = "-1";
    std::string textB = "-1";
    std::int32_t fallback = -1;
};

std::string instrumentSerialNumber(const SerialNumberParts& parts);

}  // namespace kvan::io::qsf2sql::passes
