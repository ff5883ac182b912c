#include "transformators.h"

#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>

namespace kvan::calibration {

namespace {

using Gpx = ICalibrationTransformatorGPX;

const char* const g_notUnique = "logic: gpx polynomial could not be inverted in a unique way";
const char* const g_gpxFailed = "logic: a transformation failed, most likely due to bad calibration constants";

/// mass = raw = index.
TransformatorPtr identity() {
    return linear(0, 1);
}

const Gpx& gpx(const TransformatorPtr& transformator) {
    return dynamic_cast<const Gpx&>(*transformator);
}

/// G(m) = m + 2^-10 * (m - 512) * 2^-9 + 2^-20: up to some parts per million off.
const Doubles g_slight = {0x1p-20 - 512 * 0x1p-19, 1 + 0x1p-19};
/// G(m) = m + m^2 / 1024: far from the first order.
const Doubles g_strong = {0, 1, 0x1p-10};

TEST(Gpx, CorrectsTheMassesOfTheLawInside) {
    // Range of mass, precise and apparent mass, tolerance.
    const std::tuple<Doubles, double, double, double, double, double> cases[] = {
        {g_slight, 256, 1024, 512, 512 + 0x1p-20, 0},
        {g_slight, 256, 1024, 1024, 1024 + 0x1p-10 + 0x1p-20, 0},
        {g_slight, 256, 1024, 4096, 4096 + 0x1p-10 + 0x1p-20, 0},
        {g_slight, 256, 1024, 16, 16 - 0x1p-11 + 0x1p-20, 0},
        {g_slight, 1024, 256, 4096, 4096 + 7 * 0x1p-10 + 0x1p-20, 0},
        {g_slight, 256, g_nan, 16, 16 - 496 * 0x1p-19 + 0x1p-20, 0},
        {g_strong, 0, 1024, 512, 768, 1e-15},
        {g_strong, 0, 1024, 32, 33, 1e-15},
        {g_strong, 0, 1024, 2048, 3072, 1e-15},
        // Farther off in the middle than at the end that bounds the search.
        {{0, 1 + 40 * 0x1p-10, -30 * 0x1p-20}, 0, 1024, 512, 524.5, 1e-15},
        {{10, 1 + 20 * 0x1p-10, -30 * 0x1p-20}, 0, 1024, 512, 524.5, 1e-15},
        {{0, 1}, 0, 1024, 77.7, 77.7, 0},
        {{-5, 1}, 0, 1024, 77.75, 72.75, 0},
    };
    for (const auto& [coefficients, minMass, maxMass, precise, apparent, tolerance] : cases) {
        const auto law = corrected(paladin(3, 2, 0, 10, 4), coefficients, minMass, maxMass);
        const double raw = (apparent - 3) / 2;
        SCOPED_TRACE(precise);
        EXPECT_EQ(gpx(law).PreciseMassToMass(precise), apparent);
        EXPECT_EQ(law->MassToRaw(precise), raw);
        EXPECT_EQ(law->MassToDIndex(precise), raw * 4 - 10);
        // The first order is off by the square of the slope, and taken within 1e-5.
        const double near = tolerance > 0 ? tolerance * precise : 2e-8;
        EXPECT_NEAR(law->RawToMass(raw), precise, near);
        EXPECT_NEAR(law->DIndexToMass(raw * 4 - 10), precise, near);
        EXPECT_EQ(law->RawToDIndex(raw), raw * 4 - 10);
        EXPECT_EQ(law->IndexToRaw(6), 4.0);
    }
}

TEST(Gpx, TakesTheFirstOrderAsItIs) {
    const Doubles coefficients = {0, 1, 1e-6};  // G(m) = m + m^2 * 1e-6
    const auto law = corrected(identity(), coefficients, 0, 1000);
    const double apparent = 10.0 + 10.0 * 10.0 * 1e-6;
    const double first = (apparent - ((1e-6 * apparent + 1.0) * apparent + 0.0)) + apparent;
    EXPECT_NE(first, 10.0);
    EXPECT_EQ(law->RawToMass(apparent), first);
    EXPECT_NEAR(law->RawToMass(1000.0 + 1.0), 1000.0, 1e-9);  // off by 2e-3: searched
}

TEST(Gpx, CorrectsNothingWithoutACorrection) {
    const auto law = tof(8, 2.5e11, 0.5, 10, 0.5);
    for (const auto& copy : {corrected(law, g_strong, 0, 1024, false), corrected(law, {}, 0, 1024),
                             factory().createTransformatorGPX(law, nullptr)}) {
        EXPECT_EQ(copy->IndexToMass(300), law->IndexToMass(300));
        EXPECT_EQ(copy->MassToDIndex(99.5), law->MassToDIndex(99.5));
        EXPECT_EQ(copy->GetFunctionalTypeCode(), 1);
    }
    EXPECT_EQ(failureOf([] { factory().createTransformatorGPX(nullptr, nullptr); }),
              "argument: CalibrationTransformatorFactory::createTransformatorGPX: no transformator to be corrected");
}

TEST(Gpx, RefusesWhatHasNoInverse) {
    Doubles beyondSearch(70000);
    beyondSearch[1] = 1.5;
    const Doubles damaged[] = {{5},          {0, 0, 0},       {g_nan, 1},        {0, 1, g_nan}, {0, -1},
                               {1e6, 1, -1}, {g_infinity, 1}, {0, 1e308, 1e308}, {2000, 1},     Doubles(70000, 1e300),
                               beyondSearch};
    for (const Doubles& coefficients : damaged)
        for (const auto& range : {std::pair(100.0, 2000.0), std::pair(2000.0, 100.0), std::pair(g_nan, g_infinity)}) {
            const auto law = corrected(identity(), coefficients, range.first, range.second);
            SCOPED_TRACE(coefficients[0]);
            if (coefficients[0] == 2000)
                EXPECT_EQ(law->RawToMass(500), -1500.0);
            else
                EXPECT_EQ(failureOf([&] { law->RawToMass(500); }), g_notUnique);
        }
}

TEST(Gpx, BatchesFailInTheirOwnWords) {
    const auto law = corrected(identity(), {0, 1, -1e-3}, 0, 600);  // turns at 500
    for (const std::size_t count : {2UL, 99UL, 100UL, 5000UL}) {
        Doubles raws(count, 10.0);
        raws[1] = 550.0;
        EXPECT_EQ(failureOf([&, masses = raws]() mutable { law->RawsToMasses(masses); }),
                  count < 100 ? g_notUnique : g_failed);
        EXPECT_EQ(failureOf([&, masses = raws]() mutable { gpx(law).MassesToPreciseMasses(masses); }), g_gpxFailed);
        EXPECT_EQ(failureOf([&, masses = Doubles()]() mutable { gpx(law).MassesToPreciseMasses(raws, masses); }),
                  g_gpxFailed);
    }
    std::string inRegion[2];
#pragma omp parallel for num_threads(2)
    for (int k = 0; k < 2; ++k) {
        Doubles raws(300, 550.0);
        inRegion[k] = failureOf([&] { k == 0 ? law->RawsToMasses(raws) : gpx(law).MassesToPreciseMasses(raws); });
    }
    EXPECT_EQ(inRegion[0], g_notUnique);
    EXPECT_EQ(inRegion[1], g_gpxFailed);
}

TEST(Gpx, IsAValueAround) {
    const auto inner = tof(8, 2.5e11, 0.5, 10, 0.5);
    const auto law = corrected(inner, g_strong, 0, 1024);
    inner->SetIndexOffset(100);
    EXPECT_EQ(law->GetIndexOffset(), 0.0);

    const auto copy = cloneObject(law);
    EXPECT_TRUE(copy->IsEqual(*law));
    EXPECT_FALSE(inner->IsEqual(*law) || law->IsEqual(*inner));
    auto& facet = dynamic_cast<Gpx&>(*copy);
    const auto polynomial = facet.GetPolynomial();
    polynomial->SetUse(false);
    EXPECT_NE(copy->RawToMass(40), facet.GetTransformator()->RawToMass(40));
    facet.SetPolynomial(polynomial);
    EXPECT_EQ(copy->RawToMass(40), facet.GetTransformator()->RawToMass(40));
    EXPECT_FALSE(copy->IsEqual(*law));
    facet.SetTransformator(nullptr);
    facet.SetTransformator(identity());
    EXPECT_EQ(copy->RawToMass(40), 40.0);
    EXPECT_NE(law->RawToMass(40), 40.0);

    expectDump(corrected(identity(), g_strong, 100, 200),
               {"\tCalibrationPolynomialGPX[ \n\t\tc0 = 0.1, c2 = 0.2, global mass range = [100, 200]\n"
                "\t\tparent mass = 0, arg range = [0, 0]\n\t\torder = 2, coefficients = (0, 1, "});
}

}  // namespace

}  // namespace kvan::calibration
