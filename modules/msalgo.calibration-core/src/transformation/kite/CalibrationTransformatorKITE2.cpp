#include "families/ICalibSerialization.h"
#include "transformation/WrappingTransformator.h"
#include "transformation/kite/Kite2Law.h"
#include "transformation/kite/KiteTransformators.h"

#include <calibration-core/interfaces/ICalibrationTransformatorKITE.h>
#include <logger/logger.h>

// KITE 2: everything of the law stands in `Kite2Law`; here are the mode switches, the refusals and the log lines that
// the family is known for. A change of parent mass or mode builds a new law first, so that a failure leaves the old
// one; copies share the law, which never changes.
namespace kvan::calibration::Transformation {

namespace {

[[noreturn]] void refuse(const char* text) {
    BOOST_THROW_EXCEPTION(std::runtime_error(text));
}

void warn(const char* text) {
    const auto logger = logging::Logger::getLogger("kvan.calibration_core.Kite2Transformator");
    KVAN_LOG(logger, WARN) << text;
}

}  // namespace

/// The polynomial is the law; of the transformator inside only the time axis is used.
class CalibrationTransformatorKITE2 final : public WrappingTransformator<CalibrationTransformatorKITE2, OnRawValues>,
                                            public ICalibrationTransformatorKITE,
                                            public ICalibSerialization {
public:
    static constexpr double FromInnerCost = 20.0;
    static constexpr double ToInnerCost = 5.0;

    CalibrationTransformatorKITE2(const std::shared_ptr<ICalibrationTransformator>& tof,
                                  const Constants::CalibrationPolynomialKITE2& polynomial)
        : WrappingTransformator(tof), m_polynomial(polynomial) {
        InitData(polynomial);
        // A mode is no reason to refuse: it is stored, and no formula looks at it.
        if (tof->GetCalibMode() != 0)
            tellCalibMode();
    }

    double FromInner(double raw) const { return m_law->RawToMass(raw); }
    double ToInner(double mass) const { return m_law->MassToRaw(mass); }
    bool FromInnerBlock(double* values, std::size_t count) const noexcept { return m_law->RawsToMasses(values, count); }

    // Without the global polynomial, w is the root of the mass, and h rises with it inside its range.
    Range monotonicMassRange(double mass) const override {
        if (m_law->globalPolynomialEnabled())
            refuse("Kite2: monotonicMassRange() available only for disabled global polynomial.");
        if (mass < 0.0)
            refuse("m0 argument out of expected range.");
        return {0.0, std::numeric_limits<double>::infinity()};
    }
    Range usableMassRange(double mass, double) const override { return monotonicMassRange(mass); }

    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Kite2); }
    // The polynomial is no set of two constants: callers know the family and do not ask.
    std::shared_ptr<ICalibrationConstantsFunctional> GetFunctionalConstants() const override {
        refuse("GetFunctionalConstants(): the Kite2 transformator has no dedicated functional-constants object.");
    }
    void SetFunctionalConstants(const std::shared_ptr<ICalibrationConstantsFunctional>&) override {
        refuse("The Kite2 transformator has no dedicated functional-constants object.");
    }
    void SetMeasurementModeInfo(const std::shared_ptr<IMeasurementModeInfo>&) override {
        refuse("Kite2 transformator does not have measurement modes.");
    }
    // The time axis keeps the mode; the law has no use for it.
    void SetCalibMode(int mode) override {
        WrappingTransformator::SetCalibMode(mode);
        if (mode != 0)
            tellCalibMode();
    }
    bool IsEqual(const ICalibrationTransformator& other) const override {
        const auto* const same = dynamic_cast<const CalibrationTransformatorKITE2*>(&other);
        return same != nullptr && inner().IsEqual(same->inner()) && m_polynomial.IsEqual(same->m_polynomial);
    }

    double getCurrentParentMass() const override { return m_polynomial.GetParentMass(); }
    double getCurrentReferenceTime() const override { return m_polynomial.GetNumbers().referenceTime; }
    int getInterpolationMode() const override { return m_polynomial.GetNumbers().interpolationMode; }
    void setCurrentParentMass(double parentMass, double referenceTime) override {
        auto numbers = m_polynomial.GetNumbers();
        numbers.parentMass = parentMass;
        numbers.referenceTime = referenceTime;
        replace(std::move(numbers));
    }
    void setInterpolationMode(int mode) override {
        auto numbers = m_polynomial.GetNumbers();
        numbers.interpolationMode = mode;
        replace(std::move(numbers));
    }
    std::shared_ptr<ICalibrationPolynomialKITE> GetPolynomial() const override {
        return std::make_shared<Constants::CalibrationPolynomialKITE2>(m_polynomial);
    }
    void DumpData(std::ostream&) const override {
        refuse("CalibrationTransformatorKITE2::DumpData: the transformator is not serializable");
    }

    CalibrationFamily GetStoredFamily() const override { return CalibrationFamily::Kite2; }

    void Dump(std::ostream& sink) const override {
        sink << "CalibrationTransformatorKITE2[ ";
        inner().Dump(sink);
        m_polynomial.Dump(sink);
        sink << "]\n";
    }

private:
    static void tellCalibMode() {
        warn("Kite2 CalibMode != 0 encountered. Entering possibly inconsistent and untested code paths.");
    }

    /// The polynomial is prepared and the law built before either is taken.
    void replace(Constants::CalibrationPolynomialKITE2::Numbers numbers) {
        Constants::CalibrationPolynomialKITE2 polynomial(std::move(numbers));
        InitData(polynomial);
        m_polynomial = std::move(polynomial);
    }

    void InitData(const Constants::CalibrationPolynomialKITE2& polynomial) {
        // Throws for numbers that make no law, before anything is changed.
        auto law = std::make_shared<const Kite2Law>(polynomial);
        if (!polynomial.GetIgnoreIndexBounds())
            warn(
                "InitData(): case 'IgnoreIndexBounds == false'. Should not occur in actual data. This case was never "
                "handled well.");
        m_law = std::move(law);
    }

    Constants::CalibrationPolynomialKITE2 m_polynomial;
    std::shared_ptr<const Kite2Law> m_law;  // shared by copies
};

std::shared_ptr<ICalibrationTransformator> newKite2(const std::shared_ptr<ICalibrationTransformator>& tof,
                                                    const Constants::CalibrationPolynomialKITE2& polynomial) {
    return std::make_shared<CalibrationTransformatorKITE2>(tof, polynomial);
}

}  // namespace kvan::calibration::Transformation
