// Any archive ends in calibrators for its spectra, in none, or in an exception, and those convert or fail as laws do.

#include "calibration_laws.h"
#include "lib/CDataFileCalibrationOrganizer.h"

#include <cstdint>
#include <cstring>

using namespace kvan::io;
using namespace kvan;

namespace {

/// The payload stands after three 32-bit numbers.
constexpr std::size_t g_fileHead = 12;

fuzz::TransformatorPtr own(std::uint16_t type, std::vector<double> constants) {
    std::vector<unsigned char> blob(4 + 8 * constants.size());
    std::memcpy(blob.data(), &type, sizeof type);
    std::memcpy(blob.data() + 4, constants.data(), 8 * constants.size());
    return fuzz::Serialization().DeserializeFromBlob(blob);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < g_fileHead)
        return 0;
    kvan::binaryio::IHeapBinary stream(data + g_fileHead, size - g_fileHead);
    stream.setFlags(1);
    ami::CDataFileCalibrationOrganizer organizer;
    if (!fuzz::succeeds([&] { organizer.ExtractFromBlob(stream); }))
        return 0;
    const fuzz::TransformatorPtr calibrators[] = {own(1, {20, 0.5, 120, 6.1e5, 0.004}),
                                                  own(9, {20, 0.5, 120, 6.1e5, 0.004, -2.5e-5, 0.02}),
                                                  own(4098, {0, 1}), own(4097, {0, 1, 0, 10, 500}), nullptr};
    for (const auto& before : calibrators) {
        for (const std::uint64_t spectrum : {0U, 1U, 2U, 1000U}) {
            for (const EPolarity polarity : {POLARITY_POSITIVE, POLARITY_NEGATIVE}) {
                fuzz::TransformatorPtr calibrator = before;
                fuzz::succeeds([&] {
                    if (organizer.GetCalibrator(spectrum, polarity, ami::CMSMSInfo::MS, calibrator))
                        fuzz::convert(*calibrator);
                });
            }
        }
    }
    return 0;
}
