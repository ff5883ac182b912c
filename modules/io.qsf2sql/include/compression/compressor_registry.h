#pragma once

#include <compression/icompressor.h>

#include <boost/uuid/uuid.hpp>
#include <memory>

namespace kvan::compression {

/// A new compressor for the GUID. Throws `std::runtime_error` "unknown compressor id: " and the GUID in lower case if
/// there is none. May be called from any thread.
std::shared_ptr<ICompressor> getCompressor(const boost::uuids::uuid& id);

}  // namespace kvan::compression
