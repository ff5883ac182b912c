#include "compression/CompressorVLC.h"
#include "compression/CompressorVariableVLI2.h"
#include "compression/CompressorZLib.h"

#include <compression/compressor_registry.h>

#include <boost/throw_exception.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <stdexcept>

// The coders that a native file may name in its compression info. What the file stores is a GUID and nothing else, so
// the GUID stands for the whole format of the packed vectors. Whoever adds a coder adds its class and a line below.
//
// Every call makes a coder of its own, since a coder keeps its output buffer from one block to the next. A GUID that is
// not in the list fails here, and the failure repeats it.
namespace kvan::compression {

namespace {

/// A compressor that native files name.
struct RegisteredCompressor {
    boost::uuids::uuid id;
    std::shared_ptr<ICompressor> (*make)();
};

template <class Compressor>
RegisteredCompressor registered() {
    return {boost::uuids::string_generator()(Compressor::g_id),
            []() -> std::shared_ptr<ICompressor> { return std::make_shared<Compressor>(); }};
}

// Compared as 16 bytes, so the case of a GUID's text does not matter; parsed once, at the first call of any thread.
const auto& registeredCompressors() {
    static const RegisteredCompressor compressors[] = {
        registered<CompressVLCImpl>(),
        registered<CompressVariableVLI2Impl>(),
        registered<CompressZLibImpl>(),
    };
    return compressors;
}

}  // namespace

std::shared_ptr<ICompressor> getCompressor(const boost::uuids::uuid& id) {
    for (const RegisteredCompressor& known : registeredCompressors())
        if (known.id == id)
            return known.make();
    BOOST_THROW_EXCEPTION(std::runtime_error("unknown compressor id: " + boost::uuids::to_string(id)));
}

}  // namespace kvan::compression
