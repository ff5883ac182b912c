#include "calibration-reader/unlocked_frame_calibrators.h"
#include "calibration_file.h"

#include <calibration-access/calibration_reader_sqlite.h>
#include <calibration-access/calibration_states.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <set>
#include <thread>

#include <sqlite3.h>
#include <sys/stat.h>
#include <time.h>

namespace {

std::chrono::seconds g_clockIsAhead{0};

}  // namespace

/// The clock of this program, for files to be at rest without a wait: no call sets back the time of a status change.
std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return time_point(std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec) + g_clockIsAhead);
}

namespace kvan::io::calibration {
namespace {

namespace fs = boost::filesystem;

/// Runs once, while a connection that was opened after `watchRows` gives a row.
std::function<void()> g_atNextRow;

void watchRows() {
    const auto watch = [](sqlite3* database, char**, const sqlite3_api_routines*) {
        return sqlite3_trace_v2(
            database, SQLITE_TRACE_ROW,
            [](unsigned, void*, void*, void*) {
                if (g_atNextRow)
                    std::exchange(g_atNextRow, nullptr)();
                return 0;
            },
            nullptr);
    };
    int (*const entry)(sqlite3*, char**, const sqlite3_api_routines*) = watch;
    ASSERT_EQ(sqlite3_auto_extension(reinterpret_cast<void (*)()>(entry)), SQLITE_OK);
}

const CalibrationStateSelector g_any{.unconditional = true};

class Reader : public CalibrationFile {
protected:
    /// State 5 with frame calibrators 11 to 15 for the frames 1 to 5, each of the model with its last digit; another
    /// state has calibrators of the same Ids. State 6 with references.
    Reader() {
        sql("INSERT INTO CalibrationState VALUES (5,'frames','s',1,2,NULL), (6,'references','s',0,1,3), (7,'more','s',"
            "0,NULL,99);"
            "INSERT INTO DigitizerConstants VALUES (5, 0.5, 20), (6, 0.5, 20.0), (7, 1, 1);"
            "INSERT INTO FrameMzCalibrationMapping VALUES (5,1,11),(5,2,12),(5,3,13),(5,4,14),(5,5,15),(6,1,11);"
            // Models 3 to 5 need no digitizer. NULL stands where nothing is read.
            "INSERT INTO FrameMzCalibration VALUES (11,1,5, 1,4e12,0, NULL,NULL,NULL,NULL,NULL,NULL,NULL),"
            // Coefficients 0.5 and 1: the precise mass is half a unit below the apparent one.
            "(12,2,5, 1,4e12,0, NULL,NULL, 7,0,100,2000, x'000000000000E03F000000000000F03F'),"
            "(13,3,5, 3,2,10,500, NULL,NULL,NULL,NULL,NULL,NULL),"
            "(14,4,5, 4,10.0,1e8,1,1000,5e4,1e6, NULL,NULL,NULL), (15,5,5, 5,-3e7,2,1e8,1,0,1000,5e4,1e6, NULL),"
            "(11,1,4, 9,9,9,9,9,9,9,9,9,9);"
            // By name: C0, dC2, Id, 'C 1', T1, ModelType, C2, T2, dC1.
            "INSERT INTO RefMzCalibration VALUES (1,0.0,1,4e12,NULL,1,1,'none',0, 0,0,0,0,0,0,0),"
            "(1,3.0,2,4e12,25,1,1,31,10.0, 0,0,0,0,0,0,0), (3,0,3,2,25,3,10,31,0.5, 500,0,0,0,0,0,0)");
    }

    /// A directory with a copy of the database in which frame 13 has another c0.
    fs::path copyTo(const char* name, int c0) const {
        const fs::path directory = m_directory / name;
        fs::create_directory(directory);
        fs::copy_file(file(), directory / file().filename());
        cppsqlite::CppSQLite3DB copy;
        copy.open((directory / file().filename()).string());
        copy.execDML("UPDATE FrameMzCalibration SET C0 = " + std::to_string(c0) + " WHERE Id = 13");
        return directory;
    }

