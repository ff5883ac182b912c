#include "families/CalibrationFamilies.h"

#include <algorithm>
#include <iterator>

// Look-ups in the table of families. Codes come out of texts and from transformators that others made, so that one
// without a row is no fault here: callers decide.
namespace kvan::calibration {

const FamilyRow* findRow(CalibrationFamily family) {
    const auto* const row =
        std::find_if(std::begin(FamilyTable::g_rows), std::end(FamilyTable::g_rows),
                     [family](const FamilyRow& candidate) { return candidate.traits.family == family; });
    return row != std::end(FamilyTable::g_rows) ? row : nullptr;
}

FoundBlobType findBlobType(std::uint16_t type) {
    for (const FamilyRow& row : FamilyTable::g_rows)
        for (const BlobType& candidate : row.blobs->types)
            if (candidate.type == type)
                return {&row, &candidate};
    return {nullptr, nullptr};
}

CalibrationFamilyTraits traitsOf(CalibrationFamily family) {
    const FamilyRow* const row = findRow(family);
    return row != nullptr ? row->traits : CalibrationFamilyTraits{family, family, HeldConstants::OfTheLaw};
}

}  // namespace kvan::calibration
