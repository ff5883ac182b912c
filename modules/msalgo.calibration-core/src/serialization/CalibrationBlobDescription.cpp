#include "families/CalibrationFamilies.h"
#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "legacycalibration/serialization/CalibrationBlocks.h"

#include <calibration-core/interfaces/CalibrationBlobDescription.h>

// A blob from its head to the extension, as reading takes it, but without making anything: the table of families knows
// the type, the block says what its constants make of the family. One thing stands elsewhere: compensated constants
// with several values have the block of the plain law, and only the extension after it tells. Bytes that are missing
// end the description; arrays are passed over, so that a blob is never refused for what they hold.
namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

namespace {

/// The family that computes as that of `plain` does, with temperatures; `plain` itself if there is none.
const FamilyRow& compensatedRowOf(const FamilyRow& plain) {
    for (const FamilyRow& row : FamilyTable::g_rows)
        if (row.traits.plain == plain.traits.family && row.traits.family != plain.traits.family)
            return row;
    return plain;
}

/// Passes over the correction of masses, if there is one. Whether bytes follow it, which must be an extension then.
bool isExtended(CalibBlobReadAccess& access, bool hasCorrection) {
    std::size_t coefficients = 0;  // bytes
    GPXCalibrationHead correction;
    if (hasCorrection && access.Read(&correction, sizeof correction))
        coefficients = correction.coefficientsCount * sizeof(double);
    return access.BytesLeft() > coefficients;
}

}  // namespace

std::optional<CalibrationBlobDescription> describeBlob(const std::vector<unsigned char>& blob) {
    CalibBlobReadAccess access(blob);
    CalibBlobHead head;
    if (!access.Read(&head, sizeof head))
        return {};
    const auto [row, type] = findBlobType(head.type);
    if (type == nullptr)
        return {};
    const auto block = type->describe(access);
    if (!block)
        return {};
    const bool hasCorrection = head.hasGpx == 1;
    const bool isCompensated = block->isCompensated || isExtended(access, hasCorrection);
    const FamilyRow& family = isCompensated ? compensatedRowOf(*row) : *row;
    return CalibrationBlobDescription{.family = family.traits.family,
                                      .familyName = family.name,
                                      .degree = block->degree,
                                      .hasMassCorrection = hasCorrection};
}

}  // namespace kvan::calibration
