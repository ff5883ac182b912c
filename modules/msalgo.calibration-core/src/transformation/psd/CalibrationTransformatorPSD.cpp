#include "transformation/psd/CalibrationTransformatorPSD.h"

#include "constants/CalibrationConstantsFunctionalWrappedTOF1.h"
#include "constants/PolynomialText.h"
#include "families/ICalibSerialization.h"
#include "transformation/WrappingTransformator.h"
#include "utilities/FiniteNumbers.h"

#include <calibration-core/interfaces/ICalibrationTransformatorPSD.h>
#include <math-functions/function.h>
#include <math-functions/invert.h>

// PSD: a polynomial in the root of the apparent mass, which the transformator inside gives. Negative apparent masses
// are mirrored, so that the law is odd; beyond its range it goes on straight with the slope of the end. The inverse is
// searched among all apparent masses up to 1e9, a bound far beyond any spectrum that only keeps the search finite.
namespace kvan::calibration::Transformation {

/// mass = polynomial(sqrt(apparent mass)), straight on outside the range of the polynomial and mirrored for negative
/// apparent masses.
class CalibrationTransformatorPSD final : public WrappingTransformator<CalibrationTransformatorPSD, OnMasses>,
                                          public ICalibrationTransformatorPSD,
                                          public ICalibSerialization {
public:
    static constexpr double FromInnerCost = 1.5;
    static constexpr double ToInnerCost = 190.0;

    CalibrationTransformatorPSD(const std::shared_ptr<ICalibrationTransformator>& tof,
                                const std::shared_ptr<const Constants::CalibrationPolynomialPSDFAST>& polynomial)
        : WrappingTransformator(tof), m_polynomial(polynomial ? cloneOf(*polynomial) : nullptr) {
        if (m_polynomial)
            initData();
    }

    double FromInner(double apparentMass) const {
        if (!m_polynomial)
            return apparentMass;
        return 0.0 > apparentMass ? -m_law(-apparentMass) : m_law(apparentMass);
    }

    /// In chunks that stay in the first cache, with the bits of the single form.
    bool FromInnerBlock(double* values, std::size_t count) const noexcept {
        if (!m_polynomial)
            return false;
        constexpr std::size_t chunkSize = 512;
        double masses[chunkSize];
        for (std::size_t begin = 0; begin < count; begin += chunkSize) {
            double* const chunk = values + begin;
            const std::size_t size = std::min(chunkSize, count - begin);
            // The law sees magnitudes; signs come back after it.
            for (std::size_t k = 0; k < size; ++k)
                masses[k] = 0.0 > chunk[k] ? -chunk[k] : chunk[k];
            m_law.Values(masses, masses, size);
            for (std::size_t k = 0; k < size; ++k)
                chunk[k] = 0.0 > chunk[k] ? -masses[k] : masses[k];
        }
        return false;
    }

    double ToInner(double mass) const {
        constexpr double mostApparentMass = 1e9;
        if (!m_polynomial)
            return mass;
        const auto apparentMass =
            math::invert([this](double value) { return FromInner(value); }, mass, -mostApparentMass, mostApparentMass);
        // No apparent mass up to the bound has that mass, or the law turns on the way.
        if (!apparentMass)
            BOOST_THROW_EXCEPTION(std::runtime_error("PSD: unable to invert polynomial."));
        return *apparentMass;
    }

    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Psd); }
    std::shared_ptr<ICalibrationConstantsFunctional> GetFunctionalConstants() const override {
        return Constants::wrappedTof1(inner().GetFunctionalConstants(), CalibrationFamily::Psd);
    }
    void SetMeasurementModeInfo(const std::shared_ptr<IMeasurementModeInfo>&) override {
        BOOST_THROW_EXCEPTION(
            std::runtime_error("CalibrationTransformatorPSD::SetMeasurementModeInfo: PSD transformator does not have "
                               "measurement modes."));
    }
    bool IsEqual(const ICalibrationTransformator& other) const override {
        const auto* const same = dynamic_cast<const CalibrationTransformatorPSD*>(&other);
        if (same == nullptr || !inner().IsEqual(same->inner()))
            return false;
        return m_polynomial && same->m_polynomial ? m_polynomial->IsEqual(*same->m_polynomial)
                                                  : m_polynomial == same->m_polynomial;
    }

    double ApparentMassToMass(double apparentMass) const override { return FromInner(apparentMass); }
    double MassToApparentMass(double mass) const override { return ToInner(mass); }
    std::shared_ptr<ICalibrationPolynomialPSDFAST> GetPolynomial() const override {
        return m_polynomial ? cloneOf(*m_polynomial) : nullptr;
    }
    std::shared_ptr<ICalibrationTransformator> GetApparentTransformator() const override {
        return std::dynamic_pointer_cast<ICalibrationTransformator>(inner().Clone());
    }

    CalibrationFamily GetStoredFamily() const override { return CalibrationFamily::Psd; }

    void Dump(std::ostream& sink) const override {
        sink << "CalibrationTransformatorPSD[ ";
        inner().Dump(sink);
        sink << "\t calibMode = " << GetCalibMode();
        if (m_polynomial) {
            const auto [low, high] = m_polynomial->GetArgRange();
            sink << "\t minIndex = " << low << ", maxIndex = " << high << "\t minAppMass = " << m_range.first
                 << ", maxAppMass = " << m_range.second << "\t minAppMassValue = " << m_law(m_range.first)
                 << ", maxAppMassValue = " << m_law(m_range.second)
                 << "\t dLowDeriv = " << m_law.Derivative(m_range.first, 1)
                 << ", dHighDeriv = " << m_law.Derivative(m_range.second, 1) << "\tPolynomial coefficients[";
            Constants::writeList(sink, m_polynomial->GetCoefficients());
            sink << "]\n";
            m_polynomial->Dump(sink);
        }
        sink << "]\n";
    }

private:
    static std::shared_ptr<Constants::CalibrationPolynomialPSDFAST> cloneOf(
        const Constants::CalibrationPolynomialPSDFAST& polynomial) {
        return std::make_shared<Constants::CalibrationPolynomialPSDFAST>(polynomial);
    }

    /// The range is cut at 0, where roots begin.
    void initData() {
        constexpr int polynomialInRoots = 11;
        m_range = m_polynomial->GetArgRange();
        // Numbers that are not finite would make every search fail, later and without a reason.
        if (!Utilities::areUsable(m_polynomial->GetCoefficients()) ||
            !Utilities::areFinite({m_range.first, m_range.second}))
            BOOST_THROW_EXCEPTION(std::runtime_error("PSD InitData(): unexpected error."));
        // The argument of the polynomial is a root.
        m_range.first = std::max(m_range.first, 0.0);
        m_law = math::CFunction(polynomialInRoots, m_polynomial->GetCoefficients(), m_range.first, m_range.second);
    }

    std::shared_ptr<const Constants::CalibrationPolynomialPSDFAST> m_polynomial;  // never changed, shared by copies
    math::CFunction m_law;
    Range m_range;
};

std::shared_ptr<ICalibrationTransformator> newPsd(
    const std::shared_ptr<ICalibrationTransformator>& tof,
    const std::shared_ptr<const Constants::CalibrationPolynomialPSDFAST>& polynomial) {
    return std::make_shared<CalibrationTransformatorPSD>(tof, polynomial);
}

}  // namespace kvan::calibration::Transformation
