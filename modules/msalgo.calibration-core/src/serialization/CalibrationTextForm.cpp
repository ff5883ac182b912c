#include "serialization/CalibrationTextForm.h"

#include "serialization/CalibrationTextFields.h"

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <iterator>
#include <stdexcept>

// The part of a text that belongs to a family: its prefix token, then the numbers that the row of the family reads and
// writes. The numbers of a family of one line must end with the line of its prefix: what stands in the next one is not
// theirs. Wrapping families hold the text of their time axis inside and come back here for it.
//
// Failures name the operation of the family; that of TOF1 names the one of straight lines, which readers of these texts
// know.
namespace kvan::calibration {

namespace {

const TextForms& textsOf(CalibrationFamily strategy) {
    using FamilyTable::g_rows;
    const auto* const row = std::find_if(std::begin(g_rows), std::end(g_rows), [strategy](const FamilyRow& candidate) {
        return candidate.texts->strategy == strategy;
    });
    if (row == std::end(g_rows))
        BOOST_THROW_EXCEPTION(std::runtime_error("Calibration deserialization failed: unknown calibration strategy: " +
                                                 std::to_string(codeOf(strategy))));
    return *row->texts;
}

}  // namespace

CalibrationTextForm::TransformatorPtr CalibrationTextForm::ReadConstants(
    CalibrationFamily strategy, CalibrationTextReader& reader, const ICalibrationTransformatorFactory& factory) {
    const TextForms& texts = textsOf(strategy);
    CalibrationTextFields fields(reader, texts.operation);
    const std::size_t version = fields.Prefix(texts.prefixes);
    if (texts.oneLine)
        reader.LimitToLine();
    auto transformator = texts.read(fields, version, factory);
    // What follows the constants, a correction, may stand in other lines.
    reader.LiftLimit();
    return transformator;
}

CalibrationFamily CalibrationTextForm::StrategyOf(const ICalibrationTransformator& transformator) {
    const CalibrationFamily family = familyOf(transformator);
    const FamilyRow* const row = findRow(family);
    return row != nullptr ? row->texts->strategy : family;
}

void CalibrationTextForm::SerializePraefixAndConstants(CalibrationFamily strategy,
                                                       const ICalibrationTransformator& transformator,
                                                       CalibrationTextWriter& writer) {
    const TextForms& texts = textsOf(strategy);
    writer << texts.prefixes.back();
    texts.write(transformator, writer);
}

}  // namespace kvan::calibration
