#include "compression/compressor_registry.h"

#include <boost/throw_exception.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <stdexcept>

namespace kvan::compression {

namespace {

/// A compressor that native files name. Without a factory this build knows the GUID and cannot decode its data.
struct RegisteredCompressor {
    boost::uuids::uuid id;
    std::shared_ptr<ICompressor> (*make)();
};

const auto& registeredCompressors() {
    const boost::uuids::string_generator parse;
    static const RegisteredCompressor compressors[] = {
        {parse("4F1EA0CB-5A6A-43ED-9562-D6D873034577"), nullptr},  // DPCM/VLC
        {parse("7F88E97F-2038-40ba-8F3A-FCA9A9719569"), nullptr},  // variable VLI2
        {parse("6BB2E64A-27A0-4575-A66A-4E312C8B9AD7"), nullptr},  // ZLib
    };
    return compressors;
}

}  // namespace

std::shared_ptr<ICompressor> getCompressor(const boost::uuids::uuid& id) {
    for (const RegisteredCompressor& known : registeredCompressors())
        if (known.id == id && known.make != nullptr)
            return known.make();
    BOOST_THROW_EXCEPTION(std::runtime_error("unknown compressor id: " + boost::uuids::to_string(id)));
}

}  // namespace kvan::compression
