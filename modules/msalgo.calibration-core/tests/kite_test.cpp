#include "calibration-core/interfaces/ICalibrationTransformatorKITE.h"
#include "transformators.h"

#include <cmath>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

namespace kvan::calibration {

namespace {

using Kite1 = Constants::CalibrationPolynomialKITE1::Numbers;

const char* const g_notInvertible = "runtime_error: Kite1: unable to invert polynomial.";
const char* const g_noLaw = "runtime_error: Kite1 InitData(): unexpected error.";
constexpr double g_nan = std::numeric_limits<double>::quiet_NaN();

/// raw = index * 0.5 + 10.
TransformatorPtr kite1(const Kite1& numbers) {
    return factory().createTransformatorKite(tof(0, 1e12, 0, 10, 0.5), numbers);
}

TEST(Kite1, AdaptsToTheParentMass) {
    Kite1 numbers{.parentMass = 400,
                  .correctionTime = 3,
                  .calibrationParentMass = 100,
                  .calibTimeRange = {1, 50},
                  .coefficients = {1, 0.5, 0.25, 2}};
    // rho = 4: the coefficients are 4 * 1, 2 * 0.5, 0.25 and 2 / 2; at t = 2 the mass is 4 + 2 + 1 + 8.
    EXPECT_EQ(kite1(numbers)->RawToMass(5), 15);
    EXPECT_EQ(kite1(numbers)->IndexToMass(-10), 15);
    EXPECT_NEAR(kite1(numbers)->MassToRaw(15), 5, 1e-14);
    // Without one of the two masses: 1 + 1 + 1 + 16.
    for (const double none : {0.0, 1e-12, -5.0, g_nan}) {
        numbers.calibrationParentMass = none;
        EXPECT_EQ(kite1(numbers)->RawToMass(5), 19);
    }
}

TEST(Kite1, SearchesBeyondTheCalibratedTimes) {
    const struct {
        double low, high, mass, raw;  // mass = raw^2
    } cases[] = {
        {10, 20, 225, 15},   {10, 20, 1e6, 1e3}, {10, 20, 1, 1},       {10, 20, 0, 0},     {20, 10, 225, 15},
        {20, 10, 1e6, 1e3},  {20, 10, 1, 1},     {0, 0, 1e30, 1e15},   {0, 0, 1e-8, 1e-4}, {-50, -40, 1e6, 1e3},
        {1e9, 2e9, 16.0, 4}, {10, 10, 225, 15},  {10, 20, 1e38, 1e19},
    };
    for (const auto& sample : cases) {
        const auto law = kite1({.calibTimeRange = {sample.low, sample.high}, .coefficients = {0, 0, 1}});
        EXPECT_NEAR(law->MassToRaw(sample.mass), sample.raw, 1e-12 * sample.raw) << sample.low << ' ' << sample.mass;
    }
}

TEST(Kite1, WhatHasNoInverseIsTold) {
    const struct {
        Kite1 numbers;
        double mass;
    } cases[] = {
        {{.calibTimeRange = {1, 9}}, 100},                                        // empty
        {{.calibTimeRange = {1, 9}, .coefficients = {5}}, 100},                   // constant
        {{.calibTimeRange = {1, 9}, .coefficients = {0, 20, -1}}, 101},           // turns at 10, mass 100
        {{.calibTimeRange = {1, 9}, .coefficients = {0, -1}}, 100},               // falls
        {{.calibTimeRange = {1, 9}, .coefficients = {50, 1}}, 10},                // beyond time 0
        {{.calibTimeRange = {1, 9}, .coefficients = {0, 1}}, g_nan},              // no mass
        {{.calibTimeRange = {1, 9}, .coefficients = {0, 1}}, 1e300},              // beyond all times
        {{.calibTimeRange = {-1e15, -1e14}, .coefficients = {0, 1}}, 100},        // too far away
        {{.calibTimeRange = {1, 9}, .coefficients = {1e308, 1e308, 1e308}}, 1e3}  // infinite at once
    };
    for (const auto& sample : cases) {
        const auto law = kite1(sample.numbers);
        EXPECT_EQ(failureOf([&] { law->MassToRaw(sample.mass); }), g_notInvertible) << sample.mass;
        Doubles many(200, sample.mass);
        EXPECT_EQ(failureOf([&] { law->MassesToRaws(many); }),
                  "runtime_error: Transformation failed, most likely due to bad calibration constants.");
    }
    EXPECT_EQ(kite1({})->RawToMass(1000), 0);

    const double huge = std::numeric_limits<double>::max();
    const Kite1 lawless[] = {{.coefficients = {0, g_nan}},
                             {.coefficients = {INFINITY}},
                             {.parentMass = huge, .calibrationParentMass = 1e-11, .coefficients = {1}},
                             {.correctionTime = g_nan, .coefficients = {0, 1}},
                             {.calibTimeRange = {0, INFINITY}, .coefficients = {0, 1}}};
    for (const Kite1& numbers : lawless)
        EXPECT_EQ(failureOf([&] { kite1(numbers); }), g_noLaw);
}

TEST(Kite1, IsAFacetAroundATimeAxis) {
    const Kite1 numbers{.calibTimeRange = {1, 9}, .coefficients = {0, 1}};
    const auto law = kite1(numbers);
    EXPECT_EQ(law->GetFunctionalTypeCode(), 7);
    const auto constants = law->GetFunctionalConstants();
    EXPECT_EQ(constants->GetFunctionalTypeCode(), 7);
    EXPECT_EQ(dynamic_cast<ICalibrationConstantsFunctionalTOF1&>(*constants).GetStoredC1(), 1e12);
    EXPECT_EQ(failureOf([&] { law->SetMeasurementModeInfo(nullptr); }),
              "runtime_error: CalibrationTransformatorKITE::SetMeasurementModeInfo: KITE transformator does not have "
              "measurement modes.");
    const auto kite = std::dynamic_pointer_cast<ICalibrationTransformatorKITE>(law);
    const char* const refusal = "runtime_error: Not implemented yet.";
    EXPECT_EQ(failureOf([&] { kite->getCurrentParentMass(); }), refusal);
    EXPECT_EQ(failureOf([&] { kite->getCurrentReferenceTime(); }), refusal);
    EXPECT_EQ(failureOf([&] { kite->getInterpolationMode(); }), refusal);
    EXPECT_EQ(failureOf([&] { kite->setCurrentParentMass(1, 2); }), refusal);
    EXPECT_EQ(failureOf([&] { kite->setInterpolationMode(1); }), refusal);
    EXPECT_EQ(failureOf([&] { law->monotonicMassRange(100); }),
              "runtime_error: monotonicMassRange() not yet implemented for this particular transformator.");

    EXPECT_TRUE(law->IsEqual(*kite1(numbers)));
    EXPECT_FALSE(law->IsEqual(*kite1({.calibTimeRange = {1, 9}, .coefficients = {0, 2}})));
    EXPECT_FALSE(law->IsEqual(*factory().createTransformatorKite(tof(0, 1e12, 0, 11, 0.5), numbers)));
    EXPECT_FALSE(law->IsEqual(*tof(0, 1e12, 0, 10, 0.5)));

    std::ostringstream dump;
    law->Dump(dump);
    for (const char* words :
         {"CalibrationTransformatorKITE1[ ", "CalibrationPolynomialKITE1[ ", "\t\tCalibration parent mass = 0",
          "\t\tparent mass = 0", "\t\tPolynomial coefficients[0, 1]",
          "\t\tKITE coefficients[0, 1], kite time = 0, "
          "correction time  = 0, calib time range = [1, 9]\n\t\tidx range = [0, 0] ignore? 0"})
        EXPECT_NE(dump.str().find(words), std::string::npos) << words << dump.str();
}

}  // namespace

}  // namespace kvan::calibration
