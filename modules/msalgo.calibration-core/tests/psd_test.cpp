#include "transformators.h"

#include <calibration-core/interfaces/ICalibrationTransformatorPSD.h>

namespace kvan::calibration {

namespace {

/// Apparent mass = raw^2, raw = index * 0.5 + 10.
TransformatorPtr psd(const CalibrationPolynomialPSDFAST::Numbers& numbers) {
    return factory().createTransformatorPsd(tof(0, 1e12, 0, 10, 0.5),
                                            std::make_shared<CalibrationPolynomialPSDFAST>(numbers));
}

/// By which the coefficients of `psdNumbers` are multiplied.
constexpr double g_factor = 2.5015;

TEST(Psd, GivesTheValuesWorkedOutByHand) {
    const struct {
        double minArg, maxArg, apparent, mass;
    } cases[] = {
        {4, 100, 16, 36},        {4, 100, -16, -36}, {4, 100, 100, 207},
        {4, 100, 110, 227.25},                      // slope (0.5 + 4 * 10) / 20
        {4, 100, -110, -227.25}, {4, 100, 0, 2.5},  // slope (0.5 + 4 * 2) / 4
        {100, 4, 144, 296},      {100, 4, 0, 2},    // no range: everywhere
        {0, 100, 0, 2},          {-5, 100, 1, 4.5},  {-9, -5, 144, 296},
    };
    for (const auto& sample : cases) {
        const auto law = psd(psdNumbers(sample.minArg, sample.maxArg));
        const auto facet = std::dynamic_pointer_cast<ICalibrationTransformatorPSD>(law);
        EXPECT_NEAR(facet->ApparentMassToMass(sample.apparent), sample.mass * g_factor, 1e-12) << sample.apparent;
        EXPECT_NEAR(facet->MassToApparentMass(sample.mass * g_factor), sample.apparent, 1e-9) << sample.apparent;
    }
    const auto law = psd(psdNumbers(4, 100));
    EXPECT_NEAR(law->RawToMass(4), 36 * g_factor, 1e-12);
    EXPECT_NEAR(law->IndexToMass(-12), 36 * g_factor, 1e-12);
    EXPECT_NEAR(law->MassToRaw(36 * g_factor), 4, 1e-14);
    EXPECT_EQ(law->MassToIndex(36 * g_factor), -12 + 1) << "-11.5 is truncated";
    Doubles many(200, 0.0);
    law->RawsToMasses(many);
    EXPECT_EQ(many, Doubles(200, law->RawToMass(0)));
}

TEST(Psd, WhatMakesNoLawOrHasNoInverseIsReported) {
    const auto with = [](std::vector<double> spc, double minArg = 4, double maxArg = 100) {
        auto numbers = psdNumbers(minArg, maxArg);
        numbers.spc = std::move(spc);
        numbers.ocp.resize(numbers.spc.size());
        return numbers;
    };
    const std::pair<Doubles, double> cases[] = {{{}, 100}, {{0}, 100}, {{0, 0, 1}, g_nan}, {{0, 0, 1}, 1e11}};
    for (const auto& [spc, mass] : cases)
        EXPECT_EQ(failureOf([law = psd(with(spc)), at = mass] { law->MassToRaw(at); }),
                  "runtime: PSD: unable to invert polynomial.")
            << mass;
    EXPECT_EQ(psd(with({}))->RawToMass(100), 0);

    auto withoutMass = psdNumbers(4, 100);
    withoutMass.calibrationMass = 0;
    for (const auto& lawless :
         {with({g_nan}), with({1e308}), with(Doubles(65, 1.0)), with({1}, 0, g_infinity), withoutMass})
        EXPECT_EQ(failureOf([&] { psd(lawless); }), "runtime: PSD InitData(): unexpected error.") << lawless.spc[0];

    auto uneven = psdNumbers(4, 100);
    uneven.ocp.pop_back();
    EXPECT_EQ(failureOf([&] { psd(uneven); }),
              "argument: CalibrationPolynomialPSDFAST::ComputePolynomialCoefficients: Number of SPC and OCP "
              "coefficients differ");
}

TEST(Psd, IsAFacetAroundApparentMasses) {
    const auto law = psd(psdNumbers(4, 100));
    EXPECT_EQ(law->GetFunctionalTypeCode(), 6);
    EXPECT_EQ(law->GetFunctionalConstants()->GetFunctionalTypeCode(), 6);
    EXPECT_EQ(failureOf([&] { law->SetMeasurementModeInfo(nullptr); }),
              "runtime: CalibrationTransformatorPSD::SetMeasurementModeInfo: PSD transformator does not have "
              "measurement modes.");
    EXPECT_TRUE(law->IsEqual(*psd(psdNumbers(4, 100))));
    EXPECT_FALSE(law->IsEqual(*psd(psdNumbers(4, 99))));

    const auto plain = factory().createTransformatorPsd(tof(0, 1e12, 0, 10, 0.5), nullptr);
    EXPECT_EQ(plain->RawToMass(4), 16);
    EXPECT_EQ(plain->MassToRaw(16), 4);
    EXPECT_FALSE(plain->IsEqual(*law) || law->IsEqual(*plain));

    expectDump(
        law,
        {"CalibrationTransformatorPSD[ ",
         "\t calibMode = 0\t minIndex = 4, maxIndex = 100\t minAppMass = 4, maxAppMass = 100\t minAppMassValue = "
         "27.5165, maxAppMassValue = 517.811\t dLowDeriv = 5.31569, dHighDeriv = 5.06554\tPolynomial "
         "coefficients[5.003, 1.25075, 5.003]",
         "CalibrationPolynomialPSDFAST[ , parent mass = 400, USegment = 2.5\n\t\tCalibration mass = 100\n\t\tURefFull "
         "= 20\n\t\tSPC coefficients[0.5, 0.25, 2]\n\t\tOCP coefficients[0.5, 0.01, 0.0002]\n\t\tPolynomial "
         "coefficients[5.003, 1.25075, 5.003]\n\t\tminArg = 4, maxArg = 100"});
}

}  // namespace

}  // namespace kvan::calibration
