#include "utilities/CalibrationTOFUtilities.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

// The main constants of a time-of-flight calibration, read from a copy of its functional constants and written back
// through one. c1 is the stored one; it and C1 are 1e12 divided by each other. Constants of another family fail with a
// text that begins with the operation and its arguments.
namespace kvan::calibration {

namespace Utilities {

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

template <class Law>
void setStored(Law& law, double c0, double c1, double c2) {
    // Stored values: both views change with them.
    law.SetStoredC0(c0);
    law.SetStoredC1(c1);
    law.SetStoredC2(c2);
}

}  // namespace

void CalibrationTOFUtilities::GetMainCalibConstants(const ICalibrationTransformator& transformator, double& c0,
                                                    double& c1, double& c2, double& c3, double& dm) const {
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewOf<ICalibrationConstantsFunctionalTOF2>(functional, g_getTof2);
    // Both views are asked before a result is written: a failure leaves all of them as they were.
    dm = viewOf<ICalibrationConstantsFunctionalComputationShift>(functional, g_getTof2).GetShift();
    c0 = law.GetStoredC0();
    c1 = law.GetStoredC1();
    c2 = law.GetStoredC2();
    c3 = law.GetStoredC3();
}

void CalibrationTOFUtilities::GetMainCalibConstants(const ICalibrationTransformator& transformator, double& c0,
                                                    double& c1, double& c2) const {
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewOf<ICalibrationConstantsFunctionalTOF1>(functional, g_getTof1);
    c0 = law.GetStoredC0();
    c1 = law.GetStoredC1();
    c2 = law.GetStoredC2();
}

void CalibrationTOFUtilities::SetMainCalibConstants(ICalibrationTransformator& transformator, double c0, double c1,
                                                    double c2, double c3, double dm) const {
    const auto functional = transformator.GetFunctionalConstants();
    auto& law = viewOf<ICalibrationConstantsFunctionalTOF2>(functional, g_setTof2);
    // On a copy, so that a failure changes nothing.
    viewOf<ICalibrationConstantsFunctionalComputationShift>(functional, g_setTof2).SetShift(dm);
    setStored(law, c0, c1, c2);
    law.SetStoredC3(c3);
    transformator.SetFunctionalConstants(functional);
}

void CalibrationTOFUtilities::SetMainCalibConstants(ICalibrationTransformator& transformator, double c0, double c1,
                                                    double c2) const {
    const auto functional = transformator.GetFunctionalConstants();
    setStored(viewOf<ICalibrationConstantsFunctionalTOF1>(functional, g_setTof1), c0, c1, c2);
    transformator.SetFunctionalConstants(functional);
}

}  // namespace Utilities

std::shared_ptr<ICalibrationTOFUtilities> createCalibrationTOFUtilities() {
    return std::make_shared<Utilities::CalibrationTOFUtilities>();
}

}  // namespace kvan::calibration
