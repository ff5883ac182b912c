#pragma once

#include <cppsqlite/CppSQLite3.h>
#include <test-support/support.h>

namespace kvan::io::calibration {

using test::failureOf;

/// A directory with a calibration database of three spectra, gone after the test.
class CalibrationFile : public ::testing::Test {
protected:
    CalibrationFile() {
        sql("CREATE TABLE GlobalMetadata (Key TEXT, Value TEXT);"
            "INSERT INTO GlobalMetadata VALUES ('SchemaType','CALIBRATION_SQLITE'),('SchemaVersionMajor','1'),"
            "('SchemaVersionMinor','3');"
            "CREATE TABLE CalibrationState (Id INTEGER PRIMARY KEY, Key TEXT, Source TEXT, HasFrameCalibrators INTEGER,"
            "PositiveReferenceCalibratorId INTEGER, NegativeReferenceCalibratorId INTEGER);"
            "CREATE TABLE DigitizerConstants (CalibrationState INTEGER, DigitizerTimebase REAL, DigitizerDelay REAL);"
            "CREATE TABLE FrameMzCalibrationMapping (CalibrationState INTEGER, FrameId INTEGER, FrameMzCalibrationId "
            "INTEGER, PRIMARY KEY (CalibrationState, FrameId));"
            "CREATE TABLE TimsCalibrationMapping (CalibrationState INTEGER, FrameId INTEGER);"
            // Columns of models lie anywhere and have any names.
            "CREATE TABLE RefMzCalibration (C0, dC2 REAL, Id INTEGER PRIMARY KEY, \"C 1\", T1 REAL, MODELTYPE INTEGER,"
            "C2, t2 REAL, dC1 REAL, C3, C4, C5, C6, C7, C8, C9);"
            "CREATE TABLE FrameMzCalibration (Id INTEGER, ModelType INTEGER, CalibrationState INTEGER, C0, C1, C2, C3,"
            "C4, C5, C6, C7, C8, C9, PRIMARY KEY (CalibrationState, Id))");
    }

    boost::filesystem::path file() const { return m_directory / "calibration.sqlite"; }

    void sql(const std::string& statements) const {
        cppsqlite::CppSQLite3DB database;
        database.open(file().string());
        database.execDML("PRAGMA synchronous=OFF; " + statements);
    }

    const test::TemporaryDirectory m_directory;
};

}  // namespace kvan::io::calibration
