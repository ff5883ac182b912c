#pragma once

#include "calibration-table-reader/typed_row.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <optional>

namespace kvan::io::calibration {

/// The laws that a row of a calibration database may hold, by the number in its column `ModelType`.
enum class MzModel { Tof = 1, TofGpx = 2, Paladin = 3, Ftms04 = 4, Ftms1356 = 5 };

/// The time axis of a state's time-of-flight models.
struct DigitizerConstants {
    double timebase;
    double delay;
};

/// Throws `std::invalid_argument` "Unknown m / z calibration model " and the number for any but 1 to 5.
MzModel mzModelOf(std::int64_t modelType);

/// The transformator of a row whose numbers begin at the column `base`. Throws `std::runtime_error` for a model that
/// needs digitizer constants where there are none and for values that the model cannot use, `std::invalid_argument` for
/// constants that the factory refuses.
std::shared_ptr<::kvan::calibration::ICalibrationTransformator> makeMzTrafo(
    MzModel model, const tables::TypedRow& row, int base, const std::optional<DigitizerConstants>& digitizer);

}  // namespace kvan::io::calibration
