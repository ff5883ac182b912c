#pragma once

#include <calibration-core/interfaces/CalibrationBlobDescription.h>
#include <calibration-core/interfaces/CalibrationFamily.h>
#include <calibration-core/interfaces/ICalibrationTransformatorFactory.h>

#include <cstdint>
#include <optional>
#include <span>

namespace kvan::tqclegacy::CALIBRATION {
class CalibBlobReadAccess;
class CalibBlobWriteAccess;
}  // namespace kvan::tqclegacy::CALIBRATION

namespace kvan::calibration {
class CalibrationTextFields;
class CalibrationTextWriter;
}  // namespace kvan::calibration

/// The families of calibrations, one row each. The parts of a row stand where they can see what they need: how to make
/// a transformator in the source of the law (`transformation`), its stored forms in `serialization`.
namespace kvan::calibration {

using Factory = ICalibrationTransformatorFactory;
using TransformatorPtr = Factory::TransformatorPtr;

/// How a transformator is made of the two sets of constants.
struct LawOfConstants {
    bool (*isLaw)(const ICalibrationConstantsFunctional* functional);  // false for null, as the next
    bool (*isAxis)(const ICalibrationConstantsPhysical* physical);
    const char* refusal;  // of the factory, for constants that are no such law
    /// Takes over both objects, which nobody else may hold. Throws `std::invalid_argument` for modes without a class
    /// and for constants that do not fit each other.
    TransformatorPtr (*make)(Factory::FunctionalPtr functional, Factory::PhysicalPtr physical);
};

/// What a blob holds after its head: the block alone, or the block with the measurement mode of a reference.
enum class BlobForm { Plain, Reference };

/// What the constants of a block make of its family.
struct BlockDescription {
    bool isCompensated = false;  ///< by temperatures
    CalibrationBlobDescription::Degree degree = CalibrationBlobDescription::Degree::Fixed;
};

/// A type of blob: how its block and the arrays of it are read, from the position of the access on, and how the block
/// alone is described, which gives nothing for one that is cut.
struct BlobType {
    std::uint16_t type;
    BlobForm form;
    TransformatorPtr (*read)(tqclegacy::CALIBRATION::CalibBlobReadAccess& access, const Factory& factory);
    std::optional<BlockDescription> (*describe)(tqclegacy::CALIBRATION::CalibBlobReadAccess& access);
};

struct BlobForms {
    std::span<const BlobType> types;
    /// The type that the transformator has in a blob of that form. Throws `std::invalid_argument` for a form that the
    /// family does not have.
    std::uint16_t (*typeOf)(const ICalibrationTransformator& transformator, BlobForm form);
    /// Writes the block of that type and its arrays. Throws `std::invalid_argument` when constants are missing or of
    /// another family.
    void (*write)(const ICalibrationTransformator& transformator, BlobForm form,
                  tqclegacy::CALIBRATION::CalibBlobWriteAccess& access);
};

struct TextForms {
    CalibrationFamily strategy;             // the code in the text
    std::span<const char* const> prefixes;  // oldest first; the newest is written
    const char* operation;                  // named in failures
    bool oneLine;                           // whether the constants end with the line of the prefix
    /// Reads what follows the prefix, of which `version` is the place in `prefixes`.
    TransformatorPtr (*read)(CalibrationTextFields& fields, std::size_t version, const Factory& factory);
    void (*write)(const ICalibrationTransformator& transformator, CalibrationTextWriter& writer);
};

struct FamilyRow {
    CalibrationFamilyTraits traits;
    const char* name;           // for people: what `describeBlob` hands out
    const LawOfConstants* law;  // null: made around another transformator
    const BlobForms* blobs;
    const TextForms* texts;
};

extern const LawOfConstants g_tofLaw, g_tof2Law, g_ftmsLaw, g_paladinLaw, g_linearLaw;
extern const BlobForms g_tofBlobs, g_tof2Blobs, g_ftmsBlobs, g_paladinBlobs, g_linearBlobs;
extern const BlobForms g_kite1Blobs, g_kite2Blobs, g_psdBlobs;
extern const TextForms g_tofTexts, g_tof2Texts, g_compensatedTof2Texts, g_ftmsTexts, g_paladinTexts, g_linearTexts;
extern const TextForms g_kite1Texts, g_kite2Texts, g_psdTexts;

namespace FamilyTable {

using enum CalibrationFamily;
using enum HeldConstants;

/// The factory tries constants in this order. The texts of compensated TOF1 are those of the plain law: its
/// temperatures have no place in them.
inline constexpr FamilyRow g_rows[] = {
    {{Tof2, Tof2, OfTheLaw}, "time of flight, second generation", &g_tof2Law, &g_tof2Blobs, &g_tof2Texts},
    {{CompensatedTof2, Tof2, OfTheLaw},
     "time of flight, second generation, temperature-compensated",
     &g_tof2Law,
     &g_tof2Blobs,
     &g_compensatedTof2Texts},
    {{Tof, Tof, OfTheLaw}, "time of flight", &g_tofLaw, &g_tofBlobs, &g_tofTexts},
    {{CompensatedTof, Tof, OfTheLaw}, "time of flight, temperature-compensated", &g_tofLaw, &g_tofBlobs, &g_tofTexts},
    {{Ftms, Ftms, OfTheLaw}, "Fourier transform", &g_ftmsLaw, &g_ftmsBlobs, &g_ftmsTexts},
    {{Paladin, Paladin, OfTheLaw}, "ion trap", &g_paladinLaw, &g_paladinBlobs, &g_paladinTexts},
    {{Linear, Linear, OfTheLaw}, "linear", &g_linearLaw, &g_linearBlobs, &g_linearTexts},
    {{Psd, Psd, OfTheAxis}, "post-source decay", nullptr, &g_psdBlobs, &g_psdTexts},
    {{Kite1, Kite1, OfTheAxis}, "KITE 1", nullptr, &g_kite1Blobs, &g_kite1Texts},
    {{Kite2, Kite2, None}, "KITE 2", nullptr, &g_kite2Blobs, &g_kite2Texts},
};

}  // namespace FamilyTable

/// Null for a code that no family here has.
const FamilyRow* findRow(CalibrationFamily family);

/// The type of blob and the row of its family, the plain one where a compensated one has the same types. Nulls for a
/// type that no family has.
struct FoundBlobType {
    const FamilyRow* row;
    const BlobType* type;
};
FoundBlobType findBlobType(std::uint16_t type);

}  // namespace kvan::calibration