    static std::unique_ptr<CalibrationReaderSqlite> open(const fs::path& directory, const std::string& key) {
        return CalibrationReaderSqlite::find(directory, {.key = key});
    }
    std::unique_ptr<CalibrationReaderSqlite> open(const std::string& key) const { return open(m_directory, key); }
};

/// Index 3 of a TOF model of these constants with the digitizer of the fixture: sqrt(mass * C1) + c0 + mass * c2 is
/// the time.
double tofMass(double C1, double c0, double c2) {
    const double time = 3 * 0.5 + 20 - c0;
    const double root = c2 == 0.0 ? time / std::sqrt(C1) : (-std::sqrt(C1) + std::sqrt(C1 + 4 * c2 * time)) / (2 * c2);
    return root * root;
}

TEST_F(Reader, FrameCalibratorsByTheirModels) {
    const auto reader = open("frames");
    ASSERT_TRUE(reader->hasFrameCalibrators());
    EXPECT_EQ(reader->stateKey(), "frames");
    // FTMS: the axis ends at size with freqLow and falls; raw mode 1 counts from 0.
    const double ftms04 = 1e8 / (1e6 - 3 * 1e6 / 1000 + 10);
    const auto ftms1356 = [](double raw) { return (1e8 + std::sqrt(1e16 + 4 * -3e7 * (raw - 2))) / (2 * (raw - 2)); };
    const std::tuple<int, double, double> cases[] = {
        {1, 3.0, tofMass(0.25, 1, 0)},
        {2, 3.0, tofMass(0.25, 1, 0) - 0.5},
        {3, 3.0, 3 + 2 * (3 + 500) / 10.0},
        {4, 3.0, ftms04},
        {5, 3.0, ftms1356(5e4 + 1e6 - 3 * 1e6 / 1000)},
    };
    for (const auto& [frame, index, mass] : cases)
        EXPECT_NEAR(reader->getMzTrafo(frame)->DIndexToMass(index), mass, 1e-12 * mass) << frame;
    EXPECT_EQ(failureOf([&] { open("references")->getMzTrafo(1); }), "No frame m/z trafos available");
}

TEST_F(Reader, ReferencesAreAdaptedToTheTemperaturesOfTheSpectrum) {
    const auto plain = open("references");
    ASSERT_FALSE(plain->hasFrameCalibrators());
    const double reference = tofMass(0.25, 1, 1);
    EXPECT_NEAR(plain->getRefMzTrafo(false, 40, 50)->DIndexToMass(3), reference, 1e-12 * reference);
    EXPECT_EQ(failureOf([&] { plain->getRefMzTrafo(true, 25, 31); }), "Non-supported strategy.");

    const auto compensated = open("frames");
    const std::pair<double, double> temperatures[] = {{25, 31}, {26.5, 30}, {0, 0}};
    for (const auto& [T1, T2] : temperatures) {
        const double k = ((T1 - 25) * 10 + (T2 - 31) * 3) / 1e6 + 1;
        const double mass = tofMass(0.25 / k, 1, 1 / k);
        EXPECT_NEAR(compensated->getRefMzTrafo(false, T1, T2)->DIndexToMass(3), mass, 1e-12 * mass) << T1;
    }
    // The same law inside a correction that takes half a unit off.
    sql("UPDATE RefMzCalibration SET ModelType = 2, C8 = 1, C9 = x'000000000000E03F000000000000F03F' WHERE Id = 2");
    const double k = (1.5 * 10 - 3) / 1e6 + 1;
    const double corrected = tofMass(0.25 / k, 1, 1 / k) - 0.5;
    EXPECT_NEAR(open("frames")->getRefMzTrafo(false, 26.5, 30)->DIndexToMass(3), corrected, 1e-12 * corrected);

    const std::string missing = "no reference calibration available for ";
    EXPECT_EQ(failureOf([&] { compensated->getRefMzTrafo(true, 25, 31); }), missing + "negative polarity");
    EXPECT_EQ(failureOf([&] { open("more")->getRefMzTrafo(false, 25, 31); }), missing + "positive polarity");
    EXPECT_EQ(failureOf([&] { open("more")->getRefMzTrafo(true, 25, 31); }), missing + "negative polarity");
}

TEST_F(Reader, StatesAreListedWithWhatTheyHold) {
    std::string states;
    std::vector<CalibrationStateSummary> summaries;
    EXPECT_EQ(CalibrationReaderSqlite::find(m_directory, {.unconditional = true}, summaries)->stateKey(), "frames");
    for (const CalibrationStateSummary& state : summaries)
        states += state.key + ' ' + state.source + ' ' + std::to_string(state.hasFrameCalibrators) +
                  std::to_string(state.mappedFrames) + std::to_string(state.highestFrame) +
                  std::to_string(state.hasPositiveReference) + std::to_string(state.hasNegativeReference) + ';';
    EXPECT_EQ(states, "frames s 15510;references s 01111;more s 00001;");
}

TEST_F(Reader, AFailedReferenceIsTriedAgain) {
    const auto reader = open("references");
    sql("UPDATE RefMzCalibration SET dC1 = NULL WHERE Id = 1");
    for (int attempt = 0; attempt < 2; ++attempt)
        EXPECT_EQ(failureOf([&] { reader->getRefMzTrafo(false, 0, 0); }),
                  "Wrong value in table RefMzCalibration, Id 1, column dC1: NULL instead of a number");
    sql("UPDATE RefMzCalibration SET dC1 = 0 WHERE Id = 1");
    EXPECT_TRUE(reader->getRefMzTrafo(false, 0, 0));
    sql("DELETE FROM RefMzCalibration");
    EXPECT_TRUE(reader->getRefMzTrafo(false, 0, 0)) << "kept once it is loaded";
}

TEST_F(Reader, NothingThatFitsIsNoReader) {
    EXPECT_FALSE(CalibrationReaderSqlite::find(m_directory, {.source = "other", .unconditional = true}));
    EXPECT_EQ(failureOf([&] { open("missing"); }), "Calibration state [missing] does not exist");
    fs::remove(file());
    EXPECT_FALSE(CalibrationReaderSqlite::find(m_directory, g_any));
    EXPECT_EQ(failureOf([&] { CalibrationReaderSqlite(m_directory, g_any); }), file().string() + " doesn't exist");
    EXPECT_TRUE(fs::is_empty(m_directory)) << "not made by looking";
    EXPECT_EQ(failureOf([&] { open(m_directory / "none", "k"); }), "Specified analysis directory does not exist");
    fs::create_directory(file());
    EXPECT_EQ(failureOf([&] { open("k"); }), file().string() + " is not a regular file");
    EXPECT_EQ(::mkfifo((m_directory / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(failureOf([&] { open(m_directory / "fifo", "k"); }), "Specified path is not a directory");
    fs::remove(file());
    fs::rename(m_directory / "fifo", file());
    EXPECT_EQ(failureOf([&] { open("k"); }), file().string() + " is not a regular file");
}

TEST_F(Reader, WhatIsWrongWithTheFileIsReportedAtOpen) {
    const std::string value = "SELECT Value FROM GlobalMetadata WHERE Key=";
    const std::pair<const char*, std::string> cases[] = {
        {"UPDATE GlobalMetadata SET Value = 'ELSE' WHERE Key = 'SchemaType'", "Schema type 'ELSE' not supported"},
        {"DELETE FROM GlobalMetadata", "Query result unexpectedly empty: " + value + "'SchemaType'"},
        {"UPDATE GlobalMetadata SET Value = '2' WHERE Key = 'SchemaVersionMajor'",
         "calibration schema version 2.3 not supported."},
        {"UPDATE GlobalMetadata SET Value = 'x' WHERE Key = 'SchemaVersionMinor'",
         "Query result has wrong type: " + value + "'SchemaVersionMinor'"},
        {"UPDATE CalibrationState SET HasFrameCalibrators = NULL",
         "Query result unexpectedly NULL: SELECT HasFrameCalibrators FROM CalibrationState WHERE Id=5"},
        {"UPDATE CalibrationState SET Key = 'frames' WHERE Id = 6",
         "Query resulted in more than one result: SELECT Id From CalibrationState WHERE Key='frames'"},
        {"DROP TABLE GlobalMetadata", "SQLITE_ERROR[1]: no such table: GlobalMetadata"},
        {"DROP TABLE DigitizerConstants", "SQLITE_ERROR[1]: no such table: DigitizerConstants"},
        {"UPDATE DigitizerConstants SET DigitizerDelay = 'late'",
         "Wrong value in table DigitizerConstants, CalibrationState 5, column DigitizerDelay: a text instead of a "
         "number"},
        {"DROP TABLE RefMzCalibration", "Too few columns in table RefMzCalibration"},
        {"DROP TABLE FrameMzCalibration; CREATE TABLE FrameMzCalibration (id, modeltype, calibrationstate)",
         "Too few columns in table FrameMzCalibration"},
        {"ALTER TABLE RefMzCalibration RENAME COLUMN T1 TO T0", "SQLITE_ERROR[1]: no such column: c.T1"},
        {"ALTER TABLE FrameMzCalibrationMapping RENAME TO M; CREATE VIEW FrameMzCalibrationMapping AS WITH RECURSIVE "
         "n(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n) SELECT x FrameId, 5 CalibrationState FROM n",
         "Calibration database: FrameMzCalibrationMapping is not a plain table"},
        {"DROP TABLE FrameMzCalibration; CREATE TABLE FrameMzCalibration (Id, ModelType, CalibrationState, C0, C1 AS "
         "(C0 LIKE '%a%a%a%a%b'))",
         "Calibration database: FrameMzCalibration is not a plain table"},
    };
    const fs::path whole = m_directory / "whole";
    fs::copy_file(file(), whole);
    for (const auto& [change, text] : cases) {
        fs::copy_file(whole, file(), fs::copy_option::overwrite_if_exists);
        sql(change);
        EXPECT_EQ(failureOf([&] { CalibrationReaderSqlite::find(m_directory, {.key = "frames"}); }), text) << change;
    }
    test::writeFile(file(), std::string(4096, 'x'));
    EXPECT_EQ(failureOf([&] { open("frames"); }), "UNKNOWN_ERROR[26]: file is not a database");
}

TEST_F(Reader, WhatIsWrongWithARowIsReportedWhereItIsNeeded) {
    const std::string row = "Wrong value in table FrameMzCalibration, Id 1";
    const std::string mapping =
        "Wrong value in table FrameMzCalibrationMapping, FrameId 1, column FrameMzCalibrationId: ";
    const std::tuple<int, std::string, std::string> cases[] = {
        {6, " SET C1 = C1", "No m/z trafo for id [6] available"},
        {1, " SET CalibrationState = 8 WHERE C1 = 4e12", "No m/z trafo for id [11] available"},
        {1, "Mapping SET FrameMzCalibrationId = NULL", mapping + "NULL instead of a number"},
        {1, "Mapping SET FrameMzCalibrationId = 1e300", mapping + "not a whole number"},
        {1, " SET C1 = NULL", row + "1, column C1: NULL instead of a number"},
        {1, " SET C2 = '0.5'", row + "1, column C2: a text instead of a number"},
        {1, " SET C0 = x'00'", row + "1, column C0: a blob instead of a number"},
        {1, " SET ModelType = 6", "Unknown m / z calibration model 6"},
        {1, " SET ModelType = 0", "Unknown m / z calibration model 0"},
        {1, " SET ModelType = 1.5", row + "1, column ModelType: not a whole number"},
        {2, " SET C9 = NULL", row + "2, column C2: no blob of coefficients behind it"},
        {2, " SET C9 = x''", row + "2, column C9: a blob of 0 bytes instead of doubles"},
        {2, " SET C9 = x'0102030405060708090A'", row + "2, column C9: a blob of 10 bytes instead of doubles"},
        {2, " SET C6 = C9", row + "2, column C6: a blob where numbers of the correction stand"},
        {2, " SET C8 = NULL", row + "2, column C8: NULL instead of a number"},
        {4, " SET C4 = 2147483648", row + "4, column C4: out of range"},
        {4, " SET C0 = 2", "CalibrationTransformatorFactory::createConstantsFunctionalIcr: mode 2 not supported [QX]"},
    };
    const fs::path whole = m_directory / "whole";
    fs::copy_file(file(), whole);
    for (const auto& [frame, change, text] : cases) {
        fs::copy_file(whole, file(), fs::copy_option::overwrite_if_exists);
        sql("UPDATE FrameMzCalibration" + change);
        const auto reader = open("frames");
        EXPECT_EQ(failureOf([&, number = frame] { reader->getMzTrafo(number); }), text) << change;
    }
    sql("DROP TABLE FrameMzCalibration; CREATE TABLE FrameMzCalibration (Id, ModelType, CalibrationState, C0, C1);"
        "INSERT INTO FrameMzCalibration VALUES (11,1,5,1,1);"
        "UPDATE FrameMzCalibrationMapping SET FrameMzCalibrationId = 11; DELETE FROM DigitizerConstants");
    EXPECT_EQ(failureOf([&] { open("frames")->getMzTrafo(1); }),
              "Missing digitizer constants, unable to load tof m/z transformators");
    sql("INSERT INTO DigitizerConstants VALUES (5,1,1)");
    EXPECT_EQ(failureOf([&] { open("frames")->getMzTrafo(1); }), "Too few columns in table FrameMzCalibration");
    sql("UPDATE RefMzCalibration SET ModelType = 4");
    EXPECT_EQ(failureOf([&] { open("references")->getRefMzTrafo(false, 0, 0); }),
              "FTMS04 as reference trafo is not supported.");
    sql("UPDATE RefMzCalibration SET ModelType = 5");
    EXPECT_EQ(failureOf([&] { open("references")->getRefMzTrafo(false, 0, 0); }),
              "FTMS1356 as reference trafo is not supported.");
}

/// A file at rest is read without locks, which no caller may notice: numbers that belong together, under a writer that
/// changes all of them again and again.
TEST_F(Reader, ReadsWithoutLocksSeeNoHalfOfAChange) {
    const fs::path now = copyTo("now", 3);
    const fs::path other = copyTo("other", 4);
    cppsqlite::CppSQLite3DB database;
    database.open(file().string());
    const auto expectLocked = [](cppsqlite::CppSQLite3DB& open, const char* reason) {
        UnlockedFrameCalibrators calibrators(5);
        for (int read = 0; read < 40; ++read) {
            calibrators.noteLockedRead(open);
            EXPECT_FALSE(calibrators.tryLoad(3, {})) << reason;
        }
    };
    expectLocked(database, "written just now");
    g_clockIsAhead = std::chrono::seconds(5);
    cppsqlite::CppSQLite3DB logged;
    logged.open((copyTo("logged", 3) / file().filename()).string());
    logged.execDML("PRAGMA journal_mode=WAL");
    expectLocked(logged, "its log changes it");
    watchRows();
    UnlockedFrameCalibrators unlocked(5);
    const auto reader = open("frames");
    const auto isWhole = [](const CalibrationReaderSqlite::TransformatorPtr& law) {
        return law->RawToMass(0.0) == 3.0 || law->RawToMass(1.0) == 2 * law->RawToMass(0.0);
    };
    std::size_t withoutLocks = 0;
    for (int read = 0; read < 40; ++read) {
        ASSERT_TRUE(isWhole(reader->getMzTrafo(3)));
        unlocked.noteLockedRead(database);
        withoutLocks += unlocked.tryLoad(3, {}) != nullptr ? 1 : 0;
    }
    EXPECT_EQ(withoutLocks > 0, sys::hasDependableStamps(file()));

    // Nor that the name of the open file comes to mean another one.
    const auto expectThree = [](CalibrationReaderSqlite& open) {
        for (int read = 0; read < 40; ++read)
            ASSERT_EQ(open.getMzTrafo(3)->RawToMass(0.0), 3.0) << read;
    };
    const fs::path former = fs::current_path();
    fs::current_path(now);
    const auto relative = open("", "frames");
    fs::current_path(other);
    expectThree(*relative);
    fs::current_path(former);
    const auto replaced = open(now, "frames");
    fs::rename(now, m_directory / "before");
    fs::rename(other, now);
    expectThree(*replaced);

    g_atNextRow = [&] { sql("UPDATE FrameMzCalibration SET C0 = 1, C1 = 1 WHERE Id = 13"); };
    EXPECT_EQ(reader->getMzTrafo(3)->RawToMass(0.0), 1.0) << "changed while it was read";

    const auto time = fs::last_write_time(file());
    const pid_t child = ::fork();
    if (child == 0) {
        for (int c = 1; c <= 20; ++c)
            sql("UPDATE FrameMzCalibration SET C0 = " + std::to_string(c) + ", C1 = " + std::to_string(c) +
                " WHERE Id = 13");
        ::_exit(0);
    }
    int status = -1;
    for (int read = 0; ::waitpid(child, &status, WNOHANG) == 0; ++read)
        ASSERT_TRUE(isWhole(reader->getMzTrafo(3))) << read;
    EXPECT_EQ(status, 0);
    fs::last_write_time(file(), time);  // proves nothing: the system notes the change of the time as well
    EXPECT_FALSE(unlocked.tryLoad(3, {}));
    EXPECT_EQ(reader->getMzTrafo(3)->RawToMass(0.0), 20.0);
}

TEST_F(Reader, WaitsForAnotherProcess) {
    int toChild[2];
    int toParent[2];
    ASSERT_EQ(::pipe(toChild) + ::pipe(toParent), 0);
    char token = 0;
    const pid_t child = ::fork();
    if (child == 0) {
        cppsqlite::CppSQLite3DB database;
        database.open(file().string());
        database.execDML("BEGIN EXCLUSIVE; UPDATE CalibrationState SET Key = 'later' WHERE Key = 'frames'");
        bool isWell = ::write(toParent[1], "l", 1) == 1 && ::read(toChild[0], &token, 1) == 1;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        database.execDML("COMMIT");
        ::_exit(isWell ? 0 : 1);
    }
    ASSERT_EQ(::read(toParent[0], &token, 1), 1);
    ASSERT_EQ(::write(toChild[1], "g", 1), 1);
    EXPECT_EQ(open("later")->stateKey(), "later");
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(Reader, LeavesNothingBesideTheDatabase) {
    sql("PRAGMA journal_mode=WAL");
    const auto names = [&] {
        return std::set<fs::path>(fs::directory_iterator(m_directory), fs::directory_iterator());
    };
    EXPECT_TRUE(open("frames")->getMzTrafo(1));
    EXPECT_EQ(names().size(), 1);

    fs::permissions(file(), static_cast<fs::perms>(0444));
    for (const bool hasEmptyLog : {false, true}) {
        if (hasEmptyLog)
            test::writeFile(m_directory / "calibration.sqlite-wal", "");
        const auto before = names();
        for (const int permissions : {0555, 0777}) {
            fs::permissions(m_directory, static_cast<fs::perms>(permissions));
            EXPECT_EQ(test::asNobody([&] { return failureOf([&] { open("frames")->getMzTrafo(1); }); }), "");
            EXPECT_EQ(names(), before) << permissions << hasEmptyLog;
        }
    }
}

/// Without locks nobody is kept from writing, and half of what they wrote would be a calibration that never was.
TEST_F(Reader, WhereNothingMayBeWrittenAChangeIsReported) {
    sql("PRAGMA journal_mode=WAL");
    const auto permit = [&](int forDirectory, int forFile) {
        fs::permissions(m_directory, static_cast<fs::perms>(forDirectory));
        fs::permissions(file(), static_cast<fs::perms>(forFile));
    };
    const auto change = [&] {
        const bool isRoot = ::seteuid(0) == 0;
        permit(0755, 0644);
        sql("UPDATE FrameMzCalibration SET C0 = 7");
        if (isRoot && ::seteuid(65534) != 0)
            throw std::runtime_error("still root");
    };
    watchRows();
    for (const bool isWhileReading : {false, true}) {
        permit(0555, 0444);
        EXPECT_EQ(test::asNobody([&] {
                      const auto reader = open("frames");
                      reader->getMzTrafo(3);
                      isWhileReading ? void(g_atNextRow = change) : change();
                      return failureOf([&] { reader->getMzTrafo(3); });
                  }),
                  file().string() + " has changed since it was opened");
    }
    // A writer that is still there shares its memory, so that its changes are seen.
    cppsqlite::CppSQLite3DB writer;
    writer.open(file().string());
    writer.execDML("UPDATE FrameMzCalibration SET C0 = 3; PRAGMA wal_checkpoint(TRUNCATE)");
    permit(0555, 0444);
    EXPECT_EQ(test::asNobody([&] {
                  const auto reader = open("frames");
                  change();
                  return std::to_string(reader->getMzTrafo(3)->RawToMass(0.0));
              }),
              "7.000000");
}

/// A link to the database does not hide what lies beside it.
TEST_F(Reader, WhereNothingMayBeWrittenAnInterruptedWriterIsReported) {
    const fs::path real = m_directory / "real";
    fs::create_directory(real);
    const pid_t child = ::fork();
    if (child == 0) {
        cppsqlite::CppSQLite3DB database;
        database.open(file().string());
        database.execDML(
            "PRAGMA cache_size=2; BEGIN; UPDATE FrameMzCalibration SET C0 = 7;"
            "CREATE TABLE Filler (a); INSERT INTO Filler VALUES (zeroblob(100000))");
        ::_exit(0);  // leaves the journal
    }
    ::waitpid(child, nullptr, 0);
    for (const char* const name : {"calibration.sqlite", "calibration.sqlite-journal"})
        fs::rename(m_directory / name, real / name);
    fs::create_symlink(real / "calibration.sqlite", file());
    fs::permissions(real / "calibration.sqlite", static_cast<fs::perms>(0444));
    fs::permissions(real, static_cast<fs::perms>(0555));
    for (const fs::path& directory : {fs::path(m_directory), real})
        EXPECT_EQ(test::asNobody([&] { return failureOf([&] { open(directory, "frames"); }); }),
                  "SQLITE_READONLY[8]: attempt to write a readonly database");
    fs::permissions(real, static_cast<fs::perms>(0755));
}

}  // namespace
}  // namespace kvan::io::calibration
