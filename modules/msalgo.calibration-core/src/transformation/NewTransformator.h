#pragma once

#include "calibration-core/interfaces/ICalibrationTransformator.h"

namespace kvan::calibration::Transformation {

class CalibrationTransformatorTOFLinear;
class CalibrationTransformatorTOFQuadratic;
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
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorPaladinLinear>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorPaladinQuadratic>();
template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorLinear>();

}  // namespace kvan::calibration::Transformation
