#pragma once

#include <compression/icompressor.h>
#include <sample-analysis/analysis_data.h>

#include <memory>

namespace kvan::sample::native {

/// How the profiles of an analysis are stored.
enum class Compressor { None, Vlc, Vli2, ZLib };

/// The GUID as it goes into `AnalysisHeaderData::compressors`; not for `None`.
const char* guidOf(Compressor compressor);

/// Packs profiles the way `compressor` does. One object serves one thread at a time.
class ProfilePacker {
public:
    explicit ProfilePacker(Compressor compressor);

    /// The profile packed; as it is with `None`, or if it is packed already. Throws `std::runtime_error` for elements
    /// that the compressor does not support.
    ScanData pack(const ScanData& profile);

private:
    std::shared_ptr<compression::ICompressor> m_compressor;
};

}  // namespace kvan::sample::native

namespace kvan::sample {
using namespace native;  // callers need not know the room
}
