#include "qsf2sql/passes/msms_steps.h"

#include <utility>

namespace kvan::io::qsf2sql::passes {

// In come spectra in file order. The files do not say which spectrum a fragment spectrum was taken from; where the
// instrument chooses precursors by itself, it is the MS^1 spectrum measured last, for any n of MS^n. MS level 0 is
// MS^1, level n - 1 is MS^n.
//
// Tolerated: an MS^n spectrum before any MS^1 spectrum, which has no parent. That, and a family that does not tell, is
// logged once a generation. Masses are stored for every family.

/// By the instrument family codes of the native format.
bool measuresAutoMsMs(std::uint16_t instrumentFamily) {
    return instrumentFamily == 1 || instrumentFamily == 2 || (instrumentFamily >= 6 && instrumentFamily <= 9);
}

MsMsSteps::MsMsSteps(cppsqlite::CppSQLite3DB& database, std::uint16_t instrumentFamily, const logging::Logger& logger)
    : m_logger(logger),
      m_insert(database.compileStatement("INSERT INTO Steps (TargetSpectrum,Number,IsolationType,ReactionType,MsLevel,"
                                         "Mass) VALUES (?,?,?,?,?,?)")),
      m_family(instrumentFamily),
      m_autoMsMs(measuresAutoMsMs(instrumentFamily)) {
    // Isolation and reaction type; -1 where the family does not tell.
    m_insert.bind(3, m_autoMsMs ? 1 : -1);
    m_insert.bind(4, m_autoMsMs ? 1 : -1);
}

std::optional<std::int64_t> MsMsSteps::parentOf(std::uint32_t number, std::uint8_t msLevel) {
    if (msLevel == 0) {
        m_lastMs1 = number;
        return std::nullopt;
    }
    reportFamilyOnce();
    if (!m_lastMs1) {
        if (!std::exchange(m_missingParentReported, true)) {
            KVAN_LOG(m_logger, WARN) << "Encountered MS^n (n>1) spectrum without preceding MS^1 spectrum. Leaving "
                                        "'Spectra.Parent' empty; not printing more warnings of this type.";
        }
        return std::nullopt;
    }
    return m_autoMsMs ? std::optional(std::int64_t{*m_lastMs1} + 1) : std::nullopt;
}

void MsMsSteps::reportFamilyOnce() {
    if (std::exchange(m_familyReported, true))
        return;
    if (m_autoMsMs) {
        KVAN_LOG(m_logger, TRACE) << "Instrument family " << m_family << ": assuming Auto-MS/MS measurement.";
    } else {
        KVAN_LOG(m_logger, DEBUG) << "Can't interpret MS/MS metadata; unsupported instrument family " << m_family
                                  << " - filling only masses in 'Steps' table, leaving 'Spectra.Parent' empty.";
    }
}

void MsMsSteps::write(std::uint32_t target, const std::vector<float>& masses) {
    for (std::int32_t step = 0; step < static_cast<std::int32_t>(masses.size()); ++step) {
        m_insert.bind(1, std::int64_t{target});
        m_insert.bind(2, step);
        m_insert.bind(5, m_autoMsMs ? step + 1 : -1);
        m_insert.bind(6, static_cast<double>(masses[static_cast<std::size_t>(step)]));
        m_insert.execDML();
    }
}

}  // namespace kvan::io::qsf2sql::passes
