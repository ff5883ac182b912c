#include "qsf2sql/recalibration/spectrum_calibrations.h"

#include <calibration-access/calibration_reader_sqlite.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <calibration-core/interfaces/ICalibrationConstantsFunctionalTemperatureCompensation.h>
#include <calibrator-ami-reader/calibrator_ami_reader.h>

#include <boost/lexical_cast.hpp>
#include <boost/throw_exception.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

namespace kvan::io::qsf2sql::recalibration {

// In comes the Id of an m/z array, by which the cache names its spectrum. Of the calibrations the first that is there
// is in force: the database's for this spectrum; the database's reference of its polarity, adapted to the temperatures
// of the spectrum; what the archive has for it; the one stored at acquisition.
//
// The first does not look at the stored one, so a spectrum whose own calibration is damaged still has its masses then.
// Every call reads the cache anew: it is small work beside the array, and no read of the cache stays open.

namespace {

constexpr const char* g_columnNames[] = {"LineMzId", "ProfileMzId"};

enum SpectrumField { SpectrumId, Polarity, TransformatorId };

std::string spectrumQuery(const char* column) {
    return std::string(
               "SELECT s.Id, ak.Polarity, TransformatorId, LineMzId, ProfileMzId, LineIndexId FROM Spectra s "
               "JOIN AcquisitionKeys ak ON ak.Id=s.AcquisitionKey WHERE ") +
           column + " = ?";
}

constexpr const char* g_blobQuery = "SELECT Blob FROM Transformators WHERE ID = ?";

std::int64_t idField(const cppsqlite::CppSQLite3Query& row, int field) {
    const std::string_view text = row.fieldValue(field);
    return boost::lexical_cast<std::int64_t>(text.data(), text.size());
}

/// The first two temperatures at which the spectrum was measured. Tolerated: one that the spectrum does not record,
/// which counts as 0.0.
std::pair<double, double> measuredTemperatures(const SpectrumCalibrations::TransformatorPtr& transformator) {
    if (!transformator || familyOf(*transformator) == kvan::calibration::CalibrationFamily::Kite2)
        return {0.0, 0.0};  // KITE 2 has no constants to ask
    const auto functional = transformator->GetFunctionalConstants();
    const auto* const compensated =
        dynamic_cast<const kvan::calibration::ICalibrationConstantsFunctionalTemperatureCompensation*>(
            functional.get());
    if (compensated == nullptr)
        return {0.0, 0.0};
    const std::vector<double>& temperatures = compensated->GetMeasuredTemperatures();
    const auto at = [&temperatures](std::size_t i) { return i < temperatures.size() ? temperatures[i] : 0.0; };
    return {at(0), at(1)};
}

}  // namespace

SpectrumCalibrations::TransformatorPtr SpectrumCalibrations::getTransformatorForSpectrumWhere(
    Column column, std::uint64_t value, bool bypassFrameCalibrators) {
    auto& statement = spectrumStatement(column);
    statement.bind(1, value);
    auto row = statement.execQuery();
    if (row.eof())
        BOOST_THROW_EXCEPTION(std::runtime_error(std::string("getTransformatorForSpectrum( ") +
                                                 g_columnNames[static_cast<int>(column)] + " = " +
                                                 std::to_string(value) + " ) failed"));
    const Spectrum spectrum{idField(row, SpectrumId), static_cast<EPolarity>(row.getIntField(Polarity)),
                            idField(row, TransformatorId)};
    if (m_database != nullptr && m_database->hasFrameCalibrators() && !bypassFrameCalibrators) {
        row.finalize();  // the cache need not wait for another database
        return m_database->getMzTrafo(spectrum.id);
    }
    // The row stays open while the blob is read, so that both come from one state of the cache.
    auto raw = getRawTransformator(spectrum.transformatorId);
    row.finalize();
    auto transformator = recalibrated(spectrum, std::move(raw));
    if (!transformator)
        BOOST_THROW_EXCEPTION(std::runtime_error("Spectrum has no transformator."));
    return transformator;
}

SpectrumCalibrations::TransformatorPtr SpectrumCalibrations::recalibrated(const Spectrum& spectrum,
                                                                          TransformatorPtr raw) {
    if (m_database != nullptr) {
        const auto [T1, T2] = measuredTemperatures(raw);
        return m_database->getRefMzTrafo(spectrum.polarity == POLARITY_NEGATIVE, T1, T2);
    }
    // The archive counts spectra from 0. Where it has none that fits, the spectrum's own stays.
    if (m_archive != nullptr)
        m_archive->getCalibrator(static_cast<std::uint64_t>(spectrum.id) - 1, spectrum.polarity, raw);
    return raw;
}

SpectrumCalibrations::TransformatorPtr SpectrumCalibrations::getRawTransformator(std::int64_t transformatorId) {
    m_blobById.bind(1, transformatorId);
    const auto row = m_blobById.execQuery();
    if (row.eof())
        BOOST_THROW_EXCEPTION(std::runtime_error("Couldn't get transformator blob."));
    const std::span<const unsigned char> blob = row.blobField(0);
    m_blob.assign(blob.begin(), blob.end());
    return kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization().DeserializeFromBlob(
        m_blob);
}

cppsqlite::CppSQLite3Statement& SpectrumCalibrations::spectrumStatement(Column column) {
    if (!m_prepared) {
        m_byColumn[0] = m_cache.compileStatement(spectrumQuery(g_columnNames[0]));
        m_byColumn[1] = m_cache.compileStatement(spectrumQuery(g_columnNames[1]));
        m_blobById = m_cache.compileStatement(g_blobQuery);
        m_prepared = true;
    }
    return m_byColumn[static_cast<int>(column)];
}

}  // namespace kvan::io::qsf2sql::recalibration
