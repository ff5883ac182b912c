#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration::Transformation {

class CalibrationTransformatorTOFLinear;
class CalibrationTransformatorTOFQuadratic;
class CalibrationTransformatorTOF2Linear;
class CalibrationTransformatorTOF2Quadratic;
class CalibrationTransformatorTOF2Cubic;
class CalibrationTransformatorFTMS04;
class CalibrationTransformatorFTMS15;
class CalibrationTransformatorPaladinLinear;
class CalibrationTransformatorPaladinQuadratic;
class CalibrationTransformatorLinear;

/// A transformator of that class, without constants. Specialised in the family's source file, which keeps the loops of
/// the class out of every other one: they are compiled once, with the options that make them vectors.
template <class Class>
std::shared_ptr<ICalibrationTransformator> newTransformator();

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOFLinear>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOFQuadratic>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOF2Linear>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOF2Quadratic>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOF2Cubic>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorFTMS04>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorFTMS15>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorPaladinLinear>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorPaladinQuadratic>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorLinear>();

}  // namespace kvan::calibration::Transformation
