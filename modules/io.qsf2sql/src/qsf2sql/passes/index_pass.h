#pragma once

#include "qsf2sql/passes/number_set.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>
#include <qsf2sql/array_id.h>
#include <qsf2sql/qsflib/ResourceRecords.h>

#include <boost/filesystem/path.hpp>
#include <cstdint>
#include <optional>

namespace kvan::io::qsf2sql {

/// Reads the index file: one row of `Spectra` with Id, segment and array Ids for each spectrum condition.
class IndexPass {
public:
    IndexPass(cppsqlite::CppSQLite3DB& database, const logging::Logger& logger);

    /// Once. Gives the numbers, from 0, of the spectra that have neither profile nor line data.
    NumberSet run(const boost::filesystem::path& indexFile);

private:
    /// The spectrum whose entries are being read. Its row is written when the next one begins.
    struct Spectrum {
        std::uint32_t number;
        std::optional<std::uint32_t> segment;
        std::optional<ArrayId> lines;
        std::optional<ArrayId> profile;
    };

    void handle(const KVAN::io::QSF::FILE_CONTAINER_INDEX_ENTRY& entry);
    void flush();

    logging::Logger m_logger;
    cppsqlite::CppSQLite3Statement m_insert;
    std::optional<std::uint32_t> m_segment;
    std::optional<Spectrum> m_pending;
    NumberSet m_withoutData;
    std::uint64_t m_lineCount = 0;
    std::uint64_t m_profileCount = 0;
};

}  // namespace kvan::io::qsf2sql
