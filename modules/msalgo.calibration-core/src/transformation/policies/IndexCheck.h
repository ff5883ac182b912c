#pragma once

#include "utilities/IndexTruncation.h"

#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>

namespace kvan::calibration::Transformation {

/// Keeps an index inside the array of FTMS constants: from 0.0 to size - 1.0.
class FTMSIndexChecker {
public:
    template <class Constants>
    void UpdatePhysicalConstants(const Constants& constants) {
        const auto* const array = dynamic_cast<const ICalibrationConstantsPhysicalFTMS*>(&constants);
        if (array == nullptr)
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "kvan::calibration::Transformation::FTMSIndexChecker::UpdatePhysicalConstants("
                "ICalibrationConstantsPhysicalPtr physConsts): This function can only be used with "
                "ICalibrationConstantsPhysicalFTMSPtr objects."));
        m_size = array->GetSize();
    }

    /// The upper test comes first, so an empty array gives 0.0; NaN passes.
    [[gnu::always_inline]] double Clamp(double index) const {
        index = index >= m_size ? m_size - 1.0 : index;
        return 0.0 > index ? 0.0 : index;
    }

private:
    double m_size = 0.0;
};

/// The line of `RawIndex` on checked indices alone.
template <class RawIndex, class Checker>
class IndexCheck {
public:
    static constexpr double Cost = RawIndex::Cost + 0.1;

    template <class Constants>
    void UpdatePhysicalConstants(const Constants& constants) {
        RawIndex line = m_line;
        line.UpdatePhysicalConstants(constants);
        m_checker.UpdatePhysicalConstants(constants);
        m_line = line;  // constants that one of the two refuses change neither
    }

    [[gnu::always_inline]] double IndexToRaw(double index, double offset) const {
        return m_line.IndexToRaw(m_checker.Clamp(index), offset);
    }
    [[gnu::always_inline]] double RawToDIndex(double raw, double offset) const {
        return m_checker.Clamp(m_line.RawToDIndex(raw, offset));
    }
    [[gnu::always_inline]] std::int32_t RawToIndex(double raw, double offset) const {
        return Utilities::truncateToIndex(RawToDIndex(raw, offset) + 0.5);
    }

private:
    RawIndex m_line;
    Checker m_checker;
};

}  // namespace kvan::calibration::Transformation
