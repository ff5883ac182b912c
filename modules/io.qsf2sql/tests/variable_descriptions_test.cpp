#include "qsf2sql/variables/variable_descriptions.h"

#include "generated_cache.h"
#include "qsf2sql/variables/windows_1252.h"

#include <utf8.h>

namespace kvan::io {
namespace {

using namespace sample;

using VariableDescriptionsTest = GeneratedCache;

constexpr const char* g_declared = "SELECT Variable, Type, PermanentName FROM SupportedVariables WHERE Type <> 255";

TEST_F(VariableDescriptionsTest, WhichVariablesTheCacheHasUnderWhichIds) {
    write({}, {.variables = {{1, 10, false, "Plain"},
                             {2, 11, true, "TOF_DeviceTempCurrentValue1"},
                             {9, 5, true, "OnABuiltInId"},
                             {700, 11, false, "Far"},
                             {5, 10, true, "OnAnother"},
                             {6, 4, false, "Unsupported"},
                             {8, 7, false, "Digitizer_Summation"}}});
    EXPECT_EQ(warnings(),
              "Variable Unsupported has unsupported type 4; skipping\n"
              "Variable Digitizer_Summation has unsupported type 7; skipping\n");
    EXPECT_EQ(rows(g_declared), "9|12|TOF_DeviceTempCurrentValue1");
    EXPECT_EQ(rows("SELECT Variable FROM SupportedVariables WHERE Type = 255"),
              "2 5 6 7 8 10 11 12 13 14 15 16 20 21 22");
    EXPECT_EQ(rows("SELECT PermanentName FROM SupportedVariables WHERE Variable IN (2, 22)"),
              "Digitizer_Summation Prototype_AutoMSMS_Exclusion_Mass_List_Blocks");

    generate(false, {"Far", "plain"});
    EXPECT_EQ(rows(g_declared), "9|12|TOF_DeviceTempCurrentValue1 700|2|Far");
    generate(true);
    EXPECT_EQ(rows(g_declared),
              "1|1|Plain 9|12|TOF_DeviceTempCurrentValue1 700|2|Far 701|10|OnABuiltInId 702|11|OnAnother");
}

TEST_F(VariableDescriptionsTest, TextsAreStoredAsReadButForTheDimension) {
    write({}, {.variables = {{2, 5, false, "N", "G", "D", "V", "F\xE9", "\xB5V \x80\x81"}}});
    generate(true);
    EXPECT_EQ(rows("SELECT DisplayGroupName, DisplayName, DisplayValueText, hex(DisplayFormat), hex(DisplayDimension) "
                   "FROM SupportedVariables WHERE Variable = 23"),
              "G|D|V|46E9|C2B55620E282ACC281");
}

TEST_F(VariableDescriptionsTest, TwoDeclarationsOfOneIdFail) {
    for (const char* second : {"Other", "TOF_DeviceTempGradient1"}) {
        const auto* const builtIn = "TOF_DeviceTempGradient1";
        write({}, {.variables = {{1, 5, false, builtIn}, {300, 5, false, "Other"}, {300, 5, false, second}}});
        EXPECT_EQ(test::failureOf([&] { generate(true); }),
                  "SQLITE_CONSTRAINT[19]: UNIQUE constraint failed: SupportedVariables.Variable");
    }
}

TEST(VariableDescriptions, LookupsGiveTheFirst) {
    KVAN::io::QSF::VarTabDescBlock block;
    for (const char* name : {"A", "B", "A"}) {
        auto& entry = block.entries.emplace_back();
        entry.variable = block.entries.size() < 3 ? 40 : 41;
        entry.elementType = 10;
        entry.isVector = 2;  // only 1 is one
        entry.texts[KVAN::io::QSF::VarTabDescEntryBlock::PermanentName] = name;
    }
    const qsf2sql::VariableDescriptions descriptions(block, qsf2sql::g_builtInVariables, true, {});
    EXPECT_EQ(descriptions.find(40)->permanentName(), "A");
    EXPECT_EQ(descriptions.find("A"), descriptions.find(40));
    EXPECT_EQ(descriptions.find(42), nullptr);
    EXPECT_EQ(descriptions.getVariableType("A"), qsf2sql::VariableType::Double);
    EXPECT_EQ(descriptions.getVariableType("Digitizer_Summation"), qsf2sql::VariableType::NotDeclared);
    EXPECT_EQ(test::failureOf([&] { descriptions.getVariableType("a"); }), "Variable not supported.");
}

TEST(Windows1252, EveryByteIsACharacter) {
    std::string bytes(256, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    const std::string text = qsf2sql::windows1252ToUtf8(bytes);
    EXPECT_TRUE(utf8::is_valid(text.begin(), text.end()));
    EXPECT_EQ(utf8::distance(text.begin(), text.end()), 256);
    EXPECT_EQ(text.substr(0, 128), bytes.substr(0, 128));
    EXPECT_EQ(qsf2sql::windows1252ToUtf8("\x80\x8E\x99\x9D\x9F\xFF"), "\u20AC\u017D\u2122\xC2\x9D\u0178\u00FF");
}

}  // namespace
}  // namespace kvan::io
