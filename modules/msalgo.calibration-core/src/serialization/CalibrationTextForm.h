#pragma once

#include "families/CalibrationFamilies.h"
#include "serialization/CalibrationTextTokens.h"

namespace kvan::calibration {

/// A family's part of the text form: the prefix token and the constants.
class CalibrationTextForm {
public:
    using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;

    /// Reads from the prefix on. Throws `std::runtime_error` for a strategy that no family has, a prefix that is not
    /// the strategy's, and numbers that are missing or none, in the words of docs/calibration-text.md.
    static TransformatorPtr ReadConstants(CalibrationFamily strategy, CalibrationTextReader& reader,
                                          const ICalibrationTransformatorFactory& factory);

    /// The strategy under which the transformator is written: its functional type code, but that of the plain law for
    /// compensated TOF1 constants, whose compensation has no place in a text.
    static CalibrationFamily StrategyOf(const ICalibrationTransformator& transformator);

    /// Writes the prefix and the constants. Throws `std::invalid_argument` when constants are missing or of another
    /// family.
    static void SerializePraefixAndConstants(CalibrationFamily strategy, const ICalibrationTransformator& transformator,
                                             CalibrationTextWriter& writer);
};

}  // namespace kvan::calibration
