#pragma once

#include "axis/mass_axis.h"

#include <sample-analysis/archive_writer.h>

namespace kvan::sample::run {

using axis::MassAxis;

/// The archive of a run whose masses were found to be wrong afterwards.
class RunArchive {
public:
    /// `axis` must outlive it.
    explicit RunArchive(const MassAxis& axis) : m_axis(axis) {}

    /// The next spectrum, with what its lock masses say; null if it shows none.
    void add(const MassAxis::Calibration& lockMass);

    /// With a reference for each of the polarities.
    void write(const boost::filesystem::path& directory, const std::vector<std::uint8_t>& polarities,
               std::uint8_t acquisitionMode) const;

private:
    const MassAxis& m_axis;
    std::vector<ArchivedLockMass> m_spectra;
};

}  // namespace kvan::sample::run
