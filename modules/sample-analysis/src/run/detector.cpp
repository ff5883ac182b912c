#include "run/detector.h"

#include <algorithm>

// Peaks become lines in the order of a real detector: what the resolution does not separate is one peak, counting adds
// noise, what stands out is kept, and the axis gives each of them an index and a width in data points. The profile is
// drawn from the same lines, so that peak list and profile of a spectrum agree. The numbers depend on no library
// function whose last bit may differ between machines, apart from square roots and rounding, which are exact by IEEE
// 754.

namespace kvan::sample::run {

namespace {

/// Counts below which a peak cannot be distinguished from noise.
constexpr double g_threshold = 3.0;
constexpr double g_noiseLevel = 1.2;

/// Points over which a peak is spread at least, whatever the resolution of the axis.
constexpr double g_minWidth = 3.0;

/// Area and deviation of a Gaussian of height and full width 1.
constexpr double g_areaOfWidth = 1.0644670194312262;
constexpr double g_deviationOfWidth = 0.42466090014400953;

/// Counts of the electronics alone: a quiet background with single counts, rarely more.
template <class T>
void addElectronicNoise(std::vector<T>& profile, Random& random) {
    for (std::size_t point = 0; point < profile.size();) {
        std::uint64_t bits = random.next();
        for (int part = 0; part < 4 && point < profile.size(); ++part, bits >>= 16) {
            const std::uint32_t level = bits & 0xFFFF;
            profile[point++] = static_cast<T>((level > 57'000) + (level > 64'500) + (level > 65'450));
        }
    }
}

}  // namespace

Detector::Detector(const SampleRunParameters& parameters, const MassAxis& axis)
    : m_parameters(parameters), m_axis(axis) {}

void Detector::record(std::vector<Peak>& peaks, const MassAxis::Calibration& calibration, bool withProfile,
                      Random& random, SpectrumData& spectrum) {
    detect(peaks, random);
    place(peaks, calibration);

    QuickInfo& info = spectrum.info;
    info.acquiredUpper = static_cast<float>(m_axis.points() - 1);
    summariseLines(info);
    const auto profile = [&]<class T>(T) {
        if (!spectrum.profile)
            spectrum.profile.emplace(std::vector<T>());
        fillProfile(std::get<std::vector<T>>(*spectrum.profile), random);
    };
    if (!withProfile)
        spectrum.profile.reset();
    else if (m_parameters.floatProfiles)
        profile(float{});
    else
        profile(std::uint32_t{});
    if (m_parameters.lines) {
        if (!spectrum.lines)
            spectrum.lines.emplace();
        fillLines(*spectrum.lines);
    }
}

/// Joins what the resolution does not separate, adds counting noise and keeps what stands out, in order of m/z.
void Detector::detect(std::vector<Peak>& peaks, Random& random) {
    std::erase_if(peaks, [&](const Peak& peak) { return !(peak.mz > m_axis.lower() && peak.mz < m_axis.upper()); });
    std::sort(peaks.begin(), peaks.end(), [](const Peak& left, const Peak& right) { return left.mz < right.mz; });
    std::size_t kept = 0;
    for (const Peak& peak : peaks) {
        if (kept > 0 && peak.mz - peaks[kept - 1].mz < m_axis.peakWidth(peak.mz)) {
            Peak& joined = peaks[kept - 1];
            const double height = joined.height + peak.height;
            joined = {(joined.mz * joined.height + peak.mz * peak.height) / height, height};
        } else {
            peaks[kept++] = peak;
        }
    }
    peaks.resize(kept);
    // Poisson noise of the counts, as a Gaussian.
    for (Peak& peak : peaks)
        peak.height += std::sqrt(peak.height) * random.normal();
    std::erase_if(peaks, [](const Peak& peak) { return peak.height < g_threshold; });

    if (peaks.size() <= m_parameters.maxLines)
        return;
    const auto end = peaks.begin() + m_parameters.maxLines;
    // By m/z where heights are equal: which lines are kept must not depend on the library.
    std::nth_element(peaks.begin(), end, peaks.end(), [](const Peak& left, const Peak& right) {
        return left.height != right.height ? left.height > right.height : left.mz < right.mz;
    });
    peaks.erase(end, peaks.end());
    std::sort(peaks.begin(), peaks.end(), [](const Peak& left, const Peak& right) { return left.mz < right.mz; });
}

void Detector::place(const std::vector<Peak>& peaks, const MassAxis::Calibration& calibration) {
    m_lines.clear();
    for (const Peak& peak : peaks) {
        const double width = calibration->MassWidthToIndexWidth(peak.mz, m_axis.peakWidth(peak.mz));
        m_lines.push_back({calibration->MassToDIndex(peak.mz), peak.height, std::max(width, g_minWidth)});
    }
}

void Detector::fillLines(LineData& lines) const {
    for (LineData::Field* field : {&lines.index, &lines.intensity, &lines.indexWidth, &lines.peakArea, &lines.snr}) {
        if (!field->has_value())
            field->emplace();
        (*field)->clear();
    }
    for (const Line& line : m_lines) {
        lines.index->push_back(line.index);
        lines.intensity->push_back(line.height);
        lines.indexWidth->push_back(line.width);
        lines.peakArea->push_back(line.height * line.width * g_areaOfWidth);
        lines.snr->push_back(line.height / g_noiseLevel);
    }
}

template <class T>
void Detector::fillProfile(std::vector<T>& profile, Random& random) const {
    profile.resize(m_axis.points());
    addElectronicNoise(profile, random);
    for (const Line& line : m_lines) {
        const double deviation = line.width * g_deviationOfWidth;
        // Beyond it less than one count in 450 of the height is left.
        const double reach = 3.5 * deviation;
        const auto first = static_cast<std::size_t>(std::max(0.0, std::ceil(line.index - reach)));
        const auto last = static_cast<std::size_t>(
            std::clamp(std::floor(line.index + reach), 0.0, static_cast<double>(m_axis.points() - 1)));
        for (std::size_t point = first; point <= last; ++point) {
            const double distance = (static_cast<double>(point) - line.index) / deviation;
            const double counts = line.height * peptides::exponential(-0.5 * distance * distance);
            const double noise = std::sqrt(counts) * random.normal() * 0.3;
            profile[point] += static_cast<T>(std::floor(std::max(0.0, counts + noise) + 0.5));
        }
    }
}

void Detector::summariseLines(QuickInfo& info) const {
    double sum = 0.0;
    double highest = 0.0;
    for (const Line& line : m_lines) {
        sum += line.height * line.width * g_areaOfWidth;
        highest = std::max(highest, line.height);
    }
    info.sumIntensity = static_cast<float>(sum);
    info.maxIntensity = static_cast<float>(highest);
}

}  // namespace kvan::sample::run
