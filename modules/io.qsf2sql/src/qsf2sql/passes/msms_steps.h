#pragma once

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace kvan::io::qsf2sql::passes {

/// Whether the order of the spectra tells which spectrum an MS^n spectrum was taken from, by the instrument family of
/// the analysis description.
bool measuresAutoMsMs(std::uint16_t instrumentFamily);

/// Draws the link from an MS^n spectrum to its parent, which the files do not store, and fills the table `Steps`.
class MsMsSteps {
public:
    MsMsSteps(cppsqlite::CppSQLite3DB& database, std::uint16_t instrumentFamily, const logging::Logger& logger);

    /// Id of the latest MS^1 spectrum before spectrum `number` (from 0), none for an MS^1 spectrum and where the
    /// family does not tell. Spectra are given in file order.
    std::optional<std::int64_t> parentOf(std::uint32_t number, std::uint8_t msLevel);

    /// One row for each precursor mass of the spectrum with the Id `target`.
    void write(std::uint32_t target, const std::vector<float>& masses);

private:
    void reportFamilyOnce();

    logging::Logger m_logger;
    cppsqlite::CppSQLite3Statement m_insert;
    std::uint16_t m_family;
    bool m_autoMsMs;
    std::optional<std::uint32_t> m_lastMs1;
    bool m_familyReported = false;
    bool m_missingParentReported = false;
};

}  // namespace kvan::io::qsf2sql::passes
