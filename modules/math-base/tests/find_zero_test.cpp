#include <math-base/find_zero.h>
#include <test-support/support.h>

namespace kvan::math {

namespace {

TEST(FindZeroInRange, FindsTheZeroToTheLastBits) {
    const struct {
        double a, b, zero;
        double (*f)(double);
    } cases[] = {
        {0.0, 2.0, std::sqrt(2.0), [](double x) { return x * x - 2.0; }},
        {2.0, 3.0, 2.0945514815423265, [](double x) { return x * (x * x - 2.0) - 5.0; }},
        {-1.0, 4.0, 0.0, [](double x) { return std::cbrt(x); }},
        {1e5, 1e6, 1.5e5, [](double x) { return std::abs(x - 1e5) - 5e4; }},
        {1.0, 2.0, 2.0, [](double x) { return x - 2.0; }},
    };
    for (const auto& sample : cases) {
        int steps = -1;
        EXPECT_NEAR(findZeroInRange(sample.a, sample.b, sample.f, 0.0, 1000, &steps), sample.zero,
                    1e-15 * (1.0 + sample.zero));
        EXPECT_LT(steps, 1000);
    }
}

TEST(FindZeroInRange, StopsAtToleranceAndIterations) {
    const auto line = [](double x) { return std::atan(x - 3.0); };
    int steps = 0;
    EXPECT_NEAR(findZeroInRange(0.0, 1e3, line, 0.5, 1000, &steps), 3.0, 0.5);
    EXPECT_EQ(findZeroInRange(0.0, 1e3, line, 0.0, 0, &steps), 1e3);
    EXPECT_EQ(steps, 0);
    findZeroInRange(0.0, 1e3, line, 0.0, 2, &steps);
    EXPECT_EQ(steps, 2);
    EXPECT_EQ(findZeroInRange(
                  1.0, 2.0, [](double) { return std::nan(""); }, 0.0, 1000, &steps),
              findZeroInRange(
                  1.0, 2.0, [](double) { return std::nan(""); }, 0.0, 1000));
}

TEST(FindZeroInRange, RefusesABracketThatIsNone) {
    const auto failureOf = [](double a, double b, double tolerance) {
        return test::failureOf([&] {
            findZeroInRange(
                a, b, [](double x) { return x; }, tolerance, 10);
        });
    };
    EXPECT_EQ(failureOf(0, 1, -1e-300), "findZeroInRange(): tol < 0.");
    EXPECT_EQ(failureOf(1, 1, 0), "findZeroInRange(): b <= a.");
    EXPECT_EQ(failureOf(0, std::nan(""), 0), "findZeroInRange(): b <= a.");
}

}  // namespace

}  // namespace kvan::math
