#include <calibration-core/interfaces/MeasurementModeInfo.h>
#include <calibration-core/interfaces/Polarity.h>

#include <ostream>

// How a spectrum was measured, as far as a calibration depends on it; the words are those of a dump. A number without a
// word is written as it is, so any byte is a value here; 255 is the sign for unknown in all four fields. The MS level
// has no words: it is written as the number that is stored.
namespace kvan::calibration::Transformation {

namespace {

/// A code and what a dump says for it.
struct Word {
    std::uint8_t value;
    const char* text;
};

constexpr Word g_polarities[] = {
    {POLARITY_POSITIVE, "+"}, {POLARITY_NEGATIVE, "-"}, {MeasurementModeInfo::Unknown, "?"}};
constexpr Word g_acquisitionModes[] = {{1, "TOF linear"}, {2, "TOF reflector"}, {MeasurementModeInfo::Unknown, "?"}};
constexpr Word g_scanModes[] = {
    {0, "MS"}, {1, "MS-HiRes"}, {2, "MSMS"}, {3, "MSMS-HiRes"}, {MeasurementModeInfo::Unknown, "?"}};

template <std::size_t Count>
void write(std::ostream& sink, std::uint8_t value, const Word (&words)[Count]) {
    for (const Word& word : words)
        if (word.value == value) {
            sink << word.text;
            return;
        }
    sink << static_cast<int>(value);
}

}  // namespace

bool MeasurementModeInfo::IsComplete() const {
    // A reference is found by all four of them.
    return m_polarity != Unknown && m_acquisitionMode != Unknown && m_scanMode != Unknown && m_msmsLevel != Unknown;
}

void MeasurementModeInfo::Dump(std::ostream& sink) const {
    sink << "\tMeasurementModeInfo[ Polarity = ";
    write(sink, m_polarity, g_polarities);
    sink << ", AcquisitionMode = ";
    write(sink, m_acquisitionMode, g_acquisitionModes);
    sink << ", ScanMode = ";
    write(sink, m_scanMode, g_scanModes);
    sink << ", MSMSLevel = " << static_cast<int>(m_msmsLevel) << " ]\n";
}

}  // namespace kvan::calibration::Transformation
