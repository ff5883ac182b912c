#include "peptides/elution.h"
#include "run/detector.h"
#include "run/instrument.h"
#include "run/run_archive.h"
#include "run/run_database.h"

#include <calibration-core/interfaces/Polarity.h>
#include <sample-analysis/analysis_writer.h>
#include <sample-analysis/sample_run.h>

#include <algorithm>
#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <utility>

// A run goes in cycles, as an instrument acquires: a survey spectrum shows what elutes at the moment, and the most
// intense ions of it that were not chosen lately are fragmented one after another. Time passes with each spectrum and
// drives elution, drift and exclusions. Everything is made when its time comes and dropped afterwards, so memory does
// not grow.
//
// Each thing that is random has a stream of its own, made of the seed and a constant: peptides, elution, contaminants,
// readings of the instrument. So a change of one parameter, such as the compressor, leaves the rest of the run as it
// was.

namespace kvan::sample::run {

using peptides::ElutingPeptide;
using peptides::Elution;
using peptides::Peptide;

namespace {

constexpr double g_surveySeconds = 0.25;
constexpr double g_fragmentSeconds = 0.08;
constexpr double g_ticksPerSecond = 1000.0;

constexpr std::uint8_t g_acquisitionMode = 2;  // reflector
constexpr std::uint8_t g_surveyScanMode = 0;
constexpr std::uint8_t g_fragmentScanMode = 2;

/// Counts from which an ion is worth a fragment spectrum, and how often it is left alone after one.
constexpr double g_precursorThreshold = 40.0;
constexpr double g_exclusionDeviations = 2.5;

/// How much too high the masses of a run are that was re-calibrated.
constexpr double g_errorPpm = 6.0;

/// An ion that a survey spectrum shows.
struct Ion {
    const ElutingPeptide* source;
    int charge;
    double height;
};

class Acquisition {
public:
    Acquisition(const boost::filesystem::path& directory, const SampleRunParameters& parameters);

    boost::filesystem::path run();

private:
    /// An ion that was fragmented lately.
    struct Exclusion {
        std::uint64_t peptide;
        int charge;
        double until;
    };

    AnalysisHeaderData header() const;
    std::vector<std::uint8_t> polarities() const;
    Bytes segmentPool() const;
    void beginSegments();
    void survey();
    void fragment(const Ion& precursor);
    void write(const Instrument::Moment& moment, bool withProfile);

    void collectIons();
    void addContaminants();
    void addChemicalNoise(int count, double height);
    std::vector<Ion> choosePrecursors();
    bool isExcluded(const Ion& ion) const;

    bool isDone() const { return m_writer.numberOfSpectra() == m_parameters.spectra; }
    bool isRecalibrated() const { return m_archive || m_database; }
    double driftPpm() const;

    const SampleRunParameters m_parameters;
    const MassAxis m_axis;
    Detector m_detector;
    const double m_duration;
    Elution m_elution;
    AnalysisWriter m_writer;
    ProfilePacker m_packer;
    std::optional<RunArchive> m_archive;
    std::optional<RunDatabase> m_database;
    Random m_random;
    Instrument m_instrument;

