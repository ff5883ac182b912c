#pragma once

#include "transformation/policies/PolicyConstants.h"
#include "utilities/IndexTruncation.h"

#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>

namespace kvan::calibration::Transformation {

/// raw = (index + offset) * a1 + a0. The offset is the transformator's own.
class RILinear {
public:
    /// Nanoseconds an element, about, in a block on AVX2.
    static constexpr double Cost = 0.2;

    template <class Constants>
    void UpdatePhysicalConstants(const Constants& constants) {
        const auto& line = viewOf<ICalibrationConstantsPhysicalLinear>(
            constants, "RILinear::UpdatePhysicalConstants(const ICalibrationConstantsPhysicalPtr funConsts)",
            "ICalibrationConstantsPhysicalLinearPtr");
        m_a0 = line.GetA0();
        m_a1 = line.GetA1();
    }

    [[gnu::always_inline]] double IndexToRaw(double index, double offset) const {
        return (index + offset) * m_a1 + m_a0;
    }
    [[gnu::always_inline]] double RawToDIndex(double raw, double offset) const { return (raw - m_a0) / m_a1 - offset; }
    [[gnu::always_inline]] std::int32_t RawToIndex(double raw, double offset) const {
        return Utilities::truncateToIndex(RawToDIndex(raw, offset) + 0.5);
    }

private:
    double m_a0 = 0.0;
    double m_a1 = 0.0;
};

}  // namespace kvan::calibration::Transformation
