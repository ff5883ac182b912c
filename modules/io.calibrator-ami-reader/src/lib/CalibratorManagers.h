#pragma once

#include "archive_framing.h"

namespace kvan::io::ami {

/// The calibrator that the acquisition began with. Thrown away: the native file has it for every spectrum.
struct CSingleCalibratorManager {
    static void ExtractFromBlobClean(Stream& stream);
};

/// The calibrators of an acquisition with several. Thrown away.
struct CMultiCalibratorManager {
    static void ExtractFromBlobClean(Stream& stream);
};

}  // namespace kvan::io::ami
