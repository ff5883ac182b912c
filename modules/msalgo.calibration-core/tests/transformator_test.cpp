#include "transformators.h"

#include <calibration-core/interfaces/MeasurementModeInfo.h>

namespace kvan::calibration {

namespace {

using Transformation::MeasurementModeInfo;

TEST(Transformator, ConstantsGoInAndComeOutAsCopies) {
    const auto transformator = tof(8, 2.5e11, 0, 10, 0.5);
    const auto functional =
        std::dynamic_pointer_cast<CalibrationConstantsFunctionalTOF1>(transformator->GetFunctionalConstants());
    functional->SetC1(16);
    EXPECT_EQ(functional->GetStoredC1(), 6.25e10);
    EXPECT_EQ(transformator->RawToMass(20), 36);
    transformator->SetFunctionalConstants(functional);
    functional->SetC1(1);
    EXPECT_EQ(transformator->RawToMass(20), 9);
    transformator->SetFunctionalConstants(nullptr);
    transformator->SetPhysicalConstants(nullptr);
    EXPECT_EQ(transformator->IndexToMass(20), 9);

    const auto clone = std::dynamic_pointer_cast<ICalibrationTransformator>(transformator->Clone());
    clone->SetIndexOffset(1);
    clone->SetCalibMode(3);
    clone->AdaptRawStart(8);
    EXPECT_EQ(transformator->GetIndexOffset(), 0.0);
    EXPECT_EQ(transformator->GetCalibMode(), 0);
    EXPECT_EQ(transformator->IndexToRaw(0), 10);
}

TEST(Transformator, ConstantsThatDoNotFitAreHeldButNotUsed) {
    const auto transformator = tof(8, 2.5e11, 0.5, 10, 0.5);
    EXPECT_EQ(failureOf([&] {
                  transformator->SetFunctionalConstants(std::make_shared<CalibrationConstantsFunctionalLinear>());
              }),
              "argument: kvan::calibration::Transformation::RMQuadratic::UpdateFunctionalConstants(const "
              "ICalibrationConstantsFunctionalPtr funConsts):\n\t\t\t\t\t\t\t\t\t\t\t\t\tfunConsts is not of type "
              "ICalibrationConstantsFunctionalComputationQuadratic.");
    EXPECT_EQ(transformator->RawToMass(24), 16);
    EXPECT_EQ(transformator->GetFunctionalTypeCode(), 4);

    const auto checked = ftms(0, 0, 1, 100, 50, 11);
    const double raw = checked->IndexToRaw(1);
    EXPECT_NE(raw, 20);
    EXPECT_NE(failureOf([&] {
                  checked->SetPhysicalConstants(std::make_shared<CalibrationConstantsPhysicalTOF>(10, 10));
              }).find("FTMSIndexChecker::UpdatePhysicalConstants("),
              std::string::npos);
    EXPECT_EQ(checked->IndexToRaw(1), raw);
}

TEST(Transformator, AModeIsRemovedByNull) {
    const auto transformator = tof(8, 2.5e11, 0, 10, 0.5);
    EXPECT_EQ(transformator->GetMeasurementModeInfo(), nullptr);
    transformator->SetMeasurementModeInfo(std::make_shared<MeasurementModeInfo>(1, 2, 3, 0));
    EXPECT_TRUE(transformator->GetMeasurementModeInfo()->IsComplete());
    transformator->SetMeasurementModeInfo(nullptr);
    EXPECT_EQ(transformator->GetMeasurementModeInfo(), nullptr);
    EXPECT_FALSE(MeasurementModeInfo(1, 2, 3, 255).IsComplete());
}

TEST(Transformator, EqualityLooksAtClassAndConstants) {
    const auto law = tof(8, 2.5e11, 0.5, 10, 0.5);
    const double next = std::nextafter(2.5e11, 3e11);
    EXPECT_TRUE(law->IsEqual(*tof(8, next, 0.5, 10, 0.5)));
    const auto otherMode = tof(8, 2.5e11, 0.5, 10, 0.5);
    otherMode->SetCalibMode(1);
    for (const auto& other : {tof(8, 2.5e11 * (1 + 1e-15), 0.5, 10, 0.5), tof(8, 2.5e11, 0.25, 10, 0.5),
                              tof(8, 2.5e11, 0, 10, 0.5), tof(8, 2.5e11, 0.5, 10, 0.25), otherMode})
        EXPECT_FALSE(law->IsEqual(*other)) << dumpOf(*other);
    EXPECT_FALSE(linear(1, 2)->IsEqual(*paladin(1, 2, 0, 0, 1)));  // the same masses
}

TEST(Transformator, TellsWhatItHoldsAndWhatItCannot) {
    const auto law = tof(8, 2.5e11, 0.5, 10, 0.5);
    law->SetMeasurementModeInfo(std::make_shared<MeasurementModeInfo>(1, 2, 7, 255));
    law->SetIndexOffset(1.5);
    EXPECT_EQ(dumpOf(*law),
              "CalibrationTransformatorTOFQuadratic[ \tCalibrationConstantsFunctionalTOF1[ c0 = 8, c1 = 2.5e+11, c2 = "
              "0.5, calibMode = 0 (corresponding to a1 = 1.6e-11) ]\n"
              "\tCalibrationConstantsPhysicalTOF[ time delay = 10, time base = 0.5 ]\n"
              "\tMeasurementModeInfo[ Polarity = -, AcquisitionMode = TOF reflector, ScanMode = 7, MSMSLevel = 255 ]\n"
              "\tIndex offset[1.5]\n]\n");
    EXPECT_EQ(dumpOf(*linear(1, 2)).substr(0, 31), "CalibrationTransformatorLinear[");
    EXPECT_EQ(failureOf([&] { linear(1, 2)->monotonicMassRange(500); }),
              "runtime: monotonicMassRange() not yet implemented for this particular transformator.");
    EXPECT_EQ(failureOf([&] { ftms(0, 0, 1, 0, 1, 2)->usableMassRange(500, 0.1); }),
              "runtime: usableMassRange() not yet implemented for this particular transformator.");
}

TEST(Factory, ChoosesTheClassByTheHighestCoefficient) {
    const std::pair<TransformatorPtr, const char*> cases[] = {
        {tof(0, 1, 0.0, 0, 1), "CalibrationTransformatorTOFLinear[ "},
        {tof(0, 1, -0.0, 0, 1), "CalibrationTransformatorTOFLinear[ "},
        {tof(0, 1, 5e-324, 0, 1), "CalibrationTransformatorTOFQuadratic[ "},
        {tof(0, 1, g_nan, 0, 1), "CalibrationTransformatorTOFQuadratic[ "},
        {tof2(0, 1, 0, 0, 0, 0, 1), "CalibrationTransformatorTOF2Linear[ "},
        {tof2(0, 1, 1, 0, 0, 0, 1), "CalibrationTransformatorTOF2Quadratic[ "},
        {tof2(0, 1, 0, 1, 0, 0, 1), "CalibrationTransformatorTOF2Cubic[ "},
        {paladin(0, 1, 0, 0, 1), "CalibrationTransformatorPaladinLinear[ "},
        {paladin(0, 1, 1e-9, 0, 1), "CalibrationTransformatorPaladinQuadratic[ "},
    };
    for (const auto& [law, name] : cases)
        EXPECT_EQ(dumpOf(*law).substr(0, std::strlen(name)), name);
}

TEST(Factory, RefusesWhatMakesNoTransformator) {
    const std::string modes = ": Invalid FTMS Mode: 1, 3, 5 and 6 are valid";
    EXPECT_EQ(failureOf([] { CalibrationConstantsFunctionalFTMS1356(1, 1, 1, false, 4); }),
              "argument: CalibrationConstantsFunctionalFTMS1356 c'tor" + modes);
    EXPECT_EQ(failureOf([] { CalibrationConstantsFunctionalFTMS1356(1, 1, 1, false, 1).SetCalibMode(2); }),
              "argument: CalibrationConstantsFunctionalFTMS1356::SetCalibMode" + modes);
    EXPECT_EQ(failureOf([] { CalibrationPolynomialKITE2({}); }),
              "argument: CalibrationPolynomialKITE2: no parent polynomials.");
    EXPECT_EQ(failureOf([] { factory().createDecoratedTransformator({}, nullptr, 0, 1); }),
              g_ofFactory + "createDecoratedTransformator: no transformator to be decorated");
    EXPECT_EQ(failureOf([] { factory().createTransformatorPsd(nullptr, nullptr); }),
              g_ofFactory + "createTransformatorPsd: invalid transformator: type unknown");
    EXPECT_EQ(failureOf([] { factory().createTransformatorKite(nullptr, {}); }),
              g_ofFactory + "createTransformatorKite: can't create kitePolynomial");
    const auto tofLaw = std::make_shared<CalibrationConstantsFunctionalTOF1>();
    const auto scale = std::make_shared<CalibrationConstantsPhysicalPaladin>();
    EXPECT_EQ(failureOf([&] { factory().createTransformator(tofLaw, scale); }),
              g_ofFactory + "createTransformator: invalid calibration constants: types differ");
    EXPECT_EQ(failureOf([&] { factory().createTransformator(nullptr, scale); }),
              g_ofFactory + "createTransformator: invalid transformator: type unknown");
    EXPECT_EQ(failureOf([&] { factory().createTransformatorTrap(tofLaw, scale); }),
              "argument: kvan::calibration::Transformation::CalibrationTransformatorFactory::createTransformatorTrap: "
              "funcConsts is not of type ICalibrationConstantsFunctionalPaladin");
}

}  // namespace

}  // namespace kvan::calibration
