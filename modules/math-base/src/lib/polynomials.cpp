#include <logger/logger.h>
#include <math-base/polynomials.h>

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <cmath>
#include <iterator>
#include <limits>
#include <ostream>
#include <stdexcept>

// Roots as the eigenvalues of the companion matrix, which LAPACK finds: the matrix has ones below its diagonal and, in
// the last column, the coefficients divided by the highest one, negated. Its eigenvalues come in LAPACK's order, which
// depends on nothing but the matrix, and real ones have an imaginary part of exactly 0.0.
//
// The monotonic range around x0 ends at the nearest such roots of the derivative. Complex ones do not count, however
// small their imaginary part: the derivative does not change its sign there.
extern "C" void dgeev_(const char* leftVectors, const char* rightVectors, const int* order, double* matrix,
                       const int* leadingDimension, double* realParts, double* imaginaryParts, double* left,
                       const int* leftDimension, double* right, const int* rightDimension, double* work,
                       const int* workSize, int* status, std::size_t leftLength, std::size_t rightLength);

namespace kvan::math {

namespace {

using Coefficients = std::vector<double>;

struct Listed {
    const std::vector<double>& values;
};

std::ostream& operator<<(std::ostream& sink, const Listed& list) {
    const char* separator = "";
    for (const double value : list.values) {
        sink << separator << value;
        separator = ", ";
    }
    return sink;
}

double valueAt(const Coefficients& polynomial, double x) {
    return horner(polynomial.back(), polynomial.size() - 1, x, [&](std::size_t i) { return polynomial[i]; });
}

std::vector<double> realRoots(const Coefficients& polynomial) {
    std::vector<double> real;
    if (polynomial.size() < 2)
        return real;
    std::vector<std::complex<double>> roots;
    polynomialRoots(polynomial.size(), polynomial.data(), roots);
    for (const std::complex<double>& root : roots)
        if (root.imag() == 0.0)
            real.push_back(root.real());
    return real;
}

}  // namespace

std::vector<double> derivativeOf(const std::vector<double>& coefficients) {
    std::vector<double> derivative;
    for (std::size_t power = 1; power < coefficients.size(); ++power)
        derivative.push_back(static_cast<double>(power) * coefficients[power]);
    if (derivative.empty())
        derivative.push_back(0.0);
    return derivative;
}

void polynomialRoots(std::size_t count, const double* coefficients, std::vector<std::complex<double>>& roots) {
    if (count < 2)
        BOOST_THROW_EXCEPTION(std::out_of_range("Too few coefficients."));
    const std::size_t n = count - 1;
    std::vector<double> matrix(n * n);
    std::vector<double> realParts(n);
    std::vector<double> imaginaryParts(n);
    // DGEEV needs three times the order at least, and is faster with more.
    std::vector<double> work(6 * n);
    polynomialRootsImpl(count, coefficients, roots, matrix.data(), realParts.data(), imaginaryParts.data(),
                        work.data());
}

void polynomialRootsImpl(std::size_t count, const double* coefficients, std::vector<std::complex<double>>& roots,
                         double* matrix, double* realParts, double* imaginaryParts, double* work) {
    const std::size_t n = count - 1;
    const double highest = coefficients[n];
    if (highest == 0.0)
        BOOST_THROW_EXCEPTION(std::runtime_error("Highest-order coefficient must not be zero."));

    bool finite = true;
    std::fill_n(matrix, n * n, 0.0);
    // Column by column, as Fortran has it.
    for (std::size_t k = 0; k + 1 < n; ++k)
        matrix[k * n + k + 1] = 1.0;
    for (std::size_t k = 0; k < n; ++k) {
        const double element = -(coefficients[k] / highest);
        matrix[(n - 1) * n + k] = element;
        finite = finite && std::isfinite(element);
    }

    // LAPACK's answer to a matrix that is not finite is to end the process.
    const int order = static_cast<int>(n);
    const int workSize = 6 * order;
    const int one = 1;
    int status = -1;
    if (finite)
        dgeev_("N", "N", &order, matrix, &order, realParts, imaginaryParts, nullptr, &one, nullptr, &one, work,
               &workSize, &status, 1, 1);
    if (status != 0)
        BOOST_THROW_EXCEPTION(std::runtime_error("DGEEV failed."));

    roots.clear();
    for (std::size_t k = 0; k < n; ++k)
        roots.emplace_back(realParts[k], imaginaryParts[k]);
}

std::pair<double, double> monotonicPolyRange(const std::vector<double>& coefficients, double x0) {
    const auto logger = logging::Logger::getLogger("kvan.math.monotonicPolyRange");
    KVAN_LOG(logger, TRACE) << "f(x) poly: " << Listed{coefficients};
    Coefficients derivative = derivativeOf(coefficients);
    KVAN_LOG(logger, TRACE) << "f'(x) poly: " << Listed{derivative};
    if (!(valueAt(derivative, x0) > 0.0))
        BOOST_THROW_EXCEPTION(std::runtime_error("Polynomial not strictly monotonously increasing at x0."));

    // The companion matrix divides by the highest coefficient.
    while (derivative.size() > 1 && !(std::abs(derivative.back()) > 0.0))
        derivative.pop_back();
    std::vector<double> roots = realRoots(derivative);
    KVAN_LOG(logger, TRACE) << "Real roots: " << Listed{roots};
    std::sort(roots.begin(), roots.end());

    constexpr double infinity = std::numeric_limits<double>::infinity();
    const auto above = std::upper_bound(roots.begin(), roots.end(), x0);
    // A root at x0 itself bounds neither side: the derivative is above 0 there, so it is none.
    const auto notBelow = std::lower_bound(roots.begin(), roots.end(), x0);
    return {notBelow == roots.begin() ? -infinity : *std::prev(notBelow), above == roots.end() ? infinity : *above};
}

}  // namespace kvan::math
