#include "blobs.h"

#include <calibration-core/interfaces/ICalibrationTransformatorDecorator.h>
#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>

namespace kvan::calibration {

namespace {

/// G(m) = 2 m + 1 on [3, 400].
TransformatorPtr corrected(const TransformatorPtr& inner, bool use = true) {
    return factory().createTransformatorGPX(
        inner, std::make_shared<CalibrationPolynomialGPX>(Doubles{1, 2}, -0.125, 7, 3, 400, use));
}

/// The data of `corrected`.
const Bytes g_gpx = packed(-0.125, 7.0, 3.0, 400.0, u16{1}, u16{2}, u32{40}, 1.0, 2.0);
std::shared_ptr<ICalibrationPolynomialGPX> correctionOf(const TransformatorPtr& transformator) {
    const auto* const facet = dynamic_cast<const ICalibrationTransformatorGPX*>(transformator.get());
    return facet != nullptr ? facet->GetPolynomial() : nullptr;
}

TEST(GpxBlob, FollowsTheBlockOfAnyType) {
    const TransformatorPtr laws[] = {tof(8, 2.5e11, -0.125, 10, 0.5), tof2(8, 2.5e11, -0.125, 0.5, 4, 10, 0.5),
                                     paladin(1, 2, 0.5, 10, 8),       linear(1, 2),
                                     ftms(4, -24, 1024, 240, 160, 5), read(head(3) + g_tofBlock + packed(1, 80.0))};
    for (const auto& law : laws)
        for (const bool use : {true, false}) {
            Bytes expected = flagged(written(law)) + g_gpx;
            expected[expected.size() - 24] = use ? 1 : 0;
            const auto transformator = corrected(law, use);
            EXPECT_EQ(written(transformator), expected);
            const auto again = read(expected);
            EXPECT_TRUE(again->IsEqual(*transformator));
            EXPECT_EQ(again->IndexToMass(3), transformator->IndexToMass(3));
        }
    EXPECT_EQ(written(factory().createTransformatorGPX(laws[0], nullptr)), written(laws[0]));
}

TEST(GpxBlob, CountAndOffsetAreHeldAgainstTheBlob) {
    expectCutFails(flagged(head(1)) + g_tofBlock + g_gpx);
    const auto withArray = [](u16 count, u32 offset) {
        return flagged(head(4098)) + packed(1.0, 2.0) + packed(0.0, 0.0, 0.0, 0.0, u16{255}, count, offset, 5.0, 1.0);
    };
    // The last: what the array does not reach is taken for an extension.
    const std::pair<u16, u32> beyond[] = {{3, 40}, {2, 41}, {65535, 0}, {1, 0xFFFFFFFF}, {0, 99}};
    for (const auto& [count, offset] : beyond)
        EXPECT_EQ(failureOfReading(withArray(count, offset)), g_cut) << count << " at " << offset;
    EXPECT_EQ(correctionOf(read(withArray(2, 40)))->GetCoefficients(), Doubles({5, 1}));
    EXPECT_EQ(correctionOf(read(withArray(1, 48)))->GetCoefficients(), Doubles({1}));
    EXPECT_EQ(failureOfReading(withArray(0, 99) + g_extension), g_noExtension);
    EXPECT_EQ(failureOf([] { written(corrected(corrected(linear(1, 2)))); }),
              "argument: invalid serialization: a correction inside a correction");
    EXPECT_EQ(
        failureOf([] {
            written(factory().createTransformatorGPX(
                linear(1, 2), std::make_shared<CalibrationPolynomialGPX>(Doubles(65536), 0.0, 0.0, 0.0, 0.0, true)));
        }),
        "argument: invalid serialization: too many coefficients for a blob");
}

TEST(GpxBlob, StandsBeforeTheExtension) {
    const Bytes blob = flagged(head(1)) + g_tofBlock + g_gpx + g_extension;
    const auto transformator = read(blob);
    EXPECT_EQ(transformator->GetFunctionalTypeCode(), 9);
    EXPECT_TRUE(correctionOf(transformator)->GetUse());
    EXPECT_EQ(written(transformator), blob);

    const Bytes reference = flagged(head(11)) + g_tof2Block + g_key + g_gpx;
    EXPECT_EQ(read(reference)->GetMeasurementModeInfo()->GetPolarity(), 1);
    EXPECT_EQ(written(read(reference)), reference);
    EXPECT_EQ(failureOfReading(flagged(head(9)) + g_tof2Block + g_gpx + g_extension),
              "runtime: TOF2+GPX not supported.");
}

const std::string g_constants = "V3.0CLinearCalibrationConstants 0 1 1 2 0";
const std::string g_gpxText =
    " V1.0CGPXData  Order 1 vCoeff V1.0VectorDouble 2 1 2  c2 7 c0 -0.125 minMass 3 maxMass 400 bUse ";

TransformatorPtr bounded(const TransformatorPtr& inner, double lower, double upper) {
    return factory().createDecoratedTransformator(ICalibrationTransformatorFactory::Decorator::IndexBounds, inner,
                                                  lower, upper);
}

TEST(GpxText, IsWrittenAndReadBackWithItsRange) {
    const std::string unbounded = "V3.0CCalibrator 4" + g_tail;
    const std::pair<TransformatorPtr, std::string> cases[] = {
        {corrected(linear(1, 2)), unbounded + g_constants + g_gpxText + "1 endCGPXData "},
        {bounded(linear(1, 2), 5, 20), "V3.0CCalibrator 4 1 0 1 5 20 " + g_constants + g_noGpx},
        {bounded(corrected(linear(1, 2)), -3, 1e10),
         "V3.0CCalibrator 4 1 0 1 -3 2147483647 " + g_constants + g_gpxText + "1 endCGPXData "},
    };
    for (const auto& [law, text] : cases) {
        EXPECT_EQ(textOf(law), text);
        const auto again = readText(text);
        EXPECT_EQ(textOf(again), text);
        for (const double raw : {-50.0, 10.0, 77.0})
            EXPECT_EQ(again->RawToIndex(raw), law->RawToIndex(raw)) << text;
        EXPECT_EQ(again->IndexToMass(900), law->IndexToMass(900)) << text;
    }
    // Not in use: written, and dropped when it is read.
    const std::string unused = unbounded + g_constants + g_gpxText + "0 endCGPXData ";
    EXPECT_EQ(textOf(corrected(linear(1, 2), false)), unused);
    EXPECT_EQ(correctionOf(readText(unused)), nullptr);
}

TEST(GpxText, TheIndexOffsetIsThatOfTheWhole) {
    const auto law = readText("V3.0CCalibrator 4 1 100 1 5 20 " + g_constants + g_gpxText + "1 endCGPXData ");
    EXPECT_EQ(law->GetIndexOffset(), 100.0);
    EXPECT_EQ(law->IndexToRaw(0), 100.0);
    EXPECT_EQ(law->IndexToMass(0), 100.0);  // 2 * 100 + 1, by G
    EXPECT_EQ(law->MassToIndex(400), 20);
    EXPECT_EQ(readText("V2.0CCalibrator 4 1 100 1 5 20 " + g_constants)->MassToIndex(0), 5);
    // A flag of another value than 1 is no range; version 3 must have the correction.
    EXPECT_EQ(readText("V2.0CCalibrator 4 1 0 2 5 20 " + g_constants)->MassToIndex(1), 0);
    EXPECT_EQ(failureOfReadingText("V3.0CCalibrator 4 1 0 1 5 20 " + g_constants), g_noCorrection);
}

TEST(GpxText, RefusesDecoratorsWithoutAPlaceInIt) {
    const auto raw = factory().createDecoratedTransformator(ICalibrationTransformatorFactory::Decorator::RawBounds,
                                                            linear(1, 2), 0, 1);
    const char* const refusal = "argument: Transformer does not offer serialization interface.";
    for (const auto& transformator : {raw, bounded(raw, 0, 1), corrected(bounded(linear(1, 2), 0, 1))})
        EXPECT_EQ(failureOf([&] { textOf(transformator); }), refusal);
    EXPECT_EQ(failureOf([&] { written(bounded(linear(1, 2), 0, 1)); }), refusal);
    EXPECT_EQ(failureOf([] { textOf(corrected(corrected(linear(1, 2)))); }),
              "argument: invalid serialization: a correction inside a correction");
    const auto inside = factory().createTransformatorGPX(corrected(linear(1, 2)), nullptr);
    EXPECT_EQ(textOf(inside), textOf(corrected(linear(1, 2))));
}

}  // namespace

}  // namespace kvan::calibration
