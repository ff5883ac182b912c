#pragma once

#include <calibration-core/interfaces/Polarity.h>
#include <cppsqlite/CppSQLite3.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace kvan::calibration {
class ICalibrationTransformator;
}

namespace kvan::io {
class CalibratorAmiReader;
}

namespace kvan::io::calibration {
class CalibrationReaderSqlite;
}

namespace kvan::io::qsf2sql::recalibration {

/// Finds the calibration in force for a spectrum: that of the cache, which is the native file's, or what a
/// re-calibration puts in its place. Every call asks anew and makes a new transformator; only the prepared statements
/// stay. Holds no read transaction between calls. The database and the readers must outlive it.
class SpectrumCalibrations {
public:
    using TransformatorPtr = std::shared_ptr<kvan::calibration::ICalibrationTransformator>;

    /// The columns of `Spectra` by which an m/z array names its spectrum.
    enum class Column { LineMzId, ProfileMzId };

    /// One of the readers at most; null for those that are not in force.
    SpectrumCalibrations(cppsqlite::CppSQLite3DB& cache, const CalibratorAmiReader* archive,
                         calibration::CalibrationReaderSqlite* database)
        : m_cache(cache), m_archive(archive), m_database(database) {}

    /// The transformator in force for the spectrum that has `value` in `column`, never null. It may be shared and is
    /// not to be changed. With `bypassFrameCalibrators` the calibration database gives its reference calibration, even
    /// if it has one for each spectrum. Throws `std::runtime_error` when there is no such spectrum, it has no
    /// acquisition key, no stored calibration or one of no kind, `boost::bad_lexical_cast` for Ids that are no numbers,
    /// and what the deserialisation and the readers throw.
    TransformatorPtr getTransformatorForSpectrumWhere(Column column, std::uint64_t value,
                                                      bool bypassFrameCalibrators = false);

private:
    struct Spectrum {
        std::int64_t id;
        EPolarity polarity;
        std::int64_t transformatorId;
    };

    cppsqlite::CppSQLite3Statement& spectrumStatement(Column column);
    TransformatorPtr getRawTransformator(std::int64_t transformatorId);
    /// What the re-calibration makes of the spectrum's own transformator, which may be null.
    TransformatorPtr recalibrated(const Spectrum& spectrum, TransformatorPtr raw);

    cppsqlite::CppSQLite3DB& m_cache;
    const CalibratorAmiReader* m_archive;
    calibration::CalibrationReaderSqlite* m_database;
    bool m_prepared = false;  // at first use: a caller of intensities alone needs none of them
    cppsqlite::CppSQLite3Statement m_byColumn[2];
    cppsqlite::CppSQLite3Statement m_blobById;
    std::vector<unsigned char> m_blob;
};

}  // namespace kvan::io::qsf2sql::recalibration
