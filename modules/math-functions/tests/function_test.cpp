#include "cfunction/fixed_elements.h"

#include <math-functions/function.h>
#include <test-support/support.h>

namespace kvan::math {

namespace {

using test::g_infinity;
using test::g_nan;

struct Point {
    double x;
    int order;
    double value;
};

TEST(Function, PolynomialsAndWhatContinuesThem) {
    const std::vector<double> cubic{7.0, -3.0, 2.0, 0.5};      // at 2: 13, slope 11; at -1: 11.5, slope -5.5
    const std::vector<double> halfPowers{1.0, 4.0, 3.0, 2.0};  // at 4: 37, slope 10; at 9: 94, slope 38 / 3
    const struct {
        int strategy;
        const std::vector<double>& coefficients;
        double lower, upper;
        std::vector<Point> points;
    } cases[] = {
        {6, cubic, -1, 2, {{10, 0, 677}, {10, 1, 187}, {10, 2, 34}, {10, 3, 3}, {10, 4, 0}}},
        {9, cubic, -1, 2, {{0, 0, 7}, {2, 0, 13}, {5, 0, 16}, {-3, 0, 9.5}}},
        {9, cubic, -1, 2, {{-3, 1, 1}, {5, 2, 0}, {-1, 1, -5.5}, {2, 1, 11}}},
        {10, cubic, -1, 2, {{5, 0, 16}, {1, 1, 2.5}}},
        {10, cubic, 2, -1, {{10, 0, 677}}},
        {10, cubic, 2, 2, {{10, 0, 677}}},
        {10, cubic, g_nan, 2, {{10, 0, 677}}},
        {11, halfPowers, 4, 9, {{6.25, 0, 1 + 10 + 18.75 + 31.25}, {9, 1, 2.0 / 3 + 3 + 9}, {0, 0, -3}}},
        {11, halfPowers, 4, 9, {{12, 0, 94 + 38}, {12, 1, 38.0 / 3}, {-5, 1, 10}, {-5, 2, 0}}},
        {11, {1, 0, 3}, 0, 9, {{-2, 0, -5}}},
        {6, {}, 0, 0, {{3, 0, 0}}},
    };
    for (const auto& [strategy, coefficients, lower, upper, points] : cases) {
        const CFunction f(strategy, coefficients, lower, upper);
        for (const auto& [x, order, value] : points) {
            EXPECT_NEAR(f(x, order), value, 4e-15 * std::abs(value)) << strategy << " at " << x;
            EXPECT_EQ(f.Derivative(x, order), f(x, order));
        }
    }
    EXPECT_TRUE(std::isnan(CFunction(10, {0.0, 1.0}, 0.0, 1.0)(g_nan)));
}

TEST(Function, InterpolationGoesThroughItsPoints) {
    const std::vector<double> x{-2.0, 0.0, 0.5, 3.0, 4.0, 10.0};
    const std::vector<double> y{1.0, 0.0, 8.0, 0.25, 0.25, 3.0};
    for (int strategy = 1; strategy <= 5; ++strategy) {
        const CFunction f(strategy, x, y);
        for (std::size_t i = 0; i < x.size(); ++i) {
            EXPECT_NEAR(f(x[i]), y[i], 1e-14) << strategy;
            if (strategy != 2) {
                EXPECT_NEAR(f(x[i] - 1e-9), y[i], 1e-6) << strategy;
            }
            if (strategy >= 3 && i > 0 && i + 1 < x.size()) {
                EXPECT_NEAR(f(x[i], 1), f(x[i] - 1e-9, 1), 1e-5) << strategy;
            }
        }
        EXPECT_EQ(CFunction(strategy, {1.0}, {5.0})(-3.0), 5.0);
    }
}

TEST(Function, PiecesBetweenAndBesideThePoints) {
    const struct {
        const char* name;
        double tolerance;  // relative
        CFunction f;
        std::vector<Point> points;
    } cases[] = {
        {"lines", 0, {1, {0, 1, 3}, {0, 2, 1}}, {{2, 0, 1.5}, {5, 0, 0}, {-1, 0, -2}, {2, 1, -0.5}}},
        {"steps", 0, {2, {0, 1}, {5, 6}}, {{-9, 0, 5}, {0.999, 0, 5}, {7, 0, 6}}},
        // 0.75 t + 0.25 t^3, then 1 + 1.5 u + 0.75 u^2 - ...
        {"spline",
         4e-15,
         {3, {0, 1, 2}, {0, 1, 3}},
         {{0.5, 0, 0.40625}, {1.5, 0, 1.90625}, {1, 2, 1.5}, {-2, 0, -1.5}, {4, 0, 7.5}}},
        // A parabola is met exactly.
        {"Akima",
         4e-15,
         {4, {-2, -1, 0, 1, 2, 3}, {4, 1, 0, 1, 4, 9}},
         {{2.5, 0, 6.25}, {-1.5, 0, 2.25}, {5, 0, 9 + 2 * 6}}},
        {"constant pieces", 0, {8, {0, 2}, {1, -1}}, {{-5, 0, 1}, {2, 0, -1}, {0, 1, 0}}},
        {"straight pieces", 0, {7, {0, 2}, {1, 0.5, 10, -1}}, {{-2, 0, 0}, {1, 0, 1.5}, {5, 0, 7}, {5, 1, -1}}},
    };
    for (const auto& [name, tolerance, f, points] : cases)
        for (const auto& [x, order, value] : points)
            EXPECT_NEAR(f(x, order), value, tolerance * std::abs(value)) << name << " at " << x;

    const std::vector<double> x{0, 1, 2, 3, 4};
    const std::vector<double> peak{0.001, 0.001, 9.0, 0.0, 5.0};
    double lowest = 1.0;
    for (double place = -1.0; place < 5.0; place += 0.01)
        lowest = std::min(lowest, CFunction(5, x, peak)(place));
    EXPECT_GE(lowest, 0.0);
}

TEST(Function, ElementsOfOneStretch) {
    const CGeomBaseElem stretch{CGeomPoint1d(1.0), CGeomPoint1d(3.0)};
    EXPECT_EQ(CBar1dElem(stretch, 4.0).Value(1.0), 4.0);
    EXPECT_EQ(CBar1dElem(stretch, 4.0).Value(3.0), 0.0);
    EXPECT_EQ(CHaar1dElem(stretch, 4.0).Value(1.5), 4.0);
    EXPECT_EQ(CHaar1dElem(stretch, 4.0).Value(2.0), -4.0);
    EXPECT_EQ(CHaar1dElem(stretch, 4.0).Value(0.9), 0.0);
}

TEST(Function, BlocksHaveTheBitsOfSingleValues) {
    std::vector<double> x{-g_infinity, g_infinity, -0.0, 0.0, 1e300};
    for (int k = 0; k < 1000; ++k)
        x.push_back(std::ldexp(k * 0.7, k % 12));
    const std::vector<double> coefficients{1e-3, 1.0, -2.5e-6, 1.3e-9, -2e-14, 3e-18};
    for (const int strategy : {6, 7, 9, 10, 11}) {
        const CFunction f = strategy == 7 ? CFunction(7, {100.0, 700.0}, {1.0, 2.0, 3.0, 4.0})
                                          : CFunction(strategy, coefficients, 150.0, 2500.0);
        std::vector<double> values = x;
        f.Values(values.data(), values.data(), values.size());
        for (std::size_t k = 0; k < x.size(); ++k)
            if (!std::isnan(f(x[k])) || !std::isnan(values[k])) {
                EXPECT_EQ(values[k], f(x[k])) << strategy << " at " << x[k];
            }
    }
    double value = 5.0;
    CFunction().Values(&value, &value, 1);
    EXPECT_EQ(value, 0.0);
}

TEST(Function, RefusesWhatMakesNoElement) {
    const auto failureOf = [](int strategy, const std::vector<double>& x, const std::vector<double>& y) {
        return test::failureOf<std::invalid_argument>([&] { CFunction(strategy, x, y); });
    };
    for (const int strategy : {0, 12, -1})
        EXPECT_EQ(failureOf(strategy, {1.0}, {1.0}), "Unsupported CFunction strategy.");
    for (const int strategy : {1, 2, 3, 8})
        EXPECT_EQ(failureOf(strategy, {1.0, 2.0}, {1.0}),
                  "not initialized correctly, xValues.size() 2 != yValues.size() 1");
    for (const int strategy : {4, 5})
        EXPECT_EQ(failureOf(strategy, {1.0, 2.0}, {1.0}), "CalcInterpolation failed because y.size() 1!= x.size() 2");
    EXPECT_EQ(failureOf(7, {1.0, 2.0}, {1.0, 2.0}), "not initialized correctly, 2*xValues.size() != yValues.size()");
    for (const int strategy : {1, 2, 3, 4, 5, 7, 8}) {
        EXPECT_EQ(failureOf(strategy, {}, {}), "not initialized correctly, MakeEmptyContainer");
        const std::vector<double> values(strategy == 7 ? 4 : 2);
        for (const double second : {1.0, 0.5, g_nan, g_infinity})
            EXPECT_EQ(failureOf(strategy, {1.0, second}, values),
                      "not initialized correctly, xValues not strictly ascending");
    }
    EXPECT_EQ(failureOf(10, {1.0}, {1.0}),
              "not initialized correctly, xValues are not the two ends of an argument range");
}

}  // namespace

}  // namespace kvan::math
