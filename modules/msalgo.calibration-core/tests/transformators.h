#pragma once

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsLinear.h>
#include <calibration-core/constants/CalibrationConstantsPaladin.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>
#include <calibration-core/constants/CalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>
#include <test-support/support.h>

namespace kvan::calibration {

using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;
using Doubles = std::vector<double>;
using Indices = std::vector<std::int32_t>;

using test::g_infinity;
using test::g_nan;

inline const ICalibrationTransformatorFactory& factory() {
    return *Transformation::CalibrationTransformatorFactory::instance();
}

/// C1 is 1e12 / c1.
inline TransformatorPtr tof(double c0, double c1, double c2, double timeDelay, double timeBase) {
    return factory().createTransformator(
        std::make_shared<Constants::CalibrationConstantsFunctionalTOF1>(c0, c1, c2),
        std::make_shared<Constants::CalibrationConstantsPhysicalTOF>(timeDelay, timeBase));
}

/// Coefficients c0 to c4.
inline TransformatorPtr tof2(double c0, double c1, double c2, double c3, double c4, double timeDelay, double timeBase) {
    return factory().createTransformator(
        std::make_shared<Constants::CalibrationConstantsFunctionalTOF2>(c0, c1, c2, c3, c4),
        std::make_shared<Constants::CalibrationConstantsPhysicalTOF>(timeDelay, timeBase));
}

/// Mode 0 or 4.
inline TransformatorPtr ftms(int mode, double beta, double freqHigh, double freqLow, double freqWidth, int size) {
    return factory().createTransformator(
        std::make_shared<Constants::CalibrationConstantsFunctionalFTMS04>(beta, freqHigh, mode),
        std::make_shared<Constants::CalibrationConstantsPhysicalFTMS>(freqLow, freqWidth, size));
}

/// Mode 1 or 5.
inline TransformatorPtr ftmsQuadratic(int mode, double alpha, double beta, double freqHigh, double freqLow,
                                      double freqWidth, int size) {
    return factory().createTransformator(
        std::make_shared<Constants::CalibrationConstantsFunctionalFTMS1356>(alpha, beta, freqHigh, false, mode),
        std::make_shared<Constants::CalibrationConstantsPhysicalFTMS>(freqLow, freqWidth, size));
}

inline TransformatorPtr paladin(double c0, double c1, double c2, double begin, double perMass) {
    return factory().createTransformator(
        std::make_shared<Constants::CalibrationConstantsFunctionalPaladin>(c0, c1, c2),
        std::make_shared<Constants::CalibrationConstantsPhysicalPaladin>(begin, perMass));
}

inline TransformatorPtr linear(double c0, double c1) {
    return factory().createTransformator(std::make_shared<Constants::CalibrationConstantsFunctionalLinear>(c0, c1),
                                         std::make_shared<Constants::CalibrationConstantsPhysicalLinear>());
}

/// Precise masses from `minMass` to `maxMass` by the polynomial, and straight on outside.
inline TransformatorPtr corrected(const TransformatorPtr& inner, const Doubles& coefficients, double minMass,
                                  double maxMass, bool use = true) {
    return factory().createTransformatorGPX(
        inner, std::make_shared<Constants::CalibrationPolynomialGPX>(coefficients, 0.1, 0.2, minMass, maxMass, use));
}

template <class Dumped>
std::string dumpOf(const Dumped& object) {
    std::ostringstream sink;
    object.Dump(sink);
    return sink.str();
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
