#pragma once

#include <calibration-core/interfaces/Polarity.h>
#include <qsf2sql/qsflib/SpectrumRecords.h>
#include <qsf2sql/qsflib/VariableTableRecords.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// Plain values that say what the writers put into the native files. Every member has a default, so that a caller
/// names only what matters to it.
namespace kvan::sample::native {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of an ordinary block: its head, then `body`. A pool is a run of such blocks.
/// Throws `boost::numeric::bad_numeric_cast`, as all writers do, where a size does not fit its field.
Bytes makeBlock(std::uint16_t type, const Bytes& body);

/// A scan vector as a compressor left it.
struct PackedVector {
    KVAN::io::QSF::ElementType elementType = KVAN::io::QSF::ELEMENT_UINT32;  ///< before compression
    Bytes bytes = {};
};

/// The profile of a spectrum: one of the five plain vectors, or a packed one.
using ScanData = std::variant<std::vector<std::uint32_t>, std::vector<std::int32_t>, std::vector<std::int64_t>,
                              std::vector<float>, std::vector<double>, PackedVector>;

/// The peak list of a spectrum. A field is stored if it is there, also when it is empty, in the element type of the
/// layout; all fields that are there have one length.
struct LineData {
    using Field = std::optional<std::vector<double>>;

    KVAN::io::QSF::LineLayout layout = KVAN::io::QSF::LINES_DOUBLE_FLOAT;
    Field index = {};       ///< 16  fractional data-point index
    Field intensity = {};   ///< 17
    Field indexWidth = {};  ///< 18  in data points
    Field peakArea = {};    ///< 19
    Field snr = {};         ///< 20  signal to noise
    Field field21 = {};     ///< 21  read by Id only
};

/// The summary of a spectrum in the extra file.
struct QuickInfo {
    std::uint64_t retentionTime = 0;  ///< in ticks of the analysis's timebase
    float acquiredLower = 0.0F;       ///< fractional data-point index
    float acquiredUpper = 0.0F;       ///< fractional data-point index
    float maxIntensity = 0.0F;
    float sumIntensity = 0.0F;
    std::uint8_t polarity = POLARITY_POSITIVE;
    std::uint8_t acquisitionMode = 0;
    std::uint8_t scanMode = 0;
    std::vector<float> masses = {};            ///< of the precursors, one a stage
    std::optional<std::uint8_t> msLevel = {};  ///< 0 for MS^1, n - 1 for MS^n; left out: the number of masses
    Bytes calibration = {};                    ///< a calibration blob; empty: the blob that says there is none
};

/// One spectrum with all that the three files say about it.
struct SpectrumData {
    std::optional<ScanData> profile = {};
    std::optional<LineData> lines = {};
    Bytes pool = {};  ///< blocks of the spectrum condition
    QuickInfo info = {};
};

/// The moment at which an acquisition began, in UTC.
struct AcquisitionTime {
    std::uint16_t year = 2020;
    std::uint8_t month = 6;
    std::uint8_t day = 15;
    std::uint8_t hour = 12;
    std::uint8_t minute = 0;
    std::uint8_t second = 0;
    std::uint16_t milliseconds = 0;
    std::int16_t timeZoneMinutes = 0;  ///< added to UTC to give local time
};

/// Sample, method and instrument. Texts are Windows-1252; an empty one is left out.
struct AnalysisDescription {
    std::string instrumentName = {};
    std::string operatorName = {};
    std::string acquisitionSoftware = {};
    std::string acquisitionSoftwareVersion = {};
    std::string acquisitionMethod = {};
    std::string sampleName = {};
    std::string description = {};
    std::uint8_t instrumentSourceType = 0;
    std::uint16_t instrumentFamily = 1;
    float serialFallback = -1.0F;
    std::uint8_t instrumentRevision = 0;
};

/// The declaration of one variable.
struct VariableDeclaration {
    std::uint16_t variable = 0;
    std::uint16_t elementType = KVAN::io::QSF::VarTabDescEntryRecord::Integer;
    bool isVector = false;
    std::string permanentName = {};
    std::string displayGroupName = {};
    std::string displayName = {};
    std::string displayValueText = {};
    std::string displayFormat = {};
    std::string displayDimension = {};
};

/// Texts about the instrument, of which the serial number is made.
struct InstrumentInfo {
    std::string textA = {};
    std::string textB = {};
};

/// What is said about the analysis as a whole, before its spectra.
struct AnalysisHeaderData {
    std::uint32_t timebase = 1000;  ///< microseconds a tick
    AcquisitionTime time = {};
    std::optional<AnalysisDescription> description = AnalysisDescription{};
    std::vector<VariableDeclaration> variables = {};  ///< none: no block of declarations
    std::vector<Bytes> calibrations = {};             ///< blobs of the reference calibrations
    std::optional<InstrumentInfo> instrument = {};
    std::vector<std::string> compressors = {};  ///< GUIDs as text, in any case
};

}  // namespace kvan::sample::native

namespace kvan::sample {
using namespace native;  // callers need not know the room
}
