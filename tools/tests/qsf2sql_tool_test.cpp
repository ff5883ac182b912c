#include <cppsqlite/CppSQLite3.h>
#include <sample-analysis/analysis_writer.h>
#include <sample-analysis/variable_tables.h>
#include <test-support/support.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

namespace {

namespace fs = boost::filesystem;
using namespace kvan::sample;
using kvan::test::calibrationBlob;
using Words = std::vector<std::string>;
using Numbers = std::vector<double>;

struct Outcome {
    int status = -1;
    std::string out, err;
};

bool hasLine(const std::string& text, const std::string& pattern) {
    const std::regex regex(pattern);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (std::regex_match(line, regex))
            return true;
    return false;
}

/// The command from outside, in a directory of its own.
class Tool : public ::testing::Test {
protected:
    Tool() {
        fs::create_directory(m_streams);
        fs::permissions(m_streams, fs::all_all);
    }

    /// Arguments as in a shell.
    Outcome run(const std::string& arguments, const std::string& tool = TOOL) const {
        const std::string streams = " >'" + (m_streams / "out").string() + "' 2>'" + (m_streams / "err").string() + "'";
        const int status =
            std::system(("cd '" + m_work.string() + "' && '" + tool + "' " + arguments + streams).c_str());
        const Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : -1, kvan::test::readFile(m_streams / "out"),
                              kvan::test::readFile(m_streams / "err")};
        for (const char* stream : {"out", "err"})
            fs::remove(m_streams / stream);
        return outcome;
    }

    /// Each of these patterns is a line of what the command says.
    void says(const std::string& arguments, const Words& patterns) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << arguments << "\n" << outcome.err;
        for (const std::string& pattern : patterns)
            EXPECT_TRUE(hasLine(outcome.out, pattern)) << "qsf2sql " << arguments << "\nlacks " << pattern << " in\n"
                                                       << outcome.out;
    }

    void refuses(const std::string& arguments, const std::string& reason, int status = 1) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << "qsf2sql " << arguments;
        EXPECT_EQ(outcome.out, "") << "qsf2sql " << arguments;
        EXPECT_TRUE(hasLine(outcome.err, "qsf2sql: " + reason))
            << "qsf2sql " << arguments << "\nlacks " << reason << " in\n"
            << outcome.err;
    }

    /// The columns of CSV, without their names.
    std::vector<Numbers> columns(const std::string& arguments) const {
        const Outcome outcome = run(arguments + " --csv");
        EXPECT_EQ(outcome.status, 0) << arguments << "\n" << outcome.err;
        std::vector<Numbers> all(20);
        std::istringstream lines(outcome.out);
        std::string line, cell;
        std::getline(lines, line);
        while (std::getline(lines, line)) {
            std::istringstream cells(line);
            for (Numbers& column : all)
                column.push_back(std::getline(cells, cell, ',') ? std::atof(cell.c_str()) : 0.0);
        }
        EXPECT_FALSE(all[0].empty()) << arguments;
        if (all[0].empty())
            std::fill(all.begin(), all.end(), Numbers(1));
        return all;
    }

    void sql(const char* file, const std::string& statements) const {
        kvan::cppsqlite::CppSQLite3DB database;
        database.open((m_work / file).string());
        database.execDML(statements);
    }

    /// `hand`: five spectra of which every number is known.
    std::vector<SpectrumLocation> writeByHand() const {
        const Bytes straight = calibrationBlob(4098, {100, 0.25});
        AnalysisWriter writer(m_work / "hand", {.description = AnalysisDescription{.operatorName = "Jo\x7F\x1B[1m",
                                                                                   .sampleName = "\"Yeast\", 1:2"},
                                                .variables = {{100, 5, false, "Voltage", "", "", "", "", "\xB5V"},
                                                              {101, 10, false, "Temperature"},
                                                              {102, 11, false, "Source"},
                                                              {110, 5, true, "Steps"},
                                                              {111, 10, true, "Times"},
                                                              {112, 11, true, "Notes"}}});
        std::vector<SpectrumLocation> places;
        places.push_back(writer.addSpectrum(
            {.profile = std::vector<std::uint32_t>{0, 5, 100, 5, 1},
             .lines = LineData{.index = {{0, 2, 2.015625, 4}}, .intensity = {{10, 40, 1, 30.5}}, .snr = {{1, 2, 3, 4}}},
             .pool = variableTables({{100, -7},
                                     {101, 0.1},
                                     {102, "say \"h\xEF\""},
                                     {110, std::vector<std::int32_t>{1, -2}},
                                     {111, std::vector{60.0, 72.5}},
                                     {112, std::vector<std::string>{"a", "", "b"}}}),
             .info = {.retentionTime = 1500,
                      .acquiredUpper = 4,
                      .maxIntensity = 40,
                      .sumIntensity = 81.5F,
                      .calibration = straight}}));
        places.push_back(writer.addSpectrum({.lines = LineData{.index = {{4, 8}}, .intensity = {{3, 2}}},
                                             .pool = variableTables({{100, 9}, {102, "a,b"}}),
                                             .info = {.retentionTime = 2000,
                                                      .acquiredLower = 4,
                                                      .acquiredUpper = 8,
                                                      .maxIntensity = 3,
                                                      .sumIntensity = 5,
                                                      .polarity = 1,
                                                      .masses = {445.5F, 120.25F},
                                                      .calibration = straight}}));
        places.push_back(writer.addSpectrum({.profile = std::vector<float>{1.5F, 2.5F},
                                             .info = {.retentionTime = 2500,
                                                      .masses = {300.125F},
                                                      .calibration = calibrationBlob(4097, {3, 2, 0.5, 10, 500})}}));
        places.push_back(writer.addSpectrum({.info = {.retentionTime = 3000, .masses = {50}}}));
        places.push_back(writer.addSpectrum(
            {.lines = LineData{.intensity = {{1, 2}}}, .info = {.retentionTime = 3500, .calibration = straight}}));
        writer.finish();
        return places;
    }

    const kvan::test::TemporaryDirectory m_work;
    const fs::path m_streams = m_work / "streams";
};

