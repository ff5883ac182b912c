#include "constants/FtmsModes.h"
#include "families/CalibrationFamilies.h"
#include "transformation/decorators/CalibrationTransformatorIndexBoundsChecker.h"
#include "transformation/decorators/CalibrationTransformatorRawBoundsChecker.h"
#include "transformation/gpx/CalibrationTransformatorGPX.h"
#include "transformation/kite/KiteTransformators.h"
#include "transformation/psd/CalibrationTransformatorPSD.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

// Every way to make a transformator. Those from two sets of constants walk the table of families, which knows the law
// and its axis; those around another transformator have numbers of their own. Whatever is handed in is copied, so that
// a caller may go on changing it; `adoptConstants` alone takes its objects over, for readers who just made them.
//
// Nothing here has a state: any thread at any time. Null and numbers that make no law throw, and never give null.
namespace kvan::calibration::Transformation {

namespace {

using Factory = ICalibrationTransformatorFactory;

/// A transformator of copies of the constants, for which the functional ones must be of the law.
Factory::TransformatorPtr makeOfCopies(const LawOfConstants& law, const Factory::FunctionalPtr& functional,
                                       const Factory::PhysicalPtr& physical) {
    if (!law.isLaw(functional.get()))
        BOOST_THROW_EXCEPTION(std::invalid_argument(law.refusal));
    return law.make(cloneObject(functional), cloneObject(physical));
}

Factory::TransformatorPtr makeTof(const Factory& factory, double timeDelay, double timeBase, double c0, double c1,
                                  double c2) {
    return factory.createTransformatorTof(
        std::make_shared<Constants::CalibrationConstantsFunctionalTOF1>(c0, c1, c2),
        std::make_shared<Constants::CalibrationConstantsPhysicalTOF>(timeDelay, timeBase));
}

void requireInner(const Factory::TransformatorPtr& inner, const char* failure) {
    if (!inner)
        BOOST_THROW_EXCEPTION(std::invalid_argument(std::string("CalibrationTransformatorFactory::") + failure));
}

}  // namespace

const std::shared_ptr<const ICalibrationTransformatorFactory>& CalibrationTransformatorFactory::instance() {
    // Made at the first call, by one thread; never replaced.
    static const std::shared_ptr<const ICalibrationTransformatorFactory> shared =
        std::make_shared<CalibrationTransformatorFactory>();
    return shared;
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformator(const FunctionalPtr& functional,
                                                                               const PhysicalPtr& physical) const {
    // The first law that the constants offer decides, so that constants of two families are of the first.
    for (const FamilyRow& row : FamilyTable::g_rows) {
        if (row.law == nullptr || !row.law->isLaw(functional.get()))
            continue;
        if (!row.law->isAxis(physical.get()))
            BOOST_THROW_EXCEPTION(
                std::invalid_argument("CalibrationTransformatorFactory::createTransformator: invalid calibration "
                                      "constants: types differ"));
        return makeOfCopies(*row.law, functional, physical);
    }
    BOOST_THROW_EXCEPTION(std::invalid_argument(
        "CalibrationTransformatorFactory::createTransformator: invalid transformator: type unknown"));
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createDecoratedTransformator(Decorator kind,
                                                                                        const TransformatorPtr& inner,
                                                                                        double lower,
                                                                                        double upper) const {
    requireInner(inner, "createDecoratedTransformator: no transformator to be decorated");
    // The kind may be any number: an enumeration is no promise.
    switch (kind) {
        case Decorator::RawBounds:
            return std::make_shared<CalibrationTransformatorRawBoundsChecker>(inner, lower, upper);
        case Decorator::IndexBounds:
            return std::make_shared<CalibrationTransformatorIndexBoundsChecker>(inner, lower, upper);
    }
    BOOST_THROW_EXCEPTION(std::invalid_argument(
        "CalibrationTransformatorFactory::createDecoratedTransformator: invalid transformator: type unknown"));
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorTrap(const FunctionalPtr& functional,
                                                                                   const PhysicalPtr& physical) const {
    return makeOfCopies(g_paladinLaw, functional, physical);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorLinear(
    const FunctionalPtr& functional, const PhysicalPtr& physical) const {
    return makeOfCopies(g_linearLaw, functional, physical);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorTof(const FunctionalPtr& functional,
                                                                                  const PhysicalPtr& physical) const {
    return makeOfCopies(g_tofLaw, functional, physical);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorTof2(const FunctionalPtr& functional,
                                                                                   const PhysicalPtr& physical) const {
    return makeOfCopies(g_tof2Law, functional, physical);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorIcr(const FunctionalPtr& functional,
                                                                                  const PhysicalPtr& physical) const {
    return makeOfCopies(g_ftmsLaw, functional, physical);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::adoptConstants(CalibrationFamily family,
                                                                          FunctionalPtr&& functional,
                                                                          PhysicalPtr&& physical) const {
    // No look at the classes: the caller made the objects for that family.
    return findRow(family)->law->make(std::move(functional), std::move(physical));
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorGPX(
    const TransformatorPtr& inner, const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial) const {
    requireInner(inner, "createTransformatorGPX: no transformator to be corrected");
    return std::make_shared<CalibrationTransformatorGPX>(inner, polynomial);
}

Factory::FunctionalPtr CalibrationTransformatorFactory::createConstantsFunctionalIcr(int calibMode, int ftmsRawMode,
                                                                                     int, bool quadraticFlag,
                                                                                     double alpha, double beta,
                                                                                     double freqHigh) const {
    using Constants::FtmsLaw;
    switch (Constants::ftmsModeOf(calibMode).law) {
        case FtmsLaw::Linear:
            return std::make_shared<Constants::CalibrationConstantsFunctionalFTMS04>(beta, freqHigh, calibMode,
                                                                                     ftmsRawMode);
        case FtmsLaw::Quadratic:
        // Blobs hold these, although no transformator is made of them.
        case FtmsLaw::ConstantsOnly:
            return std::make_shared<Constants::CalibrationConstantsFunctionalFTMS1356>(
                alpha, beta, freqHigh, quadraticFlag, calibMode, ftmsRawMode);
        case FtmsLaw::Index:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactory::createConstantsFunctionalIcr: mode 2 not supported [QX]"));
        default:
            BOOST_THROW_EXCEPTION(std::invalid_argument("unknown icr mode in serialization"));
    }
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorPsd(
    const TransformatorPtr& tof,
    const std::shared_ptr<const Constants::CalibrationPolynomialPSDFAST>& polynomial) const {
    if (!tof)
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationTransformatorFactory::createTransformatorPsd: invalid transformator: type unknown"));
    return newPsd(tof, polynomial);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorKite2(const TransformatorPtr& tof,
                                                                                    const Kite2Numbers& numbers) const {
    // The polynomial of KITE 2 is one of its parents, or a mix of two.
    if (!tof || numbers.parents.empty())
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationTransformatorFactory::createTransformatorKite2: can't create kite2Polynomial"));
    return newKite2(tof, Constants::CalibrationPolynomialKITE2(numbers));
}

/// The bounds of indices are kept, but nothing uses them: they count as ignored.
Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorKite2(
    double timeDelay, double timeBase, double c0, double c1, double c2, const std::vector<CCalibPolynomial>& parents,
    const CCalibPolynomial& global, const std::vector<double>& vc0, int interpolationMode, double parentMass,
    double referenceTime, int firstIndex, int lastIndex) const {
    // What a caller of this form cannot know is taken as measured with the same parent mass and time.
    return createTransformatorKite2(makeTof(*this, timeDelay, timeBase, c0, c1, c2),
                                    {.parentMass = parentMass,
                                     .referenceTime = referenceTime,
                                     .measuredParentMass = parentMass,
                                     .measuredReferenceTime = referenceTime,
                                     .indexRange = {firstIndex, lastIndex},
                                     .ignoreIndexBounds = true,
                                     .interpolationMode = interpolationMode,
                                     .parents = parents,
                                     .global = global,
                                     .vc0 = vc0});
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorKite(const TransformatorPtr& tof,
                                                                                   const Kite1Numbers& numbers) const {
    if (!tof)
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationTransformatorFactory::createTransformatorKite: can't create kitePolynomial"));
    return newKite1(tof, Constants::CalibrationPolynomialKITE1(numbers));
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorKite(
    double timeDelay, double timeBase, double c0, double c1, double c2, double parentMass, double correctionTime,
    const std::vector<double>& coefficients, double calibrationParentMass, double calibTimeLow, double calibTimeHigh,
    int firstIndex, int lastIndex) const {
    return createTransformatorKite(makeTof(*this, timeDelay, timeBase, c0, c1, c2),
                                   {.parentMass = parentMass,
                                    .correctionTime = correctionTime,
                                    .calibrationParentMass = calibrationParentMass,
                                    .calibTimeRange = {calibTimeLow, calibTimeHigh},
                                    .indexRange = {firstIndex, lastIndex},
                                    .coefficients = coefficients});
}

}  // namespace kvan::calibration::Transformation
