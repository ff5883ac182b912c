#include "transformators.h"

#include <calibration-core/interfaces/ICalibrationTOFUtilities.h>
#include <calibration-core/interfaces/ICalibrationTransformatorDecorator.h>
#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>
#include <calibration-core/interfaces/ICalibrationUtilities.h>
#include <calibration-core/temperaturecompensation/TemperatureCompensationInfo.h>

namespace kvan::calibration {

namespace {

using Decorator = ICalibrationTransformatorFactory::Decorator;

/// raw = (index + 10) / 4, mass = 2 * raw + 3.
TransformatorPtr straight() {
    return paladin(3, 2, 0, 10, 4);
}

TransformatorPtr rawBounds(double lower, double upper) {
    return factory().createDecoratedTransformator(Decorator::RawBounds, straight(), lower, upper);
}

TransformatorPtr indexBounds(double lower, double upper) {
    return factory().createDecoratedTransformator(Decorator::IndexBounds, straight(), lower, upper);
}

TEST(BoundsChecker, KeepsRawValuesInside) {
    const auto law = rawBounds(5, 8);
    EXPECT_EQ(law->MassToRaw(15), 6.0);
    EXPECT_EQ(law->MassToRaw(-100), 5.0);
    EXPECT_EQ(law->RawToMass(1), 13.0);
    EXPECT_EQ(law->RawToMass(100), 19.0);
    EXPECT_EQ(law->IndexToRaw(90), 25.0);
    EXPECT_EQ(law->IndexToMass(90), 53.0);
    EXPECT_EQ(law->MassToDIndex(53), 90.0);
    EXPECT_EQ(law->RawToDIndex(25), 90.0);
    EXPECT_EQ(law->IndexWidthToMassWidth(33, 8), 4.0);

    using T = ICalibrationTransformator;
    const struct {
        void (T::*to)(const Doubles&, Doubles&) const;
        void (T::*inPlace)(Doubles&) const;
        Doubles values, results;
    } conversions[] = {
        {&T::MassesToRaws, &T::MassesToRaws, {-100, 15, 100}, {5, 6, 8}},
        {&T::RawsToMasses, &T::RawsToMasses, {-100, 6, 100}, {13, 15, 19}},
        {&T::RawsToDIndices, &T::RawsToDIndices, {-100, 6, 100}, {10, 14, 22}},
        {&T::DIndicesToRaws, &T::DIndicesToRaws, {0, 14, 900}, {5, 6, 8}},
    };
    Doubles results;
    for (const auto& [to, inPlace, values, expected] : conversions) {
        ((*law).*to)(values, results);
        EXPECT_EQ(results, expected);
        results = values;
        ((*law).*inPlace)(results);
        EXPECT_EQ(results, expected);
    }
    Indices indices;
    law->RawsToIndices({-100, 6, 100}, indices);
    EXPECT_EQ(indices, Indices({10, 14, 22}));
    law->IndicesToRaws({0, 14, 900}, results);
    EXPECT_EQ(results, Doubles({5, 6, 8}));
    EXPECT_EQ(rawBounds(8, 5)->MassToRaw(15), 5.0);
    EXPECT_EQ(rawBounds(8, 5)->MassToRaw(1e9), 5.0);
}

TEST(BoundsChecker, KeepsIndicesInside) {
    const auto law = indexBounds(10.5, 20.75);
    EXPECT_EQ(law->MassToDIndex(15), 14.0);
    EXPECT_EQ(law->MassToDIndex(0), 10.5);
    EXPECT_EQ(law->MassToIndex(0), 11);
    EXPECT_EQ(law->MassToIndex(99), 21);
    EXPECT_EQ(law->RawToDIndex(0), 10.5);
    EXPECT_EQ(law->RawToIndex(0), 10);
    EXPECT_EQ(law->RawToIndex(6), 14);
    EXPECT_EQ(law->RawToIndex(99), 20);
    EXPECT_EQ(law->IndexToMass(90), 53.0);
    Doubles masses;
    law->IndexRangeToMasses(8, 23, masses);
    EXPECT_EQ(masses.front(), 12.0);
    EXPECT_EQ(masses.back(), 19.5);
    EXPECT_EQ(indexBounds(20, 10)->RawToIndex(6), 10);
    EXPECT_EQ(indexBounds(-1e300, 1e300)->MassToDIndex(53), 90.0);
    EXPECT_EQ(indexBounds(g_nan, 1e300)->RawToIndex(25), 90);
}

TEST(BoundsChecker, ForwardsAndIsPeeled) {
    EXPECT_EQ(failureOf([] { factory().createDecoratedTransformator(static_cast<Decorator>(7), straight(), 0, 1); }),
              g_ofFactory + "createDecoratedTransformator: invalid transformator: type unknown");
    const auto inner = tof(8, 2.5e11, 0.5, 10, 0.5);
    const auto raw = factory().createDecoratedTransformator(Decorator::RawBounds, inner, 5, 80);
    const auto both = factory().createDecoratedTransformator(Decorator::IndexBounds, raw, 1, 2);
    EXPECT_EQ(both->monotonicMassRange(100), inner->monotonicMassRange(100));
    EXPECT_EQ(failureOf([&] { both->usableMassRange(100, 1); }),
              "runtime: usableMassRange() not yet implemented for this particular transformator.");
    both->SetIndexOffset(4);
    EXPECT_EQ(both->IndexToRaw(0), 12.0);
    EXPECT_EQ(raw->IndexToRaw(0), 10.0);

    const auto copy = cloneObject(both);
    EXPECT_TRUE(copy->IsEqual(*both));
    EXPECT_FALSE(raw->IsEqual(*both) || both->IsEqual(*raw));
    auto& facet = dynamic_cast<ICalibrationTransformatorIndexBoundsChecker&>(*copy);
    facet.SetLowerIndexBound(-3);
    EXPECT_FALSE(copy->IsEqual(*both));
    EXPECT_EQ(facet.GetUpperIndexBound(), 2.0);
    facet.SetDecoratedTransformator(nullptr);
    facet.SetDecoratedTransformator(straight());
    EXPECT_EQ(copy->IndexToMass(90), 53.0);

    const auto utilities = createCalibrationUtilities();
    EXPECT_TRUE(utilities->PeelDecorators(both)->IsEqual(*inner));
    EXPECT_EQ(utilities->PeelDecorators(inner), inner);
    EXPECT_EQ(utilities->PeelDecorators(nullptr), nullptr);

    EXPECT_EQ(dumpOf(*both).find("CalibrationTransformatorIndexBoundsChecker[ index bounds: [1, 2]\n"
                                 "CalibrationTransformatorRawBoundsChecker[ raw bounds: [5, 80]\n"
                                 "CalibrationTransformatorTOFQuadratic[ "),
              0U);
}

TEST(CalibrationUtilities, ErrorsAndConstants) {
    const auto law = linear(0, 1);
    const auto utilities = createCalibrationUtilities();
    EXPECT_EQ(utilities->MassErrorsPpm(*law, {101, 5, 7}, {100, 0}), Doubles({10000, 0}));
    const Doubles raws = {99, 103, 4};  // 1, -3 and 0
    const Doubles references = {100, 100, -1};
    EXPECT_DOUBLE_EQ(utilities->RootMeanSquareError(*law, raws, references, MassErrorUnit::Mass), std::sqrt(10.0 / 3));
    EXPECT_DOUBLE_EQ(utilities->StandardDeviation(*law, raws, references, MassErrorUnit::Mass),
                     std::sqrt((25.0 + 49 + 4) / 9 / 2));
    EXPECT_EQ(utilities->RootMeanSquareError(*law, {99}, {100}, MassErrorUnit::Ppm), 10000);
    EXPECT_EQ(utilities->StandardDeviation(*law, {99}, {100}, MassErrorUnit::Ppm), 0);

    const auto tofUtilities = createCalibrationTOFUtilities();
    EXPECT_EQ(tofUtilities->C1ToComputationC1(2.5e11), 4.0);
    const auto cubic = tof2(8, 2.5e11, 0.5, 0.25, 4, 10, 0.5);
    double c0, c1, c2, c3, dm;
    tofUtilities->GetMainCalibConstants(*cubic, c0, c1, c2, c3, dm);
    EXPECT_EQ(dm, 4);
    tofUtilities->SetMainCalibConstants(*cubic, 9, c1, c2, c3, dm);
    EXPECT_EQ(cubic->MassToRaw(-4), 9);
    EXPECT_EQ(failureOf([&] { tofUtilities->GetMainCalibConstants(*cubic, c0, c1, c2); }),
              "argument: kvan::calibration::CalibrationTOFUtilities::GetMainCalibConstants(transformator, c0, c1, c2): "
              "constants of another type");
}

TEST(Compensation, OfCorrectedMasses) {
    const auto shifted = [](const TransformatorPtr& inner) { return corrected(inner, {1, 1}, 0, 1e4); };
    const auto law = shifted(tof(8, 2.5e11, 0.5, 10, 0.5));
    using TemperatureCompensation::addTemperatureCompensationInfo;
    const auto compensated = addTemperatureCompensationInfo(law, {23}, {1});
    EXPECT_EQ(compensated->GetFunctionalTypeCode(), 9);
    EXPECT_EQ(compensated->RawToMass(200), law->RawToMass(200));
    EXPECT_EQ(law->GetFunctionalTypeCode(), 1);
    EXPECT_EQ(failureOf([&] { addTemperatureCompensationInfo(compensated, {23}, {1}); }),
              "runtime: Already contains temp-comp info.");
    const auto second = shifted(tof2(8, 2.5e11, 0.5, 0.25, 4, 10, 0.5));
    EXPECT_EQ(failureOf([&] { addTemperatureCompensationInfo(second, {23}, {1}); }),
              "runtime: TOF2+GPX not supported.");
    EXPECT_EQ(failureOf([&] { addTemperatureCompensationInfo(shifted(straight()), {}, {}); }),
              "runtime: Non-supported strategy.");
}

}  // namespace

}  // namespace kvan::calibration
