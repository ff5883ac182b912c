#pragma once

#include "cppsqlite/CppSQLite3.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace kvan::calibration {
class ICalibrationTransformator;
}

namespace kvan::io {

/// Finds the calibration of a spectrum in the cache. Every call asks the cache anew and makes a new transformator; only
/// the prepared statements stay. Holds no read transaction between calls. The database must outlive it.
class SpectrumCalibrations {
public:
    /// The columns of `Spectra` by which an m/z array names its spectrum.
    enum class Column { LineMzId, ProfileMzId };

    explicit SpectrumCalibrations(cppsqlite::CppSQLite3DB& database) : m_database(database) {}

    /// The transformator in force for the spectrum that has `value` in `column`, never null. Throws
    /// `std::runtime_error` when there is no such spectrum, it has no acquisition key, no stored calibration or one of
    /// no kind, `boost::bad_lexical_cast` for Ids that are no numbers, and what the deserialisation throws.
    std::shared_ptr<kvan::calibration::ICalibrationTransformator> getTransformatorForSpectrumWhere(Column column,
                                                                                                   std::uint64_t value);

private:
    cppsqlite::CppSQLite3Statement& spectrumStatement(Column column);
    std::shared_ptr<kvan::calibration::ICalibrationTransformator> getRawTransformator(std::int64_t transformatorId);

    cppsqlite::CppSQLite3DB& m_database;
    bool m_prepared = false;  // at first use: a caller of intensities alone needs none of them
    cppsqlite::CppSQLite3Statement m_byColumn[2];
    cppsqlite::CppSQLite3Statement m_blobById;
    std::vector<unsigned char> m_blob;
};

}  // namespace kvan::io
