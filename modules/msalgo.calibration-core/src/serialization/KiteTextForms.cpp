#include "serialization/KiteTextForms.h"

#include "serialization/CalibrationTextFields.h"

#include <iterator>

namespace kvan::calibration {

namespace {

constexpr const char* g_kite1Prefixes[] = {"V1.0CKITECalibrationConstants", "V2.0CKITECalibrationConstants",
                                           "V2.1CKITECalibrationConstants", "V3.0CKITECalibrationConstants"};
enum Kite1Version : std::size_t { V1_0, V2_0, V2_1, V3_0 };

void requireGood(const CalibrationTextStream& stream, const char* field) {
    if (!stream.Good())
        BOOST_THROW_EXCEPTION(std::runtime_error(
            std::string("kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeFromStringKITE: "
                        "While reading ") +
            field + ": Invalid calibration string, ignoring. Was data written with newer software?"));
}

}  // namespace

CalibrationTextForm::TransformatorPtr Kite1TextForm::Read(CalibrationTextReader& reader,
                                                          const ICalibrationTransformatorFactory& factory) {
    const std::size_t version = CalibrationTextFields(reader, "DeserializeFromStringKITE")
                                    .Prefix(std::begin(g_kite1Prefixes), std::end(g_kite1Prefixes));
    const auto tof = CalibrationTextForm::ReadConstants(CalibrationTextForm::TofStrategy, reader, factory);
    CalibrationTextStream stream(reader);
    Constants::CalibrationPolynomialKITE1::Numbers numbers;
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
    if (version == V2_0 || version == V2_1) {
        stream.DropInts(1);
        stream.DropVectors(1);
        stream.DropDoubles(2);
    } else if (version == V1_0) {
        stream.DropVectors(4);
        stream.DropInts(1);
    }
    if (version >= V2_1) {
        stream.Bool();
        stream.DropInts(1);
        requireGood(stream, "iDummy");
    }
    tof->SetCalibMode(calibMode);
    return factory.createTransformatorKite(tof, numbers);
}

void Kite1TextForm::Write(const ICalibrationTransformator& tof, const Constants::CalibrationPolynomialKITE1& polynomial,
                          CalibrationTextWriter& writer) {
    writer << g_kite1Prefixes[V3_0];
    CalibrationTextForm::SerializePraefixAndConstants(CalibrationTextForm::TofStrategy, tof, writer);
    const auto [timeLow, timeHigh] = polynomial.GetCalibTimeRange();
    const auto [firstIndex, lastIndex] = polynomial.GetIndexRange();
    writer << 0 << 0 << 0 << int{polynomial.GetIgnoreIndexBounds()};
    writer << polynomial.GetParentMass() << polynomial.GetCorrectionTime() << polynomial.GetKiteTime()
           << polynomial.GetCalibrationParentMass() << timeLow << timeHigh;
    writer << polynomial.GetCalibrationCoefficients() << polynomial.GetCoefficients();
    writer << tof.GetCalibMode() << firstIndex << lastIndex << 0 << 0;
}

}  // namespace kvan::calibration
