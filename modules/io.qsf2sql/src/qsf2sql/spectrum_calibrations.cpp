#include "qsf2sql/spectrum_calibrations.h"

#include "calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h"

#include <boost/lexical_cast.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

namespace kvan::io {

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

}  // namespace

std::shared_ptr<kvan::calibration::ICalibrationTransformator> SpectrumCalibrations::getTransformatorForSpectrumWhere(
    Column column, std::uint64_t value) {
    auto& statement = spectrumStatement(column);
    statement.bind(1, value);
    // The row stays open while the blob is read, so that both come from one state of the cache.
    const auto spectrum = statement.execQuery();
    if (spectrum.eof())
        BOOST_THROW_EXCEPTION(std::runtime_error(std::string("getTransformatorForSpectrum( ") +
                                                 g_columnNames[static_cast<int>(column)] + " = " +
                                                 std::to_string(value) + " ) failed"));
    idField(spectrum, SpectrumId);
    auto transformator = getRawTransformator(idField(spectrum, TransformatorId));
    if (!transformator)
        BOOST_THROW_EXCEPTION(std::runtime_error("Spectrum has no transformator."));
    return transformator;
}

std::shared_ptr<kvan::calibration::ICalibrationTransformator> SpectrumCalibrations::getRawTransformator(
    std::int64_t transformatorId) {
    m_blobById.bind(1, transformatorId);
    const auto row = m_blobById.execQuery();
    if (row.eof())
        BOOST_THROW_EXCEPTION(std::runtime_error("Couldn't get transformator blob."));
    int length = 0;
    const unsigned char* const bytes = row.getBlobField(0, length);
    m_blob.assign(bytes, bytes + length);
    return kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization().DeserializeFromBlob(
        m_blob);
}

cppsqlite::CppSQLite3Statement& SpectrumCalibrations::spectrumStatement(Column column) {
    if (!m_prepared) {
        m_byColumn[0] = m_database.compileStatement(spectrumQuery(g_columnNames[0]));
        m_byColumn[1] = m_database.compileStatement(spectrumQuery(g_columnNames[1]));
        m_blobById = m_database.compileStatement(g_blobQuery);
        m_prepared = true;
    }
    return m_byColumn[static_cast<int>(column)];
}

}  // namespace kvan::io
