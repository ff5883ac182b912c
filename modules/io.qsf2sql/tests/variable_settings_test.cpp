#include "generated_cache.h"

#include <sample-analysis/variable_tables.h>

namespace kvan::io {
namespace {

using namespace sample;

using VariableSettingsTest = GeneratedCache;

using enum KVAN::io::QSF::VarTabDescEntryRecord::Element;

constexpr const char* g_perSpectrum = "SELECT * FROM PerSpectrumVariables";
constexpr const char* g_perKey = "SELECT * FROM PerSegAcqKeyVariables";

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// One variable of each type, under its code and one.
std::vector<VariableDeclaration> everyType() {
    return {{100, Integer, false, "integer"}, {101, Double, false, "double"}, {102, String, false, "string"},
            {110, Integer, true, "integers"}, {111, Double, true, "doubles"}, {112, String, true, "strings"}};
}

std::vector<VariableSetting> everyValue() {
    return {{100, -7},
            {101, 0.5},
            {102, "5 \xB5m\x81"},
            {110, std::vector<std::int32_t>{1, -2}},
            {111, std::vector{1.0}},
            {112, std::vector<std::string>{"\xB0\x43", "", "x"}}};
}

std::vector<VariableSetting> emptyValues() {
    return {
        {102, ""}, {110, std::vector<std::int32_t>()}, {111, std::vector<double>()}, {112, std::vector<std::string>()}};
}

TEST_F(VariableSettingsTest, EveryTypeBySpectrumAndByKey) {
    AnalysisWriter writer(directory, {.variables = everyType()});
    writer.addSegment(variableTables(everyValue(), VariableKey{1, 2, 0, 4}) +
                      variableTables({{101, 2.5}}, VariableKey{1, 2, 0, 5}) +
                      variableTables({{101, 3.5}}, VariableKey{0, 2, 0, 4}));
    const QuickInfo info{.polarity = 1, .acquisitionMode = 2, .scanMode = 4};
    writer.addSpectrum({.pool = variableTables(everyValue()), .info = info});
    writer.addSpectrum({.pool = variableTables(emptyValues()), .info = info});
    writer.addSpectrum({.info = {.acquisitionMode = 2, .scanMode = 4}});
    writer.finish();
    EXPECT_EQ(warnings(true), "") << "the unknown key of 2.5 too is passed over in silence";

    const std::string types = "SELECT group_concat(typeof(Value)) FROM ";
    const std::string values = "SELECT Variable, iif(typeof(Value) IN ('blob', 'text'), hex(Value), Value) FROM ";
    const std::string every =
        "100|-7 101|0.5 102|3520C2B56DC281 110|01000000FEFFFFFF 111|000000000000F03F 112|C2B043000078";
    EXPECT_EQ(rows(types + "PerSpectrumVariables WHERE Spectrum = 1"), "integer,real,text,blob,blob,blob");
    EXPECT_EQ(rows(values + "PerSpectrumVariables WHERE Spectrum = 1"), every);
    EXPECT_EQ(rows(types + "PerSpectrumVariables WHERE Spectrum = 2"), "text,blob,blob,blob");
    EXPECT_EQ(rows(values + "PerSpectrumVariables WHERE Spectrum = 2"), "102| 110| 111| 112|");
    EXPECT_EQ(rows(values + "PerSegAcqKeyVariables WHERE Segment = 1 AND AcquisitionKey = 1"), every);
    EXPECT_EQ(rows("SELECT * FROM PerSegAcqKeyVariables WHERE AcquisitionKey <> 1"), "1|2|101|3.5");
    EXPECT_EQ(rows("SELECT Spectrum, Value FROM Variables WHERE Variable = 101 ORDER BY 1"), "1|0.5 2|0.5 3|3.5");
    EXPECT_EQ(rows("SELECT DISTINCT Value FROM Variables WHERE Variable = 11"), "-");
    generate(false, {"double"});
    EXPECT_EQ(rows(g_perSpectrum), "1|101|0.5");
}

TEST_F(VariableSettingsTest, WhatASettingMayGetWrong) {
    AnalysisWriter writer(directory, {.variables = everyType()});
    writer.addSegment(variableTables(everyValue()) + variableTables({{101, 1.5}, {7, 7.0}}, VariableKey{}) +
                      variableTables({{101, 2.5}, {100, 1}}, VariableKey{}));
    for (const double value : {1.0, 2.0}) {  // the second one holds less, since the first of each kind counts
        std::vector<VariableSetting> repeated(40, {101, 9.0});
        repeated[0].value = value;
        writer.addSpectrum({.pool = variableTables(repeated) + variableTables({{102, "a"}, {102, "b"}}) +
                                    variableTables({{100, 1}, {102, "c"}})});
    }
    writer.addSpectrum({.pool = variableTables({{102, 1}, {100, "x"}, {111, std::vector<std::int32_t>{1}}})});
    writer.finish();
    std::string expected;
    for (const char* name : {"double", "doubles", "integer", "integers", "string", "strings"})
        expected += std::string("copySegmentVariables(): unexpected setting of ") + name + " for AK = -1. Skipping.\n";
    for (const char* name : {"string", "integer", "doubles"})
        expected += std::string("Variable type mismatch (declaration<->setting) for ") + name + "\n";
    EXPECT_EQ(warnings(true), expected);
    EXPECT_EQ(rows(g_perSpectrum), "1|101|1.0 1|102|a 2|101|2.0 2|102|a");
    EXPECT_EQ(rows(g_perKey), "1|1|100|1 1|1|101|1.5");
    EXPECT_EQ(rows("SELECT * FROM PerSegmentVariables"), "");
}

TEST_F(VariableSettingsTest, DuplicatesAreReportedOnceAGenerationAndTheFirstStays) {
    const auto blocksWith = [&](const VariableDeclaration& other) {
        const AnalysisHeaderData header{.variables = {{300, Double, false, "A"}, other}};
        write({}, header);
        writeMainFile(
            [](MainFileWriter& main) {
                main.segmentCondition(1);
                for (const double value : {1.0, 2.0, 3.0})
                    main.spectrumCondition(1, 4, variableTables({{300, value}, {301, 5.0}}));
            },
            header);
    };
    blocksWith({301, Double, false, "B"});
    for (int generation = 0; generation < 2; ++generation)
        EXPECT_EQ(warnings(true),
                  "QSF contains multiply defined variable A. Ignoring this and all other duplicates.\n");
    EXPECT_EQ(rows(g_perSpectrum), "4|300|1.0 4|301|5.0");

    blocksWith({301, Double, false, "A"});
    generate(true);
    EXPECT_EQ(rows(g_perSpectrum), "4|300|1.0") << "settings go by name, under the Id of the first";
    blocksWith({301, Integer, false, "A"});
    generate(true);
    EXPECT_EQ(rows(g_perSpectrum), "4|300|1.0") << "the first setting fits the first declaration";
}

TEST_F(VariableSettingsTest, AValueOfAnotherTypeThanTheFirstOfItsNameEndsTheGeneration) {
    write({{.pool = variableTables({{301, 1.0}})}},
          {.variables = {{300, Integer, false, "A"}, {301, Double, false, "A"}}});
    EXPECT_THROW(generate(true), std::bad_cast);
}

TEST_F(VariableSettingsTest, OnlyARepeatedSettingIsPassedOverAndNoOtherFault) {
    write(std::vector<SpectrumData>(30, {.pool = variableTables({{300, std::vector<double>(1000)}})}),
          {.variables = {{300, Double, true, "A"}}});
    std::string fault;
    for (int pages = 60; pages < 200; ++pages) {
        beforeFilling = "PRAGMA max_page_count=" + std::to_string(pages) + ";";
        fault = test::failureOf([&] { generate(true); });
        if (fault.empty())
            break;
        EXPECT_EQ(fault, "SQLITE_FULL[13]: database or disk is full");
    }
    EXPECT_EQ(fault, "");
    EXPECT_EQ(rows("SELECT count(*) FROM PerSpectrumVariables"), "30")
        << "the first size that is enough has room for all";
}

}  // namespace
}  // namespace kvan::io
