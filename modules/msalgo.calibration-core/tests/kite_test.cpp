#include "transformators.h"

#include <calibration-core/interfaces/ICalibrationTransformatorKITE.h>

#include <iostream>

namespace kvan::calibration {

namespace {

using Kite1 = CalibrationPolynomialKITE1::Numbers;
using Kite2 = CalibrationPolynomialKITE2::Numbers;

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

TEST(Kite1, HalvesItsTimesOnTheWayDown) {
    const Kite1 parabola{.calibTimeRange = {5, 20}, .coefficients = {9, -6, 1}};  // turns at 3, which is not passed
    EXPECT_NEAR(kite1(parabola)->MassToRaw(1), 4, 1e-12);
}

TEST(Kite1, WhatHasNoInverseIsReported) {
    const std::pair<Kite1, double> cases[] = {
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
    for (const auto& [numbers, mass] : cases) {
        const auto law = kite1(numbers);
        Doubles many(200, mass);
        EXPECT_EQ(failureOf([&] { law->MassToRaw(many[0]); }), "runtime: Kite1: unable to invert polynomial.") << mass;
        EXPECT_EQ(failureOf([&] { law->MassesToRaws(many); }), g_failed);
    }
    EXPECT_EQ(kite1({})->RawToMass(1000), 0);

    const Kite1 lawless[] = {{.coefficients = {0, g_nan}},
                             {.coefficients = {INFINITY}},
                             {.coefficients = std::vector<double>(65, 1.0)},
                             {.parentMass = 1e308, .calibrationParentMass = 1e-11, .coefficients = {1}},
                             {.correctionTime = g_nan, .coefficients = {0, 1}},
                             {.calibTimeRange = {0, INFINITY}, .coefficients = {0, 1}}};
    for (const Kite1& numbers : lawless)
        EXPECT_EQ(failureOf([&] { kite1(numbers); }), "runtime: Kite1 InitData(): unexpected error.");
}

TEST(Kite1, IsAFacetAroundATimeAxis) {
    const Kite1 numbers{.calibTimeRange = {1, 9}, .coefficients = {0, 1}};
    const auto law = kite1(numbers);
    EXPECT_EQ(law->GetFunctionalTypeCode(), 7);
    const auto constants = law->GetFunctionalConstants();
    EXPECT_EQ(constants->GetFunctionalTypeCode(), 7);
    EXPECT_EQ(dynamic_cast<ICalibrationConstantsFunctionalTOF1&>(*constants).GetStoredC1(), 1e12);
    EXPECT_EQ(failureOf([&] { law->SetMeasurementModeInfo(nullptr); }),
              "runtime: CalibrationTransformatorKITE::SetMeasurementModeInfo: KITE transformator does not have "
              "measurement modes.");
    const auto kite = std::dynamic_pointer_cast<ICalibrationTransformatorKITE>(law);
    const char* const refusal = "runtime: Not implemented yet.";
    EXPECT_EQ(failureOf([&] { kite->getCurrentParentMass(); }), refusal);
    EXPECT_EQ(failureOf([&] { kite->getCurrentReferenceTime(); }), refusal);
    EXPECT_EQ(failureOf([&] { kite->getInterpolationMode(); }), refusal);
    EXPECT_EQ(failureOf([&] { kite->setCurrentParentMass(1, 2); }), refusal);
    EXPECT_EQ(failureOf([&] { kite->setInterpolationMode(1); }), refusal);
    EXPECT_EQ(failureOf([&] { law->monotonicMassRange(100); }),
              "runtime: monotonicMassRange() not yet implemented for this particular transformator.");

    EXPECT_TRUE(law->IsEqual(*kite1(numbers)));
    EXPECT_FALSE(law->IsEqual(*kite1({.calibTimeRange = {1, 9}, .coefficients = {0, 2}})));
    EXPECT_FALSE(law->IsEqual(*factory().createTransformatorKite(tof(0, 1e12, 0, 11, 0.5), numbers)));
    EXPECT_FALSE(law->IsEqual(*tof(0, 1e12, 0, 10, 0.5)));

    expectDump(
        law,
        {"CalibrationTransformatorKITE1[ ", "CalibrationPolynomialKITE1[ ", "\t\tCalibration parent mass = 0",
         "\t\tparent mass = 0", "\t\tPolynomial coefficients[0, 1]",
         "\t\tKITE coefficients[0, 1], kite time = 0, correction time  = 0, calib time range = [1, 9]\n\t\tidx range "
         "= [0, 0] ignore? 0"});
}

TransformatorPtr kite2(const Kite2& numbers) {
    return factory().createTransformatorKite2(tof(0, 1e12, 0, 10, 0.5), numbers);
}

/// h(4) and h(30): 16 and 900 are the masses.
void expectValues(const Kite2& numbers, double atFour, double atThirty) {
    const auto law = kite2(numbers);
    EXPECT_NEAR(law->MassToRaw(16), atFour + 3, 1e-12);
    EXPECT_NEAR(law->MassToRaw(-16), atFour + 3, 1e-12);
    EXPECT_NEAR(law->MassToRaw(900), atThirty + 3, 1e-10);
    EXPECT_NEAR(law->RawToMass(atFour + 3), 16, 1e-12);
    EXPECT_NEAR(law->DIndexToMass((atThirty + 3 - 10) / 0.5), 900, 1e-10);
}

TEST(Kite2, PreparesThePolynomialForTheParentMass) {
    // That of 100, scaled by u = 1/2 and v = 2: 20, 4, 0.25 on [2, 100].
    expectValues(kite2Between(0), 40, 365);
    // That of 900, by 3/2 and 2/3: 6, 6, 4.5 on [2, 20]; common to both is [2, 20].
    // Weight 3/8: 14.75, 4.75, 1.84375, and at 20 847.25 with the slope 78.5.
    expectValues(kite2Between(1), 63.25, 1632.25);
    // Weight 1/2: 13, 5, 2.375, and at 20 1063 with the slope 100.
    expectValues(kite2Between(2), 71, 2063);
    expectValues(kite2Between(3), 71, 2063);
    // Without a neighbour on the side of the parent mass: at the nearest parent.
    const auto at = [](double parentMass, int mode) {
        Kite2 numbers = kite2Between(mode);
        numbers.parentMass = parentMass;
        return numbers;
    };
    for (const double mass : {50.0, 100.0, 900.0, 1000.0})
        EXPECT_EQ(kite2(at(mass, 1))->MassToRaw(16), kite2(at(mass, 0))->MassToRaw(16)) << mass;
    const Kite2 tie = at(500, 0);
    Kite2 first = tie;
    first.parents.pop_back();
    EXPECT_EQ(kite2(tie)->MassToRaw(16), kite2(first)->MassToRaw(16));
    // Nearest to the upper one: by 13/5 and 13/15, weight 18/25.
    EXPECT_NEAR(kite2(at(676, 1))->MassToRaw(16), 0.28 * (26 + 16 + 40.0 / 13) + 0.72 * (7.8 + 24 + 48 * 15.0 / 13) + 3,
                1e-12);
    // VC0(20) = 1 + 0.5 * 20 in place of the offset.
    Kite2 offset = kite2Between(2);
    offset.vc0 = {1, 0.5};
    expectValues(offset, 69, 2061);
    offset.interpolationMode = 3;
    expectValues(offset, 71, 2063);
    // Nothing is scaled without a parent mass.
    expectValues(at(0, 0), 34, 580);
}

TEST(Kite2, ParentsWithoutACommonRangeAreReported) {
    Kite2 numbers = kite2Between(2);
    numbers.parents[1].argLow = 300;
    numbers.parents[1].argHigh = 400;
    testing::internal::CaptureStdout();
    expectValues(numbers, 71, 13 + 150 + 2137.5);  // on [2, 100] of the first
    EXPECT_NE(testing::internal::GetCapturedStdout().find(
                  "[WARN ] kvan.calibration_core.CalibrationPolynomialKITE2: Strange calibration. Can't determine a "
                  "common w range during interpolation. Using that of the first polynomial at M=1.000000e+02\n"),
              std::string::npos);
    numbers.parents[1].argHigh = 300;  // no range at all
    expectValues(numbers, 71, 13 + 150 + 2137.5);
}

TEST(Kite2, GlobalPolynomialsStandBetweenMassAndSquare) {
    Kite2 numbers = kite2Between(0);
    numbers.global = {{-0.16, 1.01, 0}, 0, 20, 0};  // g(16) = 16, g(20) = 20.04, and straight on
    const auto law = kite2(numbers);
    EXPECT_NEAR(law->MassToRaw(16), 43, 1e-12);
    EXPECT_NEAR(law->RawToMass(43), 16, 1e-12);
    EXPECT_NEAR(law->RawToMass(368), 20 + 879.96 / 1.01, 1e-10);  // within 9 of 900
}

TEST(Kite2, WhatMakesNoLawOrHasNoInverseIsReported) {
    const auto with = [](CCalibPolynomial parent, CCalibPolynomial global = {{0, 1}, 0, 0, 0}) {
        return Kite2{.ignoreIndexBounds = true, .parents = {parent}, .global = global};
    };
    constexpr double huge = 1e308;
    const std::string init = "runtime: Kite2 InitData(): unexpected error.";
    const std::string extrema = "runtime: Polynomial has local extrema inside boundaries.";
    const std::string global = "runtime: Bad global-poly coefficients.";
    Kite2 unordered = kite2Between(1);
    std::swap(unordered.parents[0].parentMass, unordered.parents[1].parentMass);
    unordered.parentMass = 1000;
    const std::pair<Kite2, std::string> lawless[] = {
        {{}, "argument: CalibrationTransformatorFactory::createTransformatorKite2: can't create kite2Polynomial"},
        {with({{0, g_nan}, 0, 9}), init},
        {with({{huge, huge, INFINITY}, 0, 9}), init},
        {with({std::vector<double>(65, 1.0), 0, 9}), init},
        {with({{0, 1, huge, 1e-300}, 0, 9}), init},  // no companion matrix
        {with({{0, 1}, 0, 9}, {{g_nan, 1}, 0, 9}), init},
        {with({{0, 20, -1}, 0, 11}), extrema},
        {with({{0, 1}, 0, 9}, {{1}, 0, 9}), global},
        {with({{0, 1}, 0, 9}, {}), global},
        {unordered, "runtime: Parent mass M2 must be greater than M1."},
    };
    for (const auto& [numbers, text] : lawless)
        EXPECT_EQ(failureOf([&, &sample = numbers] { kite2(sample); }), text);

    const std::pair<Kite2, double> cases[] = {
        {with({{}, 0, 9}), 5},              // empty
        {with({{7}, 0, 9}), 5},             // constant
        {with({{0, 20, -1}, 0, 10}), 101},  // level beyond the range
        {with({{0, -1}, 0, 9}), 5},         // falls
        {with({{50, 1}, 0, 9}), 10},        // below w = 0
        {with({{0, 1}, 0, 9}), g_nan},
        {with({{0, 1}, 0, 9}, {{0, -1}, 0, 9}), 100},   // g falls
        {with({{0, 1}, 0, 9}, {{500, 1}, 0, 9}), 100},  // g is farther away than e
    };
    for (const auto& [numbers, raw] : cases) {
        const auto law = kite2(numbers);
        Doubles many(200, raw);
        EXPECT_EQ(failureOf([&] { law->RawToMass(many[0]); }), "runtime: Kite2 RawToMass: unable to invert polynomial.")
            << raw;
        EXPECT_EQ(failureOf([&] { law->RawsToMasses(many); }), g_failed);
    }
    // A range in reverse order, and an extremum at its end, bound nothing.
    EXPECT_EQ(kite2(with({{0, 20, -1}, 11, 0}))->RawToMass(19), 1);
    EXPECT_EQ(kite2(with({{0, 20, -1}, 0, 10}))->RawToMass(19), 1);
    EXPECT_NEAR(kite2(with({{100, -20, 1}, 10, 20}))->RawToMass(16), 196, 1e-12);
    // Beyond the steps that are kept, and all the way up.
    EXPECT_NEAR(kite2(with({{0, 1}, 0, 9}))->RawToMass(1e140), 1e280, 1e266);
}

TEST(Kite2, IsAFacetThatCanBeAdapted) {
    const auto law = kite2(kite2Between(0));
    EXPECT_EQ(law->GetFunctionalTypeCode(), 10);
    EXPECT_EQ(
        failureOf([&] { law->GetFunctionalConstants(); }),
        "runtime: GetFunctionalConstants(): the Kite2 transformator has no dedicated functional-constants object.");
    EXPECT_EQ(failureOf([&] { law->SetFunctionalConstants(nullptr); }),
              "runtime: The Kite2 transformator has no dedicated functional-constants object.");
    EXPECT_EQ(failureOf([&] { law->SetMeasurementModeInfo(nullptr); }),
              "runtime: Kite2 transformator does not have measurement modes.");
    const auto kite = std::dynamic_pointer_cast<ICalibrationTransformatorKITE>(law);
    EXPECT_EQ(failureOf([&] { kite->DumpData(std::cout); }),
              "runtime: CalibrationTransformatorKITE2::DumpData: the transformator is not serializable");

    const auto copy = cloneObject(law);
    kite->setInterpolationMode(2);
    EXPECT_TRUE(law->IsEqual(*kite2(kite2Between(2))));
    EXPECT_TRUE(copy->IsEqual(*kite2(kite2Between(0))));
    EXPECT_NEAR(law->MassToRaw(16), 74, 1e-12);
    kite->setCurrentParentMass(100, 5);
    EXPECT_EQ(law->MassToRaw(16), 34 + 5);
    EXPECT_EQ(kite->getCurrentParentMass(), 100);
    EXPECT_EQ(kite->getCurrentReferenceTime(), 5);
    EXPECT_EQ(kite->getInterpolationMode(), 2);
    EXPECT_EQ(failureOf([&] { kite->setCurrentParentMass(400, g_nan); }),
              "runtime: Kite2 InitData(): unexpected error.");
    EXPECT_EQ(law->MassToRaw(16), 34 + 5);

    EXPECT_EQ(law->usableMassRange(0, 0.1), std::make_pair(0.0, HUGE_VAL));
    EXPECT_EQ(failureOf([&] { law->monotonicMassRange(-1); }), "runtime: m0 argument out of expected range.");
    Kite2 global = kite2Between(0);
    global.global.coefficients = {0, 1.5};
    EXPECT_EQ(failureOf([&] { kite2(global)->usableMassRange(500, 0.1); }),
              "runtime: Kite2: monotonicMassRange() available only for disabled global polynomial.");

    testing::internal::CaptureStdout();
    Kite2 bounded = kite2Between(0);
    bounded.ignoreIndexBounds = false;
    kite2(bounded)->SetCalibMode(3);
    const std::string log = testing::internal::GetCapturedStdout();
    EXPECT_NE(log.find("[WARN ] kvan.calibration_core.Kite2Transformator: InitData(): case 'IgnoreIndexBounds == "
                       "false'. Should not occur in actual data. This case was never handled well.\n"),
              std::string::npos);
    EXPECT_NE(log.find("[WARN ] kvan.calibration_core.Kite2Transformator: Kite2 CalibMode != 0 encountered. Entering "
                       "possibly inconsistent and untested code paths.\n"),
              std::string::npos);

    expectDump(law, {"\tCalibrationPolynomialKITE2[ ", "\t\tInterpolation mode = 2", "\t\tMeasured parent mass = 0",
                     "\t\tGlobal polynomial[ ", "\t\tMeasured global polynomial[ ", "\t\tParent polynomials[ ",
                     "\t\t\tCalibrationPolynomialSimple[ \n\t\t\t\tparent mass = 900\n\t\t\t\tArg range = [3, "
                     "30]\n\t\t\t\tcoefficients = (9, 6, 3)\n\t\t\t]\n",
                     "\t\tKITE2 polynomial[ ", "\t\t] ", "\t\tVC0 coefficients[], Arg range = [1, 50]"});
}

}  // namespace

}  // namespace kvan::calibration