    double m_time = 0.0;
    bool m_negative;
    std::uint32_t m_segment = 0;
    std::vector<Peak> m_peaks;
    std::vector<Ion> m_ions;
    std::vector<Exclusion> m_exclusions;
    SpectrumData m_spectrum;
};

double durationOf(const SampleRunParameters& parameters) {
    const double fragments = parameters.fragmentsPerSurvey;
    return parameters.spectra * (g_surveySeconds + fragments * g_fragmentSeconds) / (1.0 + fragments);
}

Acquisition::Acquisition(const boost::filesystem::path& directory, const SampleRunParameters& parameters)
    : m_parameters(parameters),
      m_axis(parameters),
      m_detector(m_parameters, m_axis),
      m_duration(durationOf(parameters)),
      m_elution(parameters.seed, m_duration, parameters.coelutingPeptides),
      m_writer(directory, header()),
      m_packer(parameters.compressor),
      m_random(parameters.seed ^ 0x5A),
      m_instrument(parameters.seed),
      m_negative(parameters.polarities == Polarities::Negative) {
    const Recalibrations stores = parameters.recalibrations;
    if (stores == Recalibrations::Archive || stores == Recalibrations::Both)
        m_archive.emplace(m_axis);
    if (stores == Recalibrations::Database || stores == Recalibrations::Both)
        m_database.emplace(directory, parameters, m_axis);
}

AnalysisHeaderData Acquisition::header() const {
    AnalysisHeaderData header;
    header.timebase = static_cast<std::uint32_t>(1e6 / g_ticksPerSecond);
    header.time = {2024, 5, 17, 8, 30, 0, 250, 120};
    header.instrument = InstrumentInfo{"7", "1024"};
    AnalysisDescription& description = header.description.emplace();
    description.instrumentName = "Synthetic instrument";
    description.operatorName = "sample-analysis";
    description.acquisitionSoftware = "sample-analysis";
    description.acquisitionSoftwareVersion = "1.0";
    description.acquisitionMethod = "survey and automatic MS/MS";
    description.sampleName = "Synthetic tryptic digest";
    description.description = "Random peptides, seed " + std::to_string(m_parameters.seed);
    description.instrumentFamily = m_parameters.instrumentFamily;
    if (m_parameters.variables)
        header.variables = Instrument::declarations();
    if (m_parameters.compressor != Compressor::None)
        header.compressors.push_back(guidOf(m_parameters.compressor));
    if (!m_parameters.referenceCalibrations || !m_axis.hasReferences())
        return header;
    for (const std::uint8_t polarity : polarities()) {
        header.calibrations.push_back(m_axis.referenceBlob(polarity, g_acquisitionMode, g_surveyScanMode, 0));
        header.calibrations.push_back(m_axis.referenceBlob(polarity, g_acquisitionMode, g_fragmentScanMode, 1));
    }
    return header;
}

std::vector<std::uint8_t> Acquisition::polarities() const {
    std::vector<std::uint8_t> codes;
    if (m_parameters.polarities != Polarities::Negative)
        codes.push_back(POLARITY_POSITIVE);
    if (m_parameters.polarities != Polarities::Positive)
        codes.push_back(POLARITY_NEGATIVE);
    return codes;
}

Bytes Acquisition::segmentPool() const {
    Bytes pool;
    if (!m_parameters.variables)
        return pool;
    for (const std::uint8_t polarity : polarities()) {
        const VariableKey keys[] = {{polarity, g_acquisitionMode, 0, g_surveyScanMode},
                                    {polarity, g_acquisitionMode, 1, g_fragmentScanMode}};
        for (const VariableKey& key : keys) {
            const Bytes tables = Instrument::settings(key);
            pool.insert(pool.end(), tables.begin(), tables.end());
        }
    }
    return pool;
}

boost::filesystem::path Acquisition::run() {
    while (!isDone()) {
        beginSegments();
        survey();
        for (const Ion& precursor : choosePrecursors()) {
            if (!isDone())
                fragment(precursor);
        }
        if (m_parameters.polarities == Polarities::Both)
            m_negative = !m_negative;
    }
    m_writer.finish();
    if (m_database)
        m_database->finish();
    if (m_archive)
        m_archive->write(m_writer.mainFilePath().parent_path(), polarities(), g_acquisitionMode);
    return m_writer.mainFilePath();
}

/// Segments share the spectra evenly and begin with a survey spectrum.
void Acquisition::beginSegments() {
    const auto number = std::uint64_t{m_writer.numberOfSpectra()};
    while (m_segment < m_parameters.segments &&
           number * m_parameters.segments >= std::uint64_t{m_segment} * m_parameters.spectra)
        m_segment = m_writer.addSegment(segmentPool());
}

void Acquisition::survey() {
    m_peaks.clear();
    collectIons();
    for (const Ion& ion : m_ions)
        ion.source->peptide.addIsotopes(ion.charge, m_negative, ion.height, m_peaks);
    addContaminants();
    addChemicalNoise(60, 9.0);
    m_spectrum.info.scanMode = g_surveyScanMode;
    m_spectrum.info.masses.clear();
    write({.part = m_time / m_duration}, m_parameters.profiles != Profiles::None);
    m_time += g_surveySeconds;
}

void Acquisition::fragment(const Ion& precursor) {
    const Peptide& peptide = precursor.source->peptide;
    // Left alone while its peak lasts, so that weaker ions have their turn.
    m_exclusions.push_back(
        {peptide.number(), precursor.charge, m_time + g_exclusionDeviations * m_elution.deviation()});
    m_peaks.clear();
    peptide.addFragments(precursor.charge, m_negative, precursor.height * 0.6, m_peaks);
    addChemicalNoise(15, 4.0);
    m_spectrum.info.scanMode = g_fragmentScanMode;
    const double mz = peptide.mz(precursor.charge, m_negative);
    m_spectrum.info.masses.assign(1, static_cast<float>(mz));
    write({m_time / m_duration, mz, precursor.charge}, m_parameters.profiles == Profiles::All);
    m_time += g_fragmentSeconds;
}

void Acquisition::write(const Instrument::Moment& moment, bool withProfile) {
    const MassAxis::Calibration calibration = m_axis.calibration(driftPpm(), 0.0, moment.isolated);
    m_detector.record(m_peaks, calibration, withProfile, m_random, m_spectrum);
    // To the nearest tick.
    m_spectrum.info.retentionTime = static_cast<std::uint64_t>(m_time * g_ticksPerSecond + 0.5);
    m_spectrum.info.polarity = m_negative ? POLARITY_NEGATIVE : POLARITY_POSITIVE;
    m_spectrum.info.acquisitionMode = g_acquisitionMode;
    m_spectrum.info.calibration =
        MassAxis::blobOf(isRecalibrated() ? m_axis.calibration(driftPpm(), g_errorPpm, moment.isolated) : calibration);
    // The stores get the true calibration, the native file the one with the error.
    if (m_database)
        m_database->add(calibration);
    if (m_archive)
        // Lock masses are constant ions; a fragment spectrum does not show them.
        m_archive->add(m_spectrum.info.scanMode == g_surveyScanMode ? calibration : nullptr);
    if (m_parameters.variables)
        m_spectrum.pool = m_instrument.readings(moment);
    if (!m_spectrum.profile || m_parameters.compressor == Compressor::None) {
        m_writer.addSpectrum(m_spectrum);
        return;
    }
    // Only the copy is packed.
    ScanData plain = std::exchange(*m_spectrum.profile, m_packer.pack(*m_spectrum.profile));
    m_writer.addSpectrum(m_spectrum);
    m_spectrum.profile = std::move(plain);  // the detector goes on in its memory
}

void Acquisition::collectIons() {
    m_ions.clear();
    for (const ElutingPeptide& source : m_elution.at(m_time)) {
        const double counts = source.countsAt(m_time, m_elution.deviation()) * (m_negative ? 0.3 : 1.0);
        for (int charge = 1; charge <= Peptide::MaxCharge; ++charge) {
            const double mz = source.peptide.mz(charge, m_negative);
            const double height = counts * source.peptide.chargeShare(charge, m_negative);
            // Less than one count is never seen.
            if (height >= 1.0 && mz > m_axis.lower() && mz < m_axis.upper())
                m_ions.push_back({&source, charge, height});
        }
    }
}

/// Ions that are there all the time, in slowly varying amounts.
void Acquisition::addContaminants() {
    Random random(m_parameters.seed ^ 0xC0, m_negative ? POLARITY_NEGATIVE : POLARITY_POSITIVE);
    for (int contaminant = 0; contaminant < 14; ++contaminant) {
        const double mz = random.uniform(130.0, 900.0);
        const double height = 250.0 * peptides::exponential(random.normal()) * (1.0 + 0.05 * m_random.normal());
        m_peaks.push_back({mz, height});
        // With the first heavy isotope, of carbon alone.
        m_peaks.push_back({mz + 1.00336, height * mz * 6e-4});
    }
}

/// Chemical noise stands where organic matter has its masses: close above whole numbers.
void Acquisition::addChemicalNoise(int count, double height) {
    for (int peak = 0; peak < count; ++peak) {
        const double nominal = std::floor(m_random.uniform(m_axis.lower(), std::min(m_axis.upper(), 1300.0)));
        const double mz = nominal * 1.0005 + 0.06 * m_random.normal();
        m_peaks.push_back({mz, height * peptides::exponential(0.7 * m_random.normal())});
    }
}

std::vector<Ion> Acquisition::choosePrecursors() {
    std::erase_if(m_exclusions, [this](const Exclusion& exclusion) { return exclusion.until < m_time; });
    std::vector<Ion> chosen;
    std::copy_if(m_ions.begin(), m_ions.end(), std::back_inserter(chosen), [this](const Ion& ion) {
        return ion.charge > 1 && ion.height >= g_precursorThreshold && !isExcluded(ion);
    });
    const std::size_t count = std::min<std::size_t>(chosen.size(), m_parameters.fragmentsPerSurvey);
    std::partial_sort(chosen.begin(), chosen.begin() + static_cast<std::ptrdiff_t>(count), chosen.end(),
                      [](const Ion& left, const Ion& right) { return left.height > right.height; });
    chosen.resize(count);
    return chosen;
}

bool Acquisition::isExcluded(const Ion& ion) const {
    return std::any_of(m_exclusions.begin(), m_exclusions.end(), [&ion](const Exclusion& exclusion) {
        return exclusion.peptide == ion.source->peptide.number() && exclusion.charge == ion.charge;
    });
}

/// The instrument warms up by some parts per million and cools down again.
double Acquisition::driftPpm() const {
    const double part = m_time / m_duration;
    return 32.0 * part * (1.0 - part) - 3.0;
}

}  // namespace

boost::filesystem::path writeSampleRun(const boost::filesystem::path& directory,
                                       const SampleRunParameters& parameters) {
    if (parameters.segments == 0 || !(parameters.coelutingPeptides > 0.0))
        BOOST_THROW_EXCEPTION(std::invalid_argument("A run needs a segment and peptides."));
    for (const char* other : {g_archiveName, g_calibrationDatabaseName})
        boost::filesystem::remove(directory / other);  // of another run
    return Acquisition(directory, parameters).run();
}

}  // namespace kvan::sample::run
