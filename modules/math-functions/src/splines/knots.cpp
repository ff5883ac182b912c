#include "splines/knots.h"

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <cmath>
#include <stdexcept>

// Points must ascend strictly and be finite at both ends, hence everywhere. The texts of the refusals are given.
namespace kvan::math {

void throwNotInitialized(const std::string& what) {
    BOOST_THROW_EXCEPTION(std::invalid_argument("not initialized correctly, " + what));
}

void checkKnots(const std::vector<double>& x) {
    // A function of no points has no value anywhere.
    if (x.empty())
        throwNotInitialized("MakeEmptyContainer");
    // Written so that a NaN anywhere is not ascending.
    const auto notAscending = [](double a, double b) { return !(a < b); };
    if (std::adjacent_find(x.begin(), x.end(), notAscending) != x.end() || !std::isfinite(x.front()) ||
        !std::isfinite(x.back()))
        throwNotInitialized("xValues not strictly ascending");
}

void checkPoints(const std::vector<double>& x, const std::vector<double>& y) {
    if (x.size() != y.size())
        throwNotInitialized("xValues.size() " + std::to_string(x.size()) + " != yValues.size() " +
                            std::to_string(y.size()));
    checkKnots(x);
}

}  // namespace kvan::math
