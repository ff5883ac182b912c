#include "serialization/CalibrationTextFields.h"
#include "serialization/CalibrationTextForm.h"
#include "serialization/WrappedAxis.h"

#include <calibration-core/interfaces/ICalibrationTransformatorKITE.h>

// Texts of both generations of KITE, in all versions that writers had. The first generation is read in the manner of a
// stream: a number that is missing makes every later one 0, and the text fails at two points only, each with the name
// of the field there. The second fails at the number itself, in the words of a prefix.
//
// Numbers that older writers added and nobody uses are read, so that the tokens after them are found.
namespace kvan::calibration {

namespace {

constexpr const char* g_kite1Prefixes[] = {"V1.0CKITECalibrationConstants", "V2.0CKITECalibrationConstants",
                                           "V2.1CKITECalibrationConstants", "V3.0CKITECalibrationConstants"};
enum Kite1Version : std::size_t { V1_0, V2_0, V2_1, V3_0 };

constexpr const char* g_kite2Prefixes[] = {"V1.0CKite2CalibrationConstants"};
constexpr std::string_view g_polynomialPrefix = "V1.0CCalibPolynomial";

using Polynomial = Constants::CalibrationPolynomialSimple;

Polynomial DeserializePolynomialSimple(CalibrationTextFields& fields) {
    if (fields.Token() != g_polynomialPrefix)
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "DeserializePolynomialSimple: Invalid polynomial string:  was data written with a newer software?"));
    Polynomial polynomial;
    polynomial.coefficients = fields.Vector();
    polynomial.argLow = fields.Double();
    polynomial.argHigh = fields.Double();
    polynomial.parentMass = fields.Double();
    return polynomial;
}

void writePolynomial(CalibrationTextWriter& writer, const Polynomial& polynomial) {
    writer << g_polynomialPrefix << polynomial.coefficients << polynomial.argLow << polynomial.argHigh
           << polynomial.parentMass;
}

void requireGood(const CalibrationTextStream& stream, const char* field) {
    if (!stream.Good())
        BOOST_THROW_EXCEPTION(std::runtime_error(
            std::string("kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeFromStringKITE: "
                        "While reading ") +
            field + ": Invalid calibration string, ignoring. Was data written with newer software?"));
}

TransformatorPtr readKite1(CalibrationTextFields& fields, std::size_t version, const Factory& factory) {
    const auto tof = CalibrationTextForm::ReadConstants(CalibrationFamily::Tof, fields.Reader(), factory);
    CalibrationTextStream stream(fields);
    Constants::CalibrationPolynomialKITE1::Numbers numbers;
    // Three numbers without a use here; 0 is written.
    stream.DropInts(3);
    numbers.ignoreIndexBounds = version >= V2_1 && stream.Bool();
    numbers.parentMass = stream.Double();
    numbers.correctionTime = stream.Double();
    numbers.kiteTime = stream.Double();
    numbers.calibrationParentMass = stream.Double();
    numbers.calibTimeRange.first = stream.Double();
    numbers.calibTimeRange.second = stream.Double();
    numbers.coefficients = stream.Vector();
    stream.DropVectors(1);  // the adapted coefficients
    const int calibMode = stream.Int();
    numbers.indexRange.first = stream.Int();
    numbers.indexRange.second = stream.Int();
    requireGood(stream, "calibMode");
    // What the numbers are followed by depends on the version alone; a missing tail shows only as a bad stream.
    if (version == V2_0 || version == V2_1) {
        stream.DropTailOfSecondVersion();
    } else if (version == V1_0) {
        stream.DropTailOfFirstVersion();
    }
    if (version >= V2_1) {
        stream.Bool();
        stream.DropInts(1);
        requireGood(stream, "iDummy");
    }
    // The mode stands with the polynomial, and belongs to the time axis.
    tof->SetCalibMode(calibMode);
    return factory.createTransformatorKite(tof, numbers);
}