TEST_F(Tool, HelpHasExamplesAndMistakesAreUsageErrors) {
    for (const char* command : {"", "sample ", "info ", "spectra ", "read ", "variables "})
        says(command + std::string("--help"), {"  qsf2sql .*demo-run.*"});
    says("--version", {"qsf2sql [0-9]+\\.[0-9]+\\.[0-9]+"});
    for (const char* mistake :
         {"", "nonsense", "read run", "read run one", "sample run --calibration none", "sample run --points 1",
          "spectra run --ms-level 0", "spectra run --count -1", "read run 1 --lines --profile"}) {
        refuses(mistake, ".+", 2);
        EXPECT_TRUE(hasLine(run(mistake).err, "Try 'qsf2sql --help'\\.")) << mistake;
    }
    EXPECT_FALSE(fs::exists(m_work / "run"));
}

/// What the transcript says, command by command: "$ qsf2sql ARGUMENTS", then what it says, its own messages
/// after "! ", and "[STATUS]" unless it is 0.
TEST_F(Tool, SaysWhatTheTranscriptSays) {
    writeByHand();
    run("info hand");
    std::istringstream transcript(kvan::test::readFile(TEST_FILES "/transcript.txt"));
    std::string line, command, expected;
    const auto play = [&] {
        const Outcome outcome = run(command);
        std::string said = outcome.out;
        std::istringstream errors(outcome.err);
        for (std::string error; std::getline(errors, error);)
            said += error.starts_with("qsf2sql: ") ? "! " + error + "\n" : "";
        if (outcome.status != 0)
            said += "[" + std::to_string(outcome.status) + "]\n";
        EXPECT_EQ(said, expected) << "qsf2sql " << command;
        expected.clear();
    };
    int commands = 0;
    while (std::getline(transcript, line)) {
        if (!line.starts_with("$ qsf2sql ")) {
            expected += line + "\n";
            continue;
        }
        if (commands++ > 0)
            play();
        command = line.substr(10);
    }
    play();
    EXPECT_GT(commands, 20);
}

