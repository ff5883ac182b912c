#include <math-base/find_zero.h>
#include <math-base/find_zero_block.h>
#include <test-support/support.h>

#include <random>

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

struct Search {
    double y, a, b;
};

/// All searches in one block, against one by one.
void expectTheBitsOfSingleSearches(const std::function<double(double)>& f, const std::vector<Search>& searches) {
    ZeroBlock block;
    for (std::size_t k = 0; k < g_zeroBlockSize; ++k) {
        const Search& search = searches[k % searches.size()];
        block.y[k] = search.y;
        block.previousX[k] = search.a;
        block.previousY[k] = f(search.a) - search.y;
        block.bestX[k] = search.b;
        block.bestY[k] = f(search.b) - search.y;
    }
    findZeroBlock(
        [&](const ZeroBlock::Column& x, ZeroBlock::Column& values)
            __attribute__((always_inline)) { std::transform(std::begin(x), std::end(x), std::begin(values), f); },
        block);
    for (std::size_t k = 0; k < g_zeroBlockSize; ++k) {
        const Search& search = searches[k % searches.size()];
        const double expected = findZeroInRange(
            search.a, search.b, [&](double x) { return f(x) - search.y; }, 0.0, 1000);
        EXPECT_EQ(std::memcmp(&block.bestX[k], &expected, sizeof expected), 0)
            << search.y << ": " << block.bestX[k] << " instead of " << expected;
    }
}

TEST(FindZeroBlock, HasTheBitsOfFindZeroInRange) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    const std::function<double(double)> laws[] = {
        [](double x) { return (2e-4 * x + 0.05) * x * x + 1280.0 * x - 3.0; },  // nearly straight
        [](double x) { return x * x * x * x * x; },
        [](double x) { return std::atan(40.0 * (x - 20.0)); },  // a step
        [](double x) { return x < 30.0 ? -1.0 : 1.0; },         // a jump
        [](double x) { return x > 10.0 && x < 25.0 ? NAN : x; },
        [](double) { return 0.0; },
    };
    for (const auto& law : laws)
        for (const double width : {1e-3, 1.0, 64.0, 1e9}) {
            std::vector<Search> searches;
            for (std::size_t k = 0; k < g_zeroBlockSize; ++k) {
                const double a = 32.0 - width * share(random);
                const double b = 32.0 + width * share(random);
                searches.push_back({law(a) + (law(b) - law(a)) * share(random), a, b});
            }
            expectTheBitsOfSingleSearches(law, searches);
        }
    // Zeros at the ends, one after the other; one that 1000 steps do not reach; no zero at all.
    expectTheBitsOfSingleSearches(laws[1], {{1.0, 1.0, 2.0}, {32.0, 1.0, 2.0}, {1e-300, 0.0, 1.0}, {50.0, 1.0, 2.0}});
    expectTheBitsOfSingleSearches([](double x) { return x; }, {{5e-324, -1.0, 1.0}, {1e-310, 0.0, 1.0}});
    expectTheBitsOfSingleSearches([](double x) { return x > 0.0 ? 1.0 : -1.0; },
                                  {{0.0, -1.0, 1.0}, {0.5, -3.0, 1e300}});
}

}  // namespace

}  // namespace kvan::math