void writeKite1(const ICalibrationTransformator& kite, CalibrationTextWriter& writer) {
    const auto held = polynomialOf<Constants::CalibrationPolynomialKITE1, ICalibrationTransformatorKITE>(kite);
    const auto& polynomial = *held;
    const ICalibrationTransformator& tof = axisInside(kite);
    CalibrationTextForm::SerializePraefixAndConstants(CalibrationFamily::Tof, tof, writer);
    const auto [timeLow, timeHigh] = polynomial.GetCalibTimeRange();
    const auto [firstIndex, lastIndex] = polynomial.GetIndexRange();
    writer << 0 << 0 << 0 << int{polynomial.GetIgnoreIndexBounds()};
    writer << polynomial.GetParentMass() << polynomial.GetCorrectionTime() << polynomial.GetKiteTime()
           << polynomial.GetCalibrationParentMass() << timeLow << timeHigh;
    writer << polynomial.GetCalibrationCoefficients() << polynomial.GetCoefficients();
    writer << tof.GetCalibMode() << firstIndex << lastIndex << 0 << 0;
}

TransformatorPtr readKite2(CalibrationTextFields& fields, std::size_t, const Factory& factory) {
    const auto tof = CalibrationTextForm::ReadConstants(CalibrationFamily::Tof, fields.Reader(), factory);
    Constants::CalibrationPolynomialKITE2::Numbers numbers;
    for (int count = fields.Int(); count > 0; --count)  // ends with the text, whatever the count
        numbers.parents.push_back(DeserializePolynomialSimple(fields));
    numbers.global = DeserializePolynomialSimple(fields);
    numbers.vc0 = fields.Vector();
    numbers.interpolationMode = fields.Int();
    fields.Int();
    numbers.parentMass = fields.Double();
    numbers.referenceTime = fields.Double();
    numbers.measuredParentMass = fields.Double();
    DeserializePolynomialSimple(fields);  // the global one as measured
    DeserializePolynomialSimple(fields);  // the one for the parent mass
    numbers.indexRange.first = fields.Int();
    numbers.indexRange.second = fields.Int();
    numbers.ignoreIndexBounds = fields.Int() != 0;
    // Numbers without a use here; 0 is written.
    for (int unread = 0; unread < 3; ++unread)
        fields.Int();
    return factory.createTransformatorKite2(tof, numbers);
}

void writeKite2(const ICalibrationTransformator& kite, CalibrationTextWriter& writer) {
    const auto held = polynomialOf<Constants::CalibrationPolynomialKITE2, ICalibrationTransformatorKITE>(kite);
    const auto& polynomial = *held;
    const ICalibrationTransformator& tof = axisInside(kite);
    CalibrationTextForm::SerializePraefixAndConstants(CalibrationFamily::Tof, tof, writer);
    const auto& numbers = polynomial.GetNumbers();
    writer << static_cast<int>(numbers.parents.size());
    for (const Polynomial& parent : numbers.parents)
        writePolynomial(writer, parent);
    writePolynomial(writer, numbers.global);
    writer << numbers.vc0 << numbers.interpolationMode << 0;
    writer << numbers.parentMass << numbers.referenceTime << numbers.measuredParentMass;
    writePolynomial(writer, numbers.global);
    writePolynomial(writer, polynomial.GetCurrentPolynomial());
    writer << numbers.indexRange.first << numbers.indexRange.second << int{numbers.ignoreIndexBounds};
    writer << 0 << 0 << 0;
}

}  // namespace

/// The text of the time axis inside, the numbers of the polynomial, its coefficients.
const TextForms g_kite1Texts = {
    CalibrationFamily::Kite1, g_kite1Prefixes, "DeserializeFromStringKITE", false, readKite1, writeKite1};

/// The text of the time axis inside, the polynomials, the numbers. The reference time at calibration has no place.
const TextForms g_kite2Texts = {
    CalibrationFamily::Kite2, g_kite2Prefixes, "DeserializeFromStringKITE2", false, readKite2, writeKite2};

}  // namespace kvan::calibration
