#include <sysutils/text_conversion.h>
#include <test-support/support.h>

namespace kvan::sys {
namespace {

TEST(TextConversion, RoundTripAndRefusal) {
    const std::string narrow = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(do_widen(narrow), L"a\u00e9\u20ac\U0001f600");
    EXPECT_EQ(do_narrow(do_widen(narrow)), narrow);
    for (const char* bad : {"\xC3", "\xFF", "\xED\xA0\x80"})
        EXPECT_EQ(test::failureOf<std::range_error>([&] { do_widen(bad); }), "bad conversion") << bad;
    EXPECT_EQ(test::failureOf<std::range_error>([] { do_narrow(std::wstring(1, static_cast<wchar_t>(0xD800))); }),
              "bad conversion");
}

}  // namespace
}  // namespace kvan::sys
