#pragma once

#include <complex>
#include <cstddef>
#include <utility>
#include <vector>

/// Polynomials as their coefficients in ascending order of power.
namespace kvan::math {

/// Horner's rule from `start` down: ((start * x + at(count - 1)) * x + at(count - 2)) and so on to at(0).
template <class Coefficients>
[[gnu::always_inline]] inline double horner(double start, std::size_t count, double x, const Coefficients& at) {
    double value = start;
    for (std::size_t i = count; i-- > 0;)
        value = value * x + at(i);
    return value;
}

/// The coefficients of the derivative: {0.0} of a constant.
std::vector<double> derivativeOf(const std::vector<double>& coefficients);

/// The `count` - 1 complex roots of the polynomial of `count` coefficients, as the eigenvalues of its companion matrix
/// and in the order in which LAPACK's DGEEV gives them. Replaces what `roots` holds.
///
/// Throws `std::out_of_range` "Too few coefficients." below two, `std::runtime_error` "Highest-order coefficient must
/// not be zero." and "DGEEV failed.", the latter also when a coefficient divided by the highest is no finite number.
void polynomialRoots(std::size_t count, const double* coefficients, std::vector<std::complex<double>>& roots);

/// The same in the caller's work space, for n = `count` - 1: `matrix` of n * n, `realParts` and `imaginaryParts` of n,
/// `work` of 6 * n doubles.
void polynomialRootsImpl(std::size_t count, const double* coefficients, std::vector<std::complex<double>>& roots,
                         double* matrix, double* realParts, double* imaginaryParts, double* work);

/// (lower, upper): the greatest interval around `x0` on which the polynomial increases strictly, with infinite ends
/// where nothing bounds it. It ends at the nearest roots of the derivative that are real to the last bit.
///
/// Throws `std::runtime_error` "Polynomial not strictly monotonously increasing at x0." unless it does, and what
/// `polynomialRoots` throws for the derivative.
std::pair<double, double> monotonicPolyRange(const std::vector<double>& coefficients, double x0);

}  // namespace kvan::math
