#pragma once

#include "archive_framing.h"

/// The calibrator that the acquisition began with. Thrown away: the native file has it for every spectrum.
struct CSingleCalibratorManager {
    static void ExtractFromBlobClean(archive::Stream& stream);
};

/// The calibrators of an acquisition with several. Thrown away.
struct CMultiCalibratorManager {
    static void ExtractFromBlobClean(archive::Stream& stream);
};
