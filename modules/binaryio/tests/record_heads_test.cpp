#include <binaryio/binary_failure.h>
#include <binaryio/heap_binary.h>
#include <binaryio/magic_number.h>
#include <binaryio/version_number.h>
#include <test-support/support.h>

namespace kvan::binaryio {
namespace {

using test::failureOf;

template <class... Fields>
std::string record(Fields... fields) {
    std::string bytes;
    (bytes.append(reinterpret_cast<const char*>(&fields), sizeof fields), ...);
    return bytes;
}

TEST(MagicNumber, IsTheHashOfItsName) {
    EXPECT_EQ(MagicNumber::valueOf("rYUlExKICZ"), 0xBFA0001A);  // comes by 0x8000
    EXPECT_EQ(MagicNumber::valueOf(""), 0xBFA00000);
    EXPECT_EQ(MagicNumber::valueOf(nullptr), 0xBFA00000);
}

TEST(MagicNumber, NamesBothSidesOfAMismatch) {
    const MagicNumber array("CArray");
    const MagicNumber reference("ReferenceCalibrator");
    const std::string bytes = record(0xBFA1D266u, 0xBFA1F2D3u, 0x12ABu);
    IHeapBinary stream(bytes.data(), bytes.size());
    MagicNumber adopted;
    MagicNumber expected = array;
    stream >> adopted;
    EXPECT_EQ(adopted, array);
    EXPECT_EQ(failureOf([&] { stream >> expected; }),
              "Found bfa1f2d3x (ReferenceCalibrator) but expected bfa1d266x (CArray): Unexpected magic number");
    EXPECT_EQ(failureOf([&] { stream >> expected; }),
              "Found 12abx (<unknown number>) but expected bfa1d266x (CArray): Unexpected magic number");
}

TEST(VersionNumber, ComparesByPartsWithTheEmptyOneBelow) {
    EXPECT_LT(VersionNumber(), VersionNumber(0, 0));
    EXPECT_FALSE(VersionNumber() < VersionNumber());
    EXPECT_EQ(VersionNumber(), VersionNumber());
    EXPECT_LT(VersionNumber(1, 2), VersionNumber(1, 10));
    EXPECT_LT(VersionNumber(1, 10), VersionNumber(2, 0));
    EXPECT_EQ(VersionNumber(1, 10).toString(), "1.10");
}

TEST(VersionNumber, IsExpected) {
    const std::string bytes = record(std::uint16_t{1}, std::uint16_t{10});
    const auto reading = [&](const VersionNumber& expected) {
        IHeapBinary stream(bytes.data(), bytes.size());
        return failureOf([&] { stream >> expected_type(expected); });
    };
    EXPECT_EQ(reading({1, 10}), "");
    EXPECT_EQ(reading({1, 2}), "Found V1.10 but expecting V1.2: Unexpected version number");
    EXPECT_EQ(reading({}), "Invalid empty version: Empty version number");
}

TEST(StreamedText, ComesWholeOrNotAtAll) {
    const std::uint32_t cString = 0xBFAB271D;
    const std::uint32_t stdString = 0xBFA29610;
    const struct {
        std::string bytes;
        std::uint32_t flags;
        std::string text, failure;
    } cases[] = {
        {record(cString, 1u, '\0'), 0, "", ""},
        {record(cString, 3u, 'a', 'b', '\0'), 0, "ab", ""},
        {record(cString, std::uint64_t{3}, 'a', 'b', 'x'), 2, "ab", ""},
        {record(stdString, 2u, 'a', 'b'), 0, "ab", ""},
        {record(stdString, 2u, 'a', 'b'), 2, "before",
         "Incompatible container size alignment: Unspecified stream error"},
        {record(1u), 0, "before",
         "Found 1x (<unknown number>) but expected bfab271dx (CString-ASCII): Unexpected magic number"},
        {record(stdString, 0xFFFFFFFFu, 'a'), 0, "before",
         "Trying to read 4294967295 bytes from buffer of size 9 at offset 8: Binary position out of bounds"},
        {record(cString, 3u, 'a', 'b'), 0, "before",
         "Trying to read 1 bytes from buffer of size 10 at offset 10: Binary position out of bounds"},
        {record(cString, 0u, 'a'), 0, "before",
         "Trying to read 18446744073709551615 bytes from buffer of size 9 at offset 8: Binary position out of bounds"},
    };
    for (const auto& stored : cases) {
        IHeapBinary stream(stored.bytes.data(), stored.bytes.size());
        stream.setFlags(stored.flags);
        std::string text = "before";
        EXPECT_EQ(failureOf([&] { stream >> text; }), stored.failure);
        EXPECT_EQ(text, stored.text);
    }
}

TEST(BinaryFailure, HasItsOwnCategory) {
    EXPECT_STREQ(streamCategory().name(), "binary io stream");
    std::string texts;
    for (int code = -1; code < 9; ++code)
        texts += streamCategory().message(code) + "; ";
    EXPECT_EQ(
        texts,
        "Unknown stream error; Success; Unspecified stream error; Binary position out of bounds; Unexpected magic "
        "number; Empty version number; Unexpected version number; End of stream; Invalid operation; "
        "Unknown stream error; ");
}

}  // namespace
}  // namespace kvan::binaryio
