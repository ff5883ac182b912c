#pragma once

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsLinear.h>
#include <calibration-core/constants/CalibrationConstantsPaladin.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>
#include <calibration-core/constants/CalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>
#include <test-support/support.h>

namespace kvan::calibration {

using namespace Constants;
using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;
using Doubles = std::vector<double>;
using Indices = std::vector<std::int32_t>;

using test::g_infinity;
using test::g_nan;

inline const char* const g_failed = "runtime: Transformation failed, most likely due to bad calibration constants.";
inline const std::string g_ofFactory = "argument: CalibrationTransformatorFactory::";

inline const ICalibrationTransformatorFactory& factory() {
    return *Transformation::CalibrationTransformatorFactory::instance();
}

template <class Functional, class Physical>
TransformatorPtr make(const Functional& functional, const Physical& physical) {
    return factory().createTransformator(std::make_shared<Functional>(functional),
                                         std::make_shared<Physical>(physical));
}

/// C1 is 1e12 / c1.
inline TransformatorPtr tof(double c0, double c1, double c2, double timeDelay, double timeBase) {
    return make(CalibrationConstantsFunctionalTOF1(c0, c1, c2), CalibrationConstantsPhysicalTOF(timeDelay, timeBase));
}

/// Coefficients c0 to c4.
inline TransformatorPtr tof2(double c0, double c1, double c2, double c3, double c4, double timeDelay, double timeBase) {
    return make(CalibrationConstantsFunctionalTOF2(c0, c1, c2, c3, c4),
                CalibrationConstantsPhysicalTOF(timeDelay, timeBase));
}

/// Mode 0 or 4.
inline TransformatorPtr ftms(int mode, double beta, double freqHigh, double freqLow, double freqWidth, int size) {
    return make(CalibrationConstantsFunctionalFTMS04(beta, freqHigh, mode),
                CalibrationConstantsPhysicalFTMS(freqLow, freqWidth, size));
}

/// Mode 1 or 5.
inline TransformatorPtr ftmsQuadratic(int mode, double alpha, double beta, double freqHigh, double freqLow,
                                      double freqWidth, int size) {
    return make(CalibrationConstantsFunctionalFTMS1356(alpha, beta, freqHigh, false, mode),
                CalibrationConstantsPhysicalFTMS(freqLow, freqWidth, size));
}

inline TransformatorPtr paladin(double c0, double c1, double c2, double begin, double perMass) {
    return make(CalibrationConstantsFunctionalPaladin(c0, c1, c2), CalibrationConstantsPhysicalPaladin(begin, perMass));
}

inline TransformatorPtr linear(double c0, double c1) {
    return make(CalibrationConstantsFunctionalLinear(c0, c1), CalibrationConstantsPhysicalLinear());
}

/// Full and segment voltage, mass of the calibration and of the parent, range of the apparent mass, both polynomials.
/// sum = 0.5 + 50 * 0.01 + 2500 * 0.0002 = 1.5, and the mass ratio is 4: the coefficients of the law are 2, 0.5, 2
/// times 2.5015.
inline CalibrationPolynomialPSDFAST::Numbers psdNumbers(double minArg, double maxArg) {
    return {20, 2.5, 100, 400, minArg, maxArg, {0.5, 0.25, 2}, {0.5, 0.01, 0.0002}};
}

/// A polynomial law of two parents, at 100 and 900, for the parent mass 400.
inline CalibrationPolynomialKITE2::Numbers kite2Between(int mode) {
    return {.parentMass = 400,
            .referenceTime = 3,
            .ignoreIndexBounds = true,
            .interpolationMode = mode,
            .parents = {{{10, 4, 0.5}, 1, 50, 100}, {{9, 6, 3}, 3, 30, 900}},
            .global = {{0, 1}, 0, 0, 0}};
}

/// Precise masses from `minMass` to `maxMass` by the polynomial, and straight on outside.
inline TransformatorPtr corrected(const TransformatorPtr& inner, const Doubles& coefficients, double minMass,
                                  double maxMass, bool use = true) {
    return factory().createTransformatorGPX(
        inner, std::make_shared<CalibrationPolynomialGPX>(coefficients, 0.1, 0.2, minMass, maxMass, use));
}

template <class Dumped>
std::string dumpOf(const Dumped& object) {
    std::ostringstream sink;
    object.Dump(sink);
    return sink.str();
}

inline void expectDump(const TransformatorPtr& transformator, const std::vector<const char*>& parts) {
    const std::string dump = dumpOf(*transformator);
    for (const char* const part : parts)
        EXPECT_NE(dump.find(part), std::string::npos) << part << dump;
}

/// Type of the exception as far as callers tell them apart, and its text; "" without one.
template <class Work>
std::string failureOf(Work work) {
    try {
        work();
    } catch (const std::invalid_argument& fault) {
        return std::string("argument: ") + fault.what();
    } catch (const std::logic_error& fault) {
        return std::string("logic: ") + fault.what();
    } catch (const std::runtime_error& fault) {
        return std::string("runtime: ") + fault.what();
    }
    return {};
}

template <class Value>
bool sameBits(const std::vector<Value>& a, const std::vector<Value>& b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Value)) == 0);
}

}  // namespace kvan::calibration
