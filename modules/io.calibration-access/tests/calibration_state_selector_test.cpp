#include "calibration_file.h"

#include <calibration-access/calibration_state_selector.h>

namespace kvan::io::calibration {
namespace {

class Selector : public CalibrationFile {
protected:
    Selector() {
        sql("INSERT INTO CalibrationState VALUES (1,'gap','a',1,1,1), (2,'whole','a',1,NULL,NULL),"
            "(3,'positive','b',0,1,NULL), (4,'both','it''s',0,1,2), (5,'mapped twice','a',1,NULL,NULL),"
            "(6,'whole again','b',1,NULL,NULL);"
            "INSERT INTO FrameMzCalibrationMapping VALUES (1,1,1),(1,3,1), (2,1,1),(2,2,1),(2,3,1), (6,3,1),(6,2,1),"
            "(6,1,1), (5,0,1),(5,1,1),(5,2,1),(5,3,1);"
            "INSERT INTO TimsCalibrationMapping VALUES (6,1),(6,2),(6,3), (4,1),(4,3)");
        m_database.open(file().string());
    }

    std::string choiceOf(const CalibrationStateSelector& selector) {
        return selector.findUUID(m_database).value_or("none");
    }

    cppsqlite::CppSQLite3DB m_database;
};

TEST_F(Selector, TakesTheFirstStateThatFitsTheAnalysis) {
    using State = CalibrationStateSelector;
    const std::pair<State, const char*> cases[] = {
        {{.frameCount = 3, .hasPositive = true}, "whole"},
        {{.descending = true, .frameCount = 3, .hasPositive = true}, "whole again"},
        {{.source = "b", .frameCount = 3, .hasPositive = true}, "positive"},
        {{.source = "b", .frameCount = 3, .hasPositive = true, .hasNegative = true}, "whole again"},
        {{.frameCount = 2, .hasPositive = true}, "positive"},
        {{.frameCount = 2, .hasPositive = true, .hasNegative = true}, "both"},
        {{.frameCount = 2, .hasNegative = true}, "both"},
        {{.source = "it's", .frameCount = 0, .hasPositive = true}, "both"},
        {{.source = "a", .frameCount = 2, .hasPositive = true}, "none"},
        {{.source = "' OR 1=1 --", .frameCount = 3, .hasPositive = true}, "none"},
        {{.frameCount = 3, .hasPositive = true, .requireTims = true}, "whole again"},
        {{.frameCount = 2, .hasPositive = true, .requireTims = true}, "none"},
        {{.unconditional = true}, "gap"},
        {{.descending = true, .source = "it's", .unconditional = true}, "both"},
        {{.key = "gap", .source = "nobody's", .unconditional = true}, "gap"},
    };
    for (const auto& [selector, key] : cases)
        EXPECT_EQ(choiceOf(selector), key) << &selector - &cases[0].first;
    sql("INSERT INTO CalibrationState VALUES (7,'''; DROP TABLE CalibrationState; --','a',0,1,1)");
    EXPECT_EQ(choiceOf({.key = "'; DROP TABLE CalibrationState; --"}), "'; DROP TABLE CalibrationState; --");
}

TEST_F(Selector, TellsWhyThereIsNoKey) {
    const std::string fitting =
        "SELECT c.Key FROM CalibrationState c WHERE (c.Source='x''y' AND (c.HasFrameCalibrators=1 AND (SELECT "
        "MAX(FrameId) FROM FrameMzCalibrationMapping mp WHERE mp.CalibrationState=c.Id)=7 AND (SELECT COUNT(*) FROM "
        "FrameMzCalibrationMapping mp WHERE mp.CalibrationState=c.Id)=7) OR (c.HasFrameCalibrators=0 AND "
        "c.PositiveReferenceCalibratorId IS NOT NULL AND c.NegativeReferenceCalibratorId IS NOT NULL) ) AND (SELECT "
        "MAX(FrameId) FROM TimsCalibrationMapping WHERE TimsCalibrationMapping.CalibrationState=c.Id)=7 AND (SELECT "
        "COUNT(*) FROM TimsCalibrationMapping WHERE TimsCalibrationMapping.CalibrationState=c.Id)=7 AND "
        "c.Source='x''y' ORDER BY Id DESC LIMIT 1";
    const std::pair<CalibrationStateSelector, std::string> cases[] = {
        {{}, "Failed to set Analysis Info frame count before calling getUUID"},
        {{.frameCount = 3}, "Failed to set Analysis Info polarity before calling getUUID"},
        {{.key = "it's"}, "Calibration state [it's] does not exist"},
        {{.descending = true,
          .source = "x'y",
          .frameCount = 7,
          .hasPositive = true,
          .hasNegative = true,
          .requireTims = true},
         "Query result unexpectedly empty: " + fitting},
    };
    for (const auto& [selector, text] : cases)
        EXPECT_EQ(failureOf([&, &wanted = selector] { wanted.getUUID(m_database); }), text);
    sql("UPDATE CalibrationState SET Key = NULL");
    EXPECT_EQ(failureOf([&] { choiceOf({.unconditional = true}); }),
              "Query result unexpectedly NULL: SELECT c.Key FROM CalibrationState c WHERE 1 ORDER BY Id ASC LIMIT 1");
}

}  // namespace
}  // namespace kvan::io::calibration
