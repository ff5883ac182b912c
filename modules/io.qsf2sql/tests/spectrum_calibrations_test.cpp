#include "qsf2sql/recalibration/spectrum_calibrations.h"

#include <calibration-access/calibration_reader_sqlite.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>
#include <sample-analysis/calibration_database_writer.h>
#include <test-support/support.h>

namespace kvan::io::qsf2sql::recalibration {
namespace {

sample::MzCalibration trap(double slope) {
    return {.model = 3, .numbers = {0.0, slope, 1.0, 0.0}};
}

TEST(SpectrumCalibrations, FrameCalibratorsNeedNothingElseAndCanBeBypassed) {
    const test::TemporaryDirectory directory;
    sample::CalibrationDatabaseWriter writer(directory);
    writer.addState({.key = "k", .positive = {{trap(2)}}, .negative = {{trap(3)}}});
    for (const int spectrum : {1, 2})
        writer.addFrame(spectrum, trap(10 + spectrum));
    writer.finish();
    const auto reader = calibration::CalibrationReaderSqlite::find(directory, {.key = "k"});

    // The second spectrum's own calibration is missing, the first one's is that of no kind.
    cppsqlite::CppSQLite3DB cache;
    cache.open(":memory:");
    cache.execDML(
        "CREATE TABLE Spectra (Id, AcquisitionKey, TransformatorId, LineMzId, ProfileMzId, LineIndexId);"
        "CREATE TABLE AcquisitionKeys (Id, Polarity); CREATE TABLE Transformators (Id, Blob);"
        "INSERT INTO Spectra VALUES (1,1,1, 101,201,NULL), (2,2,9, 102,202,NULL);"
        "INSERT INTO AcquisitionKeys VALUES (1,NULL), (2,1); INSERT INTO Transformators VALUES (1,x'FF000000')");
    using Column = SpectrumCalibrations::Column;
    SpectrumCalibrations calibrations(cache, nullptr, reader.get());
    const auto slope = [&](Column column, std::uint64_t id, bool bypass) {
        return calibrations.getTransformatorForSpectrumWhere(column, id, bypass)->RawToMass(1.0);
    };
    EXPECT_EQ(slope(Column::LineMzId, 101, false), 11);
    EXPECT_EQ(slope(Column::ProfileMzId, 202, false), 12);
    EXPECT_EQ(slope(Column::ProfileMzId, 201, true), 2);
    EXPECT_THROW(slope(Column::LineMzId, 102, true), std::runtime_error);
    cache.execDML("UPDATE Spectra SET TransformatorId = 1");
    EXPECT_EQ(slope(Column::LineMzId, 102, true), 3);
}

}  // namespace
}  // namespace kvan::io::qsf2sql::recalibration
