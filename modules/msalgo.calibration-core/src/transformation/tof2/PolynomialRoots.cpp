#include "transformation/tof2/PolynomialRoots.h"

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <cmath>
#include <complex>
#include <iterator>
#include <stdexcept>
#include <vigra/polynomial.hxx>

// The roots of a cubic by VIGRA, whose headers are heavy and stand in no other source. Its epsilon of 1e-14 decides
// which roots count as real: an imaginary part of at most 2 epsilon of the real one is set to 0.0. Coefficients that
// are not finite are refused before the search. A cubic without its two highest powers is refused too: the families
// choose a law without roots for it.
namespace kvan::calibration::Transformation {

std::vector<double> realRootsOfCubic(double p0, double p1, double p2, double p3) {
    constexpr double epsilon = 1e-14;
    const double coefficients[] = {p0, p1, p2, p3};
    unsigned int order = 3;
    while (!(std::abs(coefficients[order]) > 0.0) && order != 0)
        --order;
    if (order < 2)
        BOOST_THROW_EXCEPTION(std::runtime_error("Failed to determine roots of polynomial: order < 2."));

    std::vector<std::complex<double>> roots;
    const vigra::Polynomial<double> polynomial(coefficients, order, epsilon);
    const auto isFinite = [](double coefficient) { return std::isfinite(coefficient); };
    if (!std::all_of(std::begin(coefficients), std::end(coefficients), isFinite) ||
        !vigra::polynomialRoots(polynomial, roots, true))
        BOOST_THROW_EXCEPTION(std::runtime_error("Failed to determine roots of polynomial. Vigra returned error."));

    std::vector<double> real;
    for (const std::complex<double>& root : roots)
        if (root.imag() == 0.0)
            real.push_back(root.real());
    return real;
}

}  // namespace kvan::calibration::Transformation
