#include "reference_merge.h"

#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>
#include <calibration-core/interfaces/ICalibrationTransformatorDecorator.h>
#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>
#include <calibration-core/interfaces/ICalibrationTransformatorPSD.h>

// A reference replaces the law of a spectrum's calibrator, not its axis: the digitizer's timing, the index offset and
// bounds belong to the spectrum. Wrappers are taken off from the outside in (bounds, mass corrections, post-source
// decay) until two plain laws meet, and are put on again around what comes out. A correction of the spectrum's own
// goes, that of the reference stays, since it was made for this law. Null at any depth means that the two do not fit.
namespace kvan::io::ami {

using namespace kvan::calibration;

namespace {

using FunctionalPtr = std::shared_ptr<ICalibrationConstantsFunctional>;
using Compensation = ICalibrationConstantsFunctionalTemperatureCompensation;
using Tof1 = Constants::CalibrationConstantsFunctionalTOF1;
using Tof2 = Constants::CalibrationConstantsFunctionalTOF2;
using CompensatedTof1 = Constants::CalibrationConstantsFunctionalTOF1TemperatureCompensation;
using CompensatedTof2 = Constants::CalibrationConstantsFunctionalTOF2TemperatureCompensation;

/// Laws that differ in their temperatures alone are of one kind.
CalibrationFamily kindOf(const ICalibrationTransformator& transformator) {
    return traitsOf(familyOf(transformator)).plain;
}

/// `law`, with the temperatures of `source` if it knows some.
template <class Compensated, class Law>
FunctionalPtr withTemperaturesOf(const ICalibrationConstantsFunctional& source, const Law& law) {
    const auto* const compensation = dynamic_cast<const Compensation*>(&source);
    if (compensation == nullptr)
        return std::make_shared<Law>(law);
    auto compensated = std::make_shared<Compensated>(law);
    compensated->SetMeasuredTemperatures(compensation->GetMeasuredTemperatures());
    compensated->SetCorrectionFactors(compensation->GetCorrectionFactors());
    compensated->SetCompensationMode(compensation->GetCompensationMode());
    return compensated;
}

/// With c3 = c4 = 0 both laws are the same; null for a TOF2 law with more than that.
FunctionalPtr converted(const FunctionalPtr& functional) {
    if (const auto* const law = dynamic_cast<const Tof1*>(functional.get()))
        return withTemperaturesOf<CompensatedTof2>(
            *law, Tof2(law->GetStoredC0(), law->GetStoredC1(), law->GetStoredC2(), 0.0, 0.0, law->GetCalibMode()));
    const auto* const law = dynamic_cast<const Tof2*>(functional.get());
    if (law == nullptr || law->GetStoredC3() != 0.0 || law->GetShift() != 0.0)
        return nullptr;
    return withTemperaturesOf<CompensatedTof1>(
        *law, Tof1(law->GetStoredC0(), law->GetStoredC1(), law->GetStoredC2(), law->GetCalibMode()));
}

/// The constants of `reference` in the family of the calibrator; null if there are none.
FunctionalPtr lawOf(const ICalibrationTransformator& reference, CalibrationFamily family) {
    using enum CalibrationFamily;
    const CalibrationFamily own = kindOf(reference);
    if (traitsOf(own).constants == HeldConstants::None)
        return nullptr;
    if (own == family)
        return reference.GetFunctionalConstants();
    const bool isConvertible = (own == Tof && family == Tof2) || (own == Tof2 && family == Tof);
    return isConvertible ? converted(reference.GetFunctionalConstants()) : nullptr;
}

/// `law`, adapted to the temperatures of `own` if both know some.
FunctionalPtr adapted(const FunctionalPtr& law, const FunctionalPtr& own) {
    const auto* const reference = dynamic_cast<const Compensation*>(law.get());
    auto* const compensation = dynamic_cast<Compensation*>(own.get());
    if (reference == nullptr || reference->GetMeasuredTemperatures().empty() || compensation == nullptr ||
        compensation->GetMeasuredTemperatures().empty())
        return law;
    compensation->AdaptToReference(*law, reference->GetMeasuredTemperatures(), reference->GetCorrectionFactors());
    return own;
}

const ICalibrationTransformatorFactory& factory() {
    return *Transformation::CalibrationTransformatorFactory::instance();
}

/// `law` on the axis of the calibrator. The polynomial of a KITE 1 calibrator, which makes its masses, stays its own.
TransformatorPtr withLaw(const TransformatorPtr& calibrator, const FunctionalPtr& law) {
    if (traitsOf(kindOf(*calibrator)).constants == HeldConstants::OfTheAxis) {
        auto copy = cloneObject(calibrator);
        copy->SetFunctionalConstants(law);
        return copy;
    }
    // Made by the factory and not copied: the family of the law decides the class.
    auto merged = factory().createTransformator(law, calibrator->GetPhysicalConstants());
    merged->SetIndexOffset(calibrator->GetIndexOffset());
    return merged;
}

template <class Facet>
const Facet* facetOf(const TransformatorPtr& transformator) {
    return dynamic_cast<const Facet*>(transformator.get());
}

// What stands around a calibrator, built anew around what the merge made of its inside. Null stays null.

TransformatorPtr withBoundsOf(const TransformatorPtr& calibrator, const TransformatorPtr& merged) {
    if (!merged)
        return nullptr;
    auto copy = cloneObject(calibrator);
    dynamic_cast<ICalibrationTransformatorDecorator&>(*copy).SetDecoratedTransformator(merged);
    return copy;
}

TransformatorPtr around(const ICalibrationTransformatorGPX& correction, const TransformatorPtr& merged) {
    return merged ? factory().createTransformatorGPX(merged, correction.GetPolynomial()) : nullptr;
}

TransformatorPtr around(const ICalibrationTransformatorPSD& psd, const TransformatorPtr& merged) {
    using Polynomial = Constants::CalibrationPolynomialPSDFAST;
    return merged ? factory().createTransformatorPsd(merged,
                                                     std::dynamic_pointer_cast<const Polynomial>(psd.GetPolynomial()))
                  : nullptr;
}

}  // namespace

TransformatorPtr mergeReference(const TransformatorPtr& calibrator, const TransformatorPtr& reference) {
    if (const auto* const bounds = facetOf<ICalibrationTransformatorDecorator>(calibrator))
        return withBoundsOf(calibrator, mergeReference(bounds->GetDecoratedTransformator(), reference));
    if (const auto* const corrected = facetOf<ICalibrationTransformatorGPX>(calibrator))
        return mergeReference(corrected->GetTransformator(), reference);
    if (const auto* const bounds = facetOf<ICalibrationTransformatorDecorator>(reference))
        return mergeReference(calibrator, bounds->GetDecoratedTransformator());
    if (const auto* const corrected = facetOf<ICalibrationTransformatorGPX>(reference))
        return around(*corrected, mergeReference(calibrator, corrected->GetTransformator()));

    const auto* const psd = facetOf<ICalibrationTransformatorPSD>(calibrator);
    const auto* const referencePsd = facetOf<ICalibrationTransformatorPSD>(reference);
    if (psd != nullptr && referencePsd != nullptr)
        return around(*psd, mergeReference(psd->GetApparentTransformator(), referencePsd->GetApparentTransformator()));

    const FunctionalPtr law = lawOf(*reference, kindOf(*calibrator));
    return law ? withLaw(calibrator, adapted(law, calibrator->GetFunctionalConstants())) : nullptr;
}

}  // namespace kvan::io::ami
