#include "calibration-core/utilities/CalibrationUtilities.h"

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <cmath>
#include <numeric>
#include <stdexcept>
#include <string>

namespace kvan::calibration::Utilities {

namespace {

template <class View>
View& viewOf(const std::shared_ptr<ICalibrationConstantsFunctional>& functional, const char* operation) {
    auto* const view = dynamic_cast<View*>(functional.get());
    if (view == nullptr)
        BOOST_THROW_EXCEPTION(std::invalid_argument(std::string("kvan::calibration::CalibrationTOFUtilities::") +
                                                    operation + ": constants of another type"));
    return *view;
}

const char* const g_getTof2 = "GetMainCalibConstants(transformator, c0, c1, c2, c3, dm)";
const char* const g_getTof1 = "GetMainCalibConstants(transformator, c0, c1, c2)";
const char* const g_setTof2 = "SetMainCalibConstants(transformator, c0, c1, c2, c3, dm)";
const char* const g_setTof1 = "SetMainCalibConstants(transformator, c0, c1, c2)";

double ppm(double error, double reference) {
    return error / reference * 1000000.0;
}

}  // namespace

MainCalibConstants GetMainCalibConstantsTOF2(const ICalibrationTransformator& transformator) {
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewOf<ICalibrationConstantsFunctionalTOF2>(functional, g_getTof2);
    const auto& shift = viewOf<ICalibrationConstantsFunctionalComputationShift>(functional, g_getTof2);
    return {law.GetStoredC0(), law.GetStoredC1(), law.GetStoredC2(), law.GetStoredC3(), shift.GetShift()};
}

MainCalibConstants GetMainCalibConstantsTOF1(const ICalibrationTransformator& transformator) {
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewOf<ICalibrationConstantsFunctionalTOF1>(functional, g_getTof1);
    return {law.GetStoredC0(), law.GetStoredC1(), law.GetStoredC2()};
}

void SetMainCalibConstantsTOF2(ICalibrationTransformator& transformator, const MainCalibConstants& constants) {
    const auto functional = transformator.GetFunctionalConstants();
    auto& law = viewOf<ICalibrationConstantsFunctionalTOF2>(functional, g_setTof2);
    law.SetStoredC0(constants.c0);
    law.SetStoredC1(constants.c1);
    law.SetStoredC2(constants.c2);
    law.SetStoredC3(constants.c3);
    viewOf<ICalibrationConstantsFunctionalComputationShift>(functional, g_setTof2).SetShift(constants.dm);
    transformator.SetFunctionalConstants(functional);
}

void SetMainCalibConstantsTOF1(ICalibrationTransformator& transformator, const MainCalibConstants& constants) {
    const auto functional = transformator.GetFunctionalConstants();
    auto& law = viewOf<ICalibrationConstantsFunctionalTOF1>(functional, g_setTof1);
    law.SetStoredC0(constants.c0);
    law.SetStoredC1(constants.c1);
    law.SetStoredC2(constants.c2);
    transformator.SetFunctionalConstants(functional);
}

double MassErrorPpm(const ICalibrationTransformator& transformator, double raw, double referenceMass) {
    return referenceMass > 0.0 ? ppm(transformator.RawToMass(raw) - referenceMass, referenceMass) : 0.0;
}

std::vector<double> MassErrorsPpm(const ICalibrationTransformator& transformator, const std::vector<double>& raws,
                                  const std::vector<double>& referenceMasses) {
    std::vector<double> errors(std::min(raws.size(), referenceMasses.size()));
    for (std::size_t k = 0; k < errors.size(); ++k)
        errors[k] = MassErrorPpm(transformator, raws[k], referenceMasses[k]);
    return errors;
}

MassErrorStatistics MassErrors(const ICalibrationTransformator& transformator, const std::vector<double>& raws,
                               const std::vector<double>& referenceMasses, MassErrorUnit unit) {
    std::vector<double> errors(std::min(raws.size(), referenceMasses.size()));
    for (std::size_t k = 0; k < errors.size(); ++k) {
        if (!(referenceMasses[k] > 0.0))
            continue;
        errors[k] = referenceMasses[k] - transformator.RawToMass(raws[k]);
        if (unit == MassErrorUnit::Ppm)
            errors[k] = ppm(errors[k], referenceMasses[k]);
    }
    MassErrorStatistics statistics;
    if (errors.empty())
        return statistics;
    const auto count = static_cast<double>(errors.size());
    const auto squaresAbout = [&errors](double centre) {
        return std::accumulate(errors.begin(), errors.end(), 0.0, [centre](double sum, double error) {
            return sum + (error - centre) * (error - centre);
        });
    };
    statistics.rootMeanSquare = std::sqrt(squaresAbout(0.0) / count);
    if (errors.size() > 1) {
        const double mean = std::accumulate(errors.begin(), errors.end(), 0.0) / count;
        statistics.standardDeviation = std::sqrt(squaresAbout(mean) / (count - 1.0));
    }
    return statistics;
}

}  // namespace kvan::calibration::Utilities
