#include "transformators.h"

#include <calibration-core/interfaces/MeasurementModeInfo.h>
#include <calibration-core/temperaturecompensation/CalibrationTemperatureCompensator.h>
#include <calibration-core/temperaturecompensation/TemperatureCompensationInfo.h>

namespace kvan::calibration {

namespace {

using Compensation = ICalibrationConstantsFunctionalTemperatureCompensation;
using TemperatureCompensation::addTemperatureCompensationInfo;
using TemperatureCompensation::CalibrationTemperatureCompensator;

std::shared_ptr<Compensation> compensationOf(const TransformatorPtr& transformator) {
    return std::dynamic_pointer_cast<Compensation>(transformator->GetFunctionalConstants());
}

TransformatorPtr compensatedTof2(const Doubles& temperatures) {
    CalibrationConstantsFunctionalTOF2TemperatureCompensation law;
    law.SetMeasuredTemperatures(temperatures);
    return make(law, CalibrationConstantsPhysicalTOF(10, 0.5));
}

CalibrationTemperatureCompensator compensator(const TransformatorPtr& reference, const Doubles& temperatures,
                                              const Doubles& factors) {
    CalibrationTemperatureCompensator result;
    result.SetReferenceTransformator(reference);
    result.SetReferenceTemperatures(temperatures);
    result.SetCorrectionFactors(factors);
    return result;
}

/// (23 - 25) * 1e5 + (27 - 26) * -3e5 makes -5e5 parts per million, so k is 0.5.
TEST(Compensator, DerivesTheLawFromTheReference) {
    const auto reference = tof(8, 2.5e11, 0.5, 99, 7);
    reference->SetMeasurementModeInfo(std::make_shared<Transformation::MeasurementModeInfo>(1, 2, 3, 0));
    const auto measured = addTemperatureCompensationInfo(tof(1, 1, 0, 10, 0.5), {23, 27}, {});
    const auto result = compensator(reference, {25, 26}, {1e5, -3e5}).Compensate(measured);
    EXPECT_EQ(result->MassToRaw(2), 2.0 * 1.0 + 4.0 + 8);  // C1 = 8, C2 = 1, C0 = 8
    EXPECT_EQ(result->IndexToRaw(2), 11);
    EXPECT_EQ(result->GetMeasurementModeInfo(), nullptr);
    EXPECT_EQ(compensationOf(result)->GetCompensationMode(), TEMPERATURE_COMPENSATION_ADAPTED_SEVERAL);
    EXPECT_TRUE(compensationOf(result)->IsAdapted());
    EXPECT_EQ(compensationOf(measured)->GetCompensationMode(), TEMPERATURE_COMPENSATION_MEASURED);
    EXPECT_NE(reference->GetMeasurementModeInfo(), nullptr);

    const auto reference2 = tof2(8, 2.5e11, 0.5, 0.25, 4, 99, 7);
    const auto result2 = compensator(reference2, {25}, {2.5e5}).Compensate(compensatedTof2({23}));
    // C1 = 8, C2 = 1, C3 = 0.5, shift 4: t = 2 at mass 0, with a rounded root of 8.
    EXPECT_NEAR(result2->MassToRaw(0), 0.5 * 8 + 4 + std::sqrt(32.0) + 8, 1e-14);
    EXPECT_EQ(compensationOf(result2)->GetCompensationMode(), TEMPERATURE_COMPENSATION_ADAPTED_ONE);
}

TEST(Compensator, WithoutTemperaturesGivesTheReference) {
    const auto reference = tof(8, 2.5e11, 0.5, 99, 7);
    const auto plain = compensator(reference, {25}, {1e5});
    EXPECT_TRUE(plain.Compensate(linear(1, 2))->IsEqual(*reference));
    EXPECT_EQ(plain.Compensate(nullptr), nullptr);
    EXPECT_EQ(CalibrationTemperatureCompensator().Compensate(reference), nullptr);
    const auto measured = addTemperatureCompensationInfo(tof(1, 1, 0, 99, 7), {23}, {});
    EXPECT_TRUE(compensator(reference, {25}, {0}).Compensate(measured)->IsEqual(*reference));
    EXPECT_NE(dumpOf(plain).find("reference temperatures[ 25 ]"), std::string::npos);
}

TEST(Compensator, VectorsOfOtherSizesKeepTheLawOrFail) {
    const auto measured = addTemperatureCompensationInfo(tof(8, 2.5e11, 0.5, 10, 0.5), {23}, {});
    const auto kept = compensator(tof(1, 1, 1, 99, 7), {25, 26}, {0}).Compensate(measured);
    EXPECT_EQ(kept->RawToMass(24), 16);
    EXPECT_EQ(compensationOf(kept)->GetCompensationMode(), TEMPERATURE_COMPENSATION_ADAPTED_ONE);

    const std::string tof1 = "CalibrationConstantsFunctionalTOF1TemperatureCompensation::AdaptToReference: ";
    const std::string tof2Law = "CalibrationConstantsFunctionalTOF2TemperatureCompensation::AdaptToReference: ";
    const std::string space = "argument: kvan::calibration::Transformation::";
    const auto failure = [](const TransformatorPtr& reference, const TransformatorPtr& transformator) {
        return failureOf([&] { compensator(reference, {25, 26}, {0}).Compensate(transformator); });
    };
    const auto none = addTemperatureCompensationInfo(tof(8, 2.5e11, 0.5, 10, 0.5), {}, {});
    const auto reference2 = tof2(1, 1, 1, 0, 0, 1, 1);
    EXPECT_EQ(failure(tof(1, 1, 1, 1, 1), none), "runtime: " + tof1 + "empty temperatures vector");
    EXPECT_EQ(failure(reference2, measured),
              space + tof1 + "referenceConstants is not of type ICalibrationConstantsFunctionalTOF1");
    EXPECT_EQ(failure(reference2, compensatedTof2({})), "runtime: " + tof2Law + "Temperature vector is empty.");
    EXPECT_EQ(failure(linear(1, 1), compensatedTof2({1})),
              space + tof2Law + " is not of type ICalibrationConstantsFunctionalTOF1");
    EXPECT_EQ(failure(reference2, compensatedTof2({1})),
              "runtime: " + tof2Law +
                  "Parameter vectors have inappropriate size: \t\t\t\t\tm_measTemp.size() = 1, "
                  "referenceTemperatures.size() = 2, temperatureFactors.size() = 1");
    EXPECT_EQ(failureOf([&] { addTemperatureCompensationInfo(measured, {}, {}); }),
              "runtime: Already contains temp-comp info.");
    const auto kite2 = factory().createTransformatorKite2(tof(0, 1e12, 0, 10, 0.5),
                                                          {.parents = {{{0, 1}}}, .global = {{0, 1}}});  // no constants
    for (const auto& other : {reference2, kite2})
        EXPECT_EQ(failureOf([&] { addTemperatureCompensationInfo(other, {}, {}); }),
                  "runtime: Non-supported strategy.");
    EXPECT_TRUE(compensator(reference2, {25}, {0}).Compensate(kite2)->IsEqual(*reference2));
}

TEST(CompensatedConstants, AreEqualByLawAndData) {
    const auto plain = tof(8, 2.5e11, 0.5, 10, 0.5);
    const auto one = addTemperatureCompensationInfo(plain, {23}, {1});
    EXPECT_TRUE(one->IsEqual(*plain) && plain->IsEqual(*one));
    EXPECT_TRUE(one->IsEqual(*addTemperatureCompensationInfo(plain, {23}, {1})));
    EXPECT_FALSE(one->IsEqual(*addTemperatureCompensationInfo(plain, {24}, {1})));
    EXPECT_FALSE(one->IsEqual(*addTemperatureCompensationInfo(plain, {23}, {})));
    EXPECT_EQ(dumpOf(*one->GetFunctionalConstants())
                  .find("\tCalibrationConstantsFunctionalTOF1TemperatureCompensation[ compensation mode = 2, "
                        "temperatures: (23), correction factors: (1)"),
              0U);
}

}  // namespace

}  // namespace kvan::calibration
