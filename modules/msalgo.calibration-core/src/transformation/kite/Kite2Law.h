#pragma once

#include <calibration-core/constants/CalibrationPolynomialKITE2.h>
#include <math-functions/polynomial_laws.h>

#include <optional>

namespace kvan::calibration::Transformation {

/// The law of KITE 2 in two stages: w = sqrt(|g(mass)|) and raw = h(w) + base, where h is the polynomial for the parent
/// mass and g the global polynomial, both continued straight outside their ranges. Does not change once it is made.
class Kite2Law {
public:
    /// Throws `std::runtime_error`: "Polynomial has local extrema inside boundaries.", "Bad global-poly coefficients.",
    /// and "Kite2 InitData(): unexpected error." for numbers that are not finite or coefficients beyond any use.
    explicit Kite2Law(const Constants::CalibrationPolynomialKITE2& polynomial);
    Kite2Law(const Kite2Law&) = delete;
    Kite2Law& operator=(const Kite2Law&) = delete;

    double MassToRaw(double mass) const;
    /// Throws `std::runtime_error` "Kite2 RawToMass: unable to invert polynomial.".
    double RawToMass(double raw) const;
    /// In place, with the bits of the single form; true if one of them failed.
    bool RawsToMasses(double* values, std::size_t count) const noexcept;

    /// Whether the global polynomial is another one than the identity.
    bool globalPolynomialEnabled() const { return m_global.has_value(); }

private:
    using Straight = math::StraightExtLaw<math::PlainArgument>;

    /// A polynomial as it is evaluated. Keeps the coefficients that the law refers to.
    struct Stage {
        explicit Stage(const Constants::CalibrationPolynomialSimple& polynomial);
        Stage(const Stage&) = delete;

        std::vector<double> coefficients;
        std::vector<double> derivative;
        Straight law;
    };

    struct Searches;
    static void bracketMasses(const Straight global, Searches& searches);
    static void solve(const Straight law, Searches& searches);
    std::size_t knotOf(double y) const;
    void bracketRoots(const double* raws, std::size_t count, Searches& searches) const;
    void convertBlock(double* values, std::size_t count) const;

    Stage m_polynomial;
    std::optional<Stage> m_global;
    double m_base;

    /// h where the search for w steps along: at 0, 1, 2, 4 and so on, as far as masses reach.
    static constexpr std::size_t KnotCount = 24;
    double m_knots[KnotCount];
    double m_values[KnotCount];
    std::size_t m_rising = 1;  ///< as many values as rise from the first one on
};

}  // namespace kvan::calibration::Transformation
