#include "constants/CalibrationConstantsFunctionalWrappedTOF1.h"
#include "families/ICalibSerialization.h"
#include "transformation/WrappingTransformator.h"
#include "transformation/kite/KiteTransformators.h"
#include "utilities/FiniteNumbers.h"

#include <calibration-core/interfaces/ICalibrationTransformatorKITE.h>
#include <math-functions/function.h>

// KITE 1: one polynomial in time, whose inverse is searched. The search begins with the calibrated times and widens
// while the mass is not passed: upward by doubling, downward by halving, and not beyond a turn of the law, since there
// is no unique time beyond one. A thousand steps bound the way up whatever the numbers are.
namespace kvan::calibration::Transformation {

namespace {

[[noreturn]] void refuse(const char* text) {
    BOOST_THROW_EXCEPTION(std::runtime_error(text));
}

constexpr const char* g_notImplemented = "Not implemented yet.";

}  // namespace

/// mass = evaluator(raw - correction time), a polynomial for all times. Its own constants are those of the time axis.
class CalibrationTransformatorKITE1 final : public WrappingTransformator<CalibrationTransformatorKITE1, OnRawValues>,
                                            public ICalibrationTransformatorKITE,
                                            public ICalibSerialization {
public:
    static constexpr double FromInnerCost = 1.0;
    static constexpr double ToInnerCost = 150.0;

    CalibrationTransformatorKITE1(const std::shared_ptr<ICalibrationTransformator>& tof,
                                  const Constants::CalibrationPolynomialKITE1& polynomial)
        : WrappingTransformator(tof), m_polynomial(polynomial) {
        InitData();
    }

    double FromInner(double raw) const { return m_evaluator(raw - m_correctionTime); }

    bool FromInnerBlock(double* values, std::size_t count) const noexcept {
        // In two loops, both over vectors.
        for (std::size_t k = 0; k < count; ++k)
            values[k] -= m_correctionTime;
        m_evaluator.Values(values, values, count);
        return false;
    }

    double ToInner(double mass) const {
        bool found = false;
        double time = 0.0;
        // Without coefficients there is no law and no time either.
        if (m_evaluator) {
            const Range interval = searchInterval(mass);
            m_evaluator.Inverse(mass, interval.first, interval.first, interval.second, found, time);
        }
        if (!found)
            refuse("Kite1: unable to invert polynomial.");
        return time + m_correctionTime;
    }

    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Kite1); }
    // Those of the axis inside, under the code of this family.
    std::shared_ptr<ICalibrationConstantsFunctional> GetFunctionalConstants() const override {
        return Constants::wrappedTof1(inner().GetFunctionalConstants(), CalibrationFamily::Kite1);
    }
    void SetMeasurementModeInfo(const std::shared_ptr<IMeasurementModeInfo>&) override {
        refuse(
            "CalibrationTransformatorKITE::SetMeasurementModeInfo: KITE transformator does not have measurement "
            "modes.");
    }
    bool IsEqual(const ICalibrationTransformator& other) const override {
        const auto* const same = dynamic_cast<const CalibrationTransformatorKITE1*>(&other);
        return same != nullptr && inner().IsEqual(same->inner()) && m_polynomial.IsEqual(same->m_polynomial);
    }

    double getCurrentParentMass() const override { refuse(g_notImplemented); }
    double getCurrentReferenceTime() const override { refuse(g_notImplemented); }
    int getInterpolationMode() const override { refuse(g_notImplemented); }
    void setCurrentParentMass(double, double) override { refuse(g_notImplemented); }
    void setInterpolationMode(int) override { refuse(g_notImplemented); }
    std::shared_ptr<ICalibrationPolynomialKITE> GetPolynomial() const override {
        return std::make_shared<Constants::CalibrationPolynomialKITE1>(m_polynomial);
    }
    void DumpData(std::ostream& sink) const override { m_polynomial.Dump(sink); }

    CalibrationFamily GetStoredFamily() const override { return CalibrationFamily::Kite1; }

    void Dump(std::ostream& sink) const override {
        sink << "CalibrationTransformatorKITE1[ ";
        inner().Dump(sink);
        DumpData(sink);
        sink << "]\n";
    }

private:
    void InitData() {
        const auto& coefficients = m_polynomial.GetCoefficients();
        m_correctionTime = m_polynomial.GetCorrectionTime();
        m_searchInterval = m_polynomial.GetArgRange();
        if (!Utilities::areUsable(coefficients) ||
            !Utilities::areFinite({m_correctionTime, m_searchInterval.first, m_searchInterval.second}))
            refuse("Kite1 InitData(): unexpected error.");
        constexpr int polynomialForAllX = 6;
        if (!coefficients.empty())
            m_evaluator = math::CFunction(polynomialForAllX, {}, coefficients);
    }

    /// The calibrated times, widened until the law passes `mass` at both ends or turns. The ends are the call's own:
    /// each mass gets the same answer whatever was converted before, by any number of threads.
    Range searchInterval(double mass) const {
        constexpr double endOfTime = 1e+20;
        constexpr int mostSteps = 1000;
        auto [low, high] = m_searchInterval;
        double massAtHigh = m_evaluator(high);
        for (int step = 0; mass > massAtHigh && high < endOfTime && step < mostSteps; ++step) {
            // Doubled; from near 0 on by a thousand, so that it moves at all.
            const double next = high + (high > 1.0 ? high : 1000.0);
            const double massAtNext = m_evaluator(next);
            // The law has turned: a time beyond would not be unique. NaN ends here too.
            if (!(massAtNext > massAtHigh))
                break;
            high = next;
            massAtHigh = massAtNext;
        }
        double massAtLow = m_evaluator(low);
        while (mass < massAtLow && low > 0.0) {
            const double next = low > 1.0 ? low * 0.5 : 0.0;
            const double massAtNext = m_evaluator(next);
            if (!(massAtNext < massAtLow))
                break;
            low = next;
            massAtLow = massAtNext;
        }
        return {low, high};
    }

    Constants::CalibrationPolynomialKITE1 m_polynomial;
    math::CFunction m_evaluator;
    double m_correctionTime = 0.0;
    Range m_searchInterval;
};

std::shared_ptr<ICalibrationTransformator> newKite1(const std::shared_ptr<ICalibrationTransformator>& tof,
                                                    const Constants::CalibrationPolynomialKITE1& polynomial) {
    return std::make_shared<CalibrationTransformatorKITE1>(tof, polynomial);
}

}  // namespace kvan::calibration::Transformation