TEST_F(Tool, DamageHasItsWords) {
    const auto places = writeByHand();
    run("variables hand");
    sql("hand/analysis.sqlite", "UPDATE PerSpectrumVariables SET Value = x'01000000FE' WHERE Variable = 110");
    says("variables hand 1", {"Steps +1"});
    {
        fs::fstream file(m_work / "hand" / "analysis.qsf", std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(static_cast<std::streamoff>(places[1].lines + 24)).write("\xFF\xFF\xFF\xFF", 4);
    }
    refuses("read hand 2", "the peak list claims more lines than the file can hold");
    sql("hand/analysis.sqlite",
        "UPDATE Spectra SET LineIntensityId = (SELECT LineIntensityId FROM Spectra WHERE Id = 5)");
    refuses("read hand 1", "the spectrum has no m/z values or no intensities");
    sql("hand/analysis.sqlite", "UPDATE Spectra SET LineSnrId = NULL");
    refuses("read hand 1", "the spectrum lacks an array Id in the cache");
}

TEST_F(Tool, OutputThatCannotBeWritten) {
    writeByHand();
    run("info hand");
    EXPECT_EQ(run("spectra hand >/dev/full 2>messages; echo $? >>messages; cat messages").out,
              "qsf2sql: can't write the output: No space left on device\n1\n");
    EXPECT_EQ(run("info hand >&- 2>messages; cat messages").out, "qsf2sql: no standard output\n");
    ASSERT_EQ(run("sample run --spectra 2 --points 100000").status, 0);
    const std::string command = "cd '" + m_work.string() + "' && '" TOOL "' read run 1 --profile --csv 2>messages";
    std::FILE* const output = ::popen(command.c_str(), "r");
    EXPECT_EQ(std::fgetc(output), 'm');
    EXPECT_EQ(::pclose(output), 0) << "a reader that leaves is no failure";
    EXPECT_FALSE(hasLine(kvan::test::readFile(m_work / "messages"), "qsf2sql: .*"));
}

TEST_F(Tool, SampleRunsReplaceNothingUnasked) {
    says("sample run --spectra 5 --points 1000", {"Wrote 5 spectra to run", "  analysis.qsf_xtr .* k?B"});
    refuses("sample run", "there is an analysis in run already; --force replaces it");
    ASSERT_EQ(
        run("sample run --force --spectra 6 --points 1000 --no-lines --no-variables --recalibration archive").status,
        0);
    EXPECT_EQ(columns("spectra run")[0].size(), 6);
    EXPECT_EQ(run("variables run 1 --csv").out, "variable,value,unit\n");
    EXPECT_TRUE(fs::exists(m_work / "run" / "Calibrator.ami"));
    const std::string former = run("spectra run").out;
    ASSERT_EQ(run("sample run --force --spectra 6 --points 1000 --no-lines --no-variables --seed 2").status, 0);
    EXPECT_NE(run("spectra run").out, former) << "the cache is of this run";
    EXPECT_FALSE(fs::exists(m_work / "run" / "Calibrator.ami")) << "that of another run";
    refuses("sample none --compressor vlc --float", "vlc compressor: float compression not supported");
    for (const char* law : {"tof2-cubic", "kite2"})
        refuses("sample none --recalibration database --calibration " + std::string(law),
                "A calibration database has no model for this law\\.");
    EXPECT_TRUE(fs::is_empty(m_work / "none"));
}

/// The precursor lies among the m/z values of its own fragment spectrum, and with an isotope in those of its survey.
TEST_F(Tool, ASampleRunShowsItsPrecursors) {
    ASSERT_EQ(run("sample run --seed 7 --spectra 60 --points 20000").status, 0);
    const auto spectra = columns("spectra run --ms-level 2");
    const auto row =
        static_cast<std::size_t>(std::max_element(spectra[9].begin(), spectra[9].end()) - spectra[9].begin());
    const double precursor = spectra[4][row];
    const auto has = [&](double spectrum, double mz, double tolerance) {
        const Numbers values = columns("read run " + std::to_string(static_cast<int>(spectrum)))[0];
        EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
        return std::any_of(values.begin(), values.end(),
                           [&](double value) { return std::abs(value - mz) < tolerance; });
    };
    EXPECT_TRUE(has(spectra[0][row], precursor, 0.05));
    EXPECT_TRUE(has(spectra[5][row], precursor, 0.02));
    EXPECT_TRUE(has(spectra[5][row], precursor + 1.00235 / 2, 0.02) ||
                has(spectra[5][row], precursor + 1.00235 / 3, 0.02));
    const std::string spectrum = std::to_string(static_cast<int>(spectra[0][row]));
    std::ostringstream isolated;
    isolated << "MSMS_IsolationMass_Act +" << std::fixed << std::setprecision(2) << std::floor(precursor * 100) / 100;
    says("variables run " + spectrum, {isolated.str() + "[0-9]* +m/z", "Transfer_Times_Set +60; 72.5 +µs"});
    says("variables run",
         {"Source_Name +Electrospray, 3 µL/min", "TOF_DeviceTempCurrentValue1 +29\\.[0-9]+ to 30\\.[0-9]+ +°C"});
}

// In a reference's place stands the spectrum's own.
TEST_F(Tool, EveryCalibrationIsNamedAndHasItsAxis) {
    const std::pair<const char*, const char*> laws[] = {
        {"tof-linear", "time of flight, linear"},
        {"tof-quadratic", "time of flight, quadratic"},
        {"tof-compensated", "time of flight, temperature-compensated, quadratic"},
        {"tof-compensated-several", "time of flight, temperature-compensated, quadratic"},
        {"tof2-linear", "time of flight, second generation, linear"},
        {"tof2-quadratic", "time of flight, second generation, quadratic"},
        {"tof2-cubic", "time of flight, second generation, cubic"},
        {"tof2-compensated", "time of flight, second generation, temperature-compensated, cubic"},
        {"ftms", "Fourier transform, linear"},
        {"ftms-quadratic", "Fourier transform, quadratic"},
        {"paladin-linear", "ion trap, linear"},
        {"paladin-quadratic", "ion trap, quadratic"},
        {"linear", "linear"},
        {"kite1", "KITE 1"},
        {"kite2", "KITE 2"},
        {"psd", "post-source decay"},
        {"tof-quadratic --gpx", "time of flight, quadratic, with GPX correction"},
        {"tof-compensated-several --gpx", "time of flight, temperature-compensated, quadratic, with GPX correction"},
        {"tof2-compensated --gpx",
         "time of flight, second generation, temperature-compensated, cubic, with GPX correction"},
        {"ftms --gpx", "Fourier transform, linear, with GPX correction"},
        {"linear --gpx", "linear, with GPX correction"},
        {"kite1 --gpx", "KITE 1, with GPX correction"},
        {"kite2 --gpx", "KITE 2, with GPX correction"},
        {"psd --gpx", "post-source decay, with GPX correction"}};
    for (const auto& [law, name] : laws) {
        ASSERT_EQ(
            run("sample law --force --spectra 4 --points 9000 --profiles all --float --calibration " + std::string(law))
                .status,
            0);
        says("info law --no-sketch", {"Calibration +" + std::string(name), "Acquired m/z +100 to 1700"});
        for (const char* spectrum : {"1", "3"}) {
            const Numbers axis = columns(std::string("read law --profile ") + spectrum)[0];
            ASSERT_EQ(axis.size(), 9000) << law;
            EXPECT_TRUE(std::is_sorted(axis.begin(), axis.end())) << law;
            EXPECT_NEAR(axis.front(), 100, 0.01) << law;
            EXPECT_NEAR(axis.back(), 1700, 0.1) << law;
        }
    }
}

TEST_F(Tool, CompressorsGiveBackTheSameCounts) {
    std::string plain;
    for (const char* compressor : {"none", "vlc", "vli2", "zlib"}) {
        ASSERT_EQ(run("sample run --force --spectra 6 --points 9000 --compressor " + std::string(compressor)).status,
                  0);
        const std::string counts = run("read run 1 --profile --csv").out;
        plain = plain.empty() ? counts : plain;
        EXPECT_EQ(counts, plain) << compressor;
        EXPECT_TRUE(compressor[0] != 'v' || fs::file_size(m_work / "run" / "analysis.qsf") < 100'000) << compressor;
    }
}

TEST_F(Tool, WhichCalibrationIsInForceAndWhyNoOther) {
    const auto saysOf = [&](const char* analysis, const Words& patterns) {
        says("info --no-sketch " + std::string(analysis), patterns);
    };
    ASSERT_EQ(run("sample true --spectra 6 --points 9000").status, 0);
    ASSERT_EQ(run("sample both --spectra 6 --points 9000 --recalibration both").status, 0);
    EXPECT_EQ(run("read both 2 --csv").out, run("read true 2 --csv").out);
    EXPECT_NE(run("read both 2 --csv --raw-calibration").out, run("read true 2 --csv").out);
    const std::string state = "state 5eed0000-0000-4000-8000-[0-9a-f]{12} \\(source sample-analysis\\)";
    saysOf("both", {"Calibration in force +calibration.sqlite, " + state + ": a calibration for each spectrum",
                    "  Calibrator.ami +not opened, as calibration.sqlite has a state that fits"});
    sql("both/calibration.sqlite", "DELETE FROM FrameMzCalibrationMapping WHERE FrameId = 3");
    saysOf("both",
           {"Calibration in force +Calibrator.ami",
            "  calibration.sqlite +no state fits: " + state + " has calibrations of 5 spectra up to 6 for 6 spectra"});
    EXPECT_NEAR(columns("read both 1")[0][0], columns("read true 1")[0][0], 1e-6);
    sql("both/calibration.sqlite", "DELETE FROM CalibrationState");
    saysOf("both", {"  calibration.sqlite +has no state"});
    fs::remove(m_work / "both" / "calibration.sqlite");
    saysOf("both", {"Calibration in force +Calibrator.ami", "  calibration.sqlite +not there"});
    kvan::test::writeFile(m_work / "both" / "calibration.sqlite", "no database");
    saysOf("both", {"Calibration in force +none \\(UNKNOWN_ERROR\\[26\\]: file is not a database\\); --raw-calibration "
                    "reads by that of the acquisition"});
    saysOf("true", {"Calibration in force +that of the acquisition", "  calibration.sqlite +not there",
                    "  Calibrator.ami +not there"});

    ASSERT_EQ(run("sample two --seed 9876543210987654321 --spectra 6 --calibration tof-compensated --polarity both "
                  "--recalibration database")
                  .status,
              0);
    saysOf("two",
           {"Calibration in force +calibration.sqlite, " + state + ": references for positive and negative spectra"});
    sql("two/calibration.sqlite", "UPDATE CalibrationState SET NegativeReferenceCalibratorId = NULL, Source = ''");
    saysOf("two",
           {"  calibration.sqlite +no state fits: state 5eed[-0-9a-f]* \\(source not told\\) has no reference for "
            "negative spectra"});

    // A correction of masses survives both stores.
    ASSERT_EQ(run("sample corrected --spectra 6 --points 9000 --gpx").status, 0);
    for (const char* store : {"database", "archive"}) {
        ASSERT_EQ(
            run("sample stored --force --spectra 6 --points 9000 --gpx --recalibration " + std::string(store)).status,
            0);
        EXPECT_EQ(run("read stored 1 --csv").out, run("read corrected 1 --csv").out) << store;
    }
}

TEST_F(Tool, ADamagedArchiveIsNamed) {
    ASSERT_EQ(run("sample run --spectra 6 --points 9000 --recalibration archive").status, 0);
    const fs::path archive = m_work / "run" / "Calibrator.ami";
    std::string bytes = kvan::test::readFile(archive);
    bytes[0] = 3;
    kvan::test::writeFile(archive, bytes);
    says("info run --no-sketch", {"Calibration in force +none \\(No Calibrator.ami opened\\.\\).*"});
    bytes[0] = 2;
    kvan::test::writeFile(archive, bytes.substr(0, 100));
    refuses("read run 1", "Couldn't open AMI file run/Calibrator.ami");
    EXPECT_TRUE(
        hasLine(run("read run 1").err, ".*kvan.io.amiReader: Specified AMI file .* ends inside its payload\\."));
    EXPECT_EQ(run("read run 1 --raw-calibration").status, 0);
}

// Beside a configuration that asks for more.
TEST_F(Tool, TheLogTellsEverySettingAndEveryRecord) {
    fs::copy_file(TOOL, m_work / "qsf2sql");
    kvan::test::writeFile(
        m_work / "kvan-logconf.xml",
        "<kvan-logconf><sink name='console' class='kvan.logging.ConsoleSink'/><root level='WARN'><sink ref='console'/>"
        "</root><logger name='kvan.io.qsf2sql.VariableSettings' level='TRACE'/>"
        "<logger name='kvan.io.amiReader' level='DEBUG'/></kvan-logconf>");
    ASSERT_EQ(run("sample run --seed 7 --spectra 60 --points 2000 --recalibration archive").status, 0);
    const std::pair<const char*, Words> cases[] = {
        {"variables run",
         {"[DEBUG] kvan.io.qsf2sql.VariableSettings: Ignoring CalibrationBlock in variables.",
          "[DEBUG] kvan.io.qsf2sql.VariableSettings: Ignoring MSMSParameterBlock in variables.",
          "[TRACE] kvan.io.qsf2sql.VariableSettings: Set Digitizer_Summation to 2500 for AK -1",
          "[TRACE] kvan.io.qsf2sql.VariableSettings: Read 14 variable settings.",
          "[TRACE] kvan.io.qsf2sql.VariableSettings: Set Lens_Voltages_Set to <VariableType=10> for AK 2"}},
        {"read run 1",
         {"[DEBUG] kvan.io.amiReader: AMI file version = 2",
          "[DEBUG] kvan.io.amiReader.dataFileCalibrationOrganizer: version = 1.2, flag = 1",
          "[DEBUG] kvan.io.amiReader.referenceCalibrator: version = 0.3 polarity = 0, msmstype = 0",
          "[DEBUG] kvan.io.amiReader.deserializeReferenceCalibrator: version = 1.0",
          "[DEBUG] kvan.io.amiReader.referenceCalibrators: read 1 reference calibrators.",
          "[DEBUG] kvan.io.amiReader.referenceCalibrators: after cleanup: 1 reference calibrators.",
          "[DEBUG] kvan.io.amiReader.calibrationStatus: version = 1.3",
          "[DEBUG] kvan.io.amiReader.calibrationStatus:  polarity = 0, msmstype = 0",
          "[DEBUG] kvan.io.amiReader.lockMassCalibrationMgr: version = 1.1, flag = 1"}}};
    for (const auto& [command, lines] : cases) {
        const std::string log = run(command, "./qsf2sql").err;
        for (const std::string& line : lines) {
            const std::size_t place = log.find("] " + line + "\n");
            EXPECT_NE(place, std::string::npos) << command << " logs no " << line << " in\n" << log;
            if (line.find("Ignoring") != std::string::npos) {
                EXPECT_EQ(log.find(line, place + line.size()), std::string::npos) << "once: " << line;
            }
        }
    }
}

TEST_F(Tool, WhereNothingMayBeWrittenTheCacheIsTemporary) {
    writeByHand();
    const fs::path temporary = m_work / "temporary";
    fs::create_directory(temporary);
    fs::permissions(temporary, fs::all_all);
    fs::permissions(m_work / "hand", static_cast<fs::perms>(0555));
    if (kvan::test::asNobody([] { return ::access(TOOL, X_OK) == 0 ? "" : "out of reach"; }) != "")
        GTEST_SKIP() << "nobody may run " << TOOL;
    const auto saidToNobody = [&](const char* arguments) {
        return kvan::test::asNobody([&] {
            ::setenv("TMPDIR", temporary.c_str(), 1);
            return run(arguments).out;
        });
    };
    EXPECT_TRUE(hasLine(saidToNobody("info hand"), "Cache +none kept, since the directory cannot be written"));
    EXPECT_EQ(saidToNobody("read hand 3 --csv"), "mz,intensity\n1353,1.5\n1358.2050000000002,2.5\n");
    EXPECT_TRUE(fs::is_empty(temporary)) << "no cache is left behind";
    fs::permissions(m_work / "hand", fs::owner_all);
}

}  // namespace
