#include "compression/compressor_registry.h"

#include <boost/uuid/nil_generator.hpp>
#include <stdexcept>

#include <gtest/gtest.h>

namespace kvan::compression {
namespace {

TEST(GetCompressor, NamesTheIdThatItDoesNotKnow) {
    try {
        getCompressor(boost::uuids::nil_uuid());
        FAIL();
    } catch (const std::runtime_error& failure) {
        EXPECT_STREQ(failure.what(), "unknown compressor id: 00000000-0000-0000-0000-000000000000");
    }
}

}  // namespace
}  // namespace kvan::compression
