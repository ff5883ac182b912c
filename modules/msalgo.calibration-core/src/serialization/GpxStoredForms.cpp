#include "serialization/GpxStoredForms.h"

#include "serialization/StoredBlocks.h"

#include <calibration-core/constants/CalibrationPolynomialGPX.h>

// A correction of masses in both stored forms. In a blob its head begins where the farthest array before it ended; in a
// text every number is announced by a word, and a word that is not the expected one fails with the one text of all
// faults. A text without a correction holds an empty one.
namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

namespace {

void requireGpx(bool condition) {
    if (!condition)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("kvan::calibration::CalibrationTransformatorFactorySerialization::"
                               "DeserializeFromString: failed to create gpxTransformator"));
}

}  // namespace

GpxStoredForms::PolynomialPtr GpxStoredForms::ReadBlob(CalibBlobReadAccess& access) {
    // The offset of the coefficients counts from here, not from the blob.
    const std::size_t start = access.Position();
    const auto head = CalibratorUtil::ReadRecord<GPXCalibrationHead>(access);
    auto coefficients = CalibratorUtil::ReadDoubles(access, start, head.coefficientsOffset, head.coefficientsCount);
    return std::make_shared<Constants::CalibrationPolynomialGPX>(std::move(coefficients), head.c0, head.c2,
                                                                 head.minMass, head.maxMass, head.use != 0);
}

void GpxStoredForms::WriteBlob(const ICalibrationPolynomialGPX& polynomial, CalibBlobWriteAccess& access) {
    const auto& coefficients = polynomial.GetCoefficients();
    GPXCalibrationHead head{};
    head.c0 = polynomial.GetC0();
    head.c2 = polynomial.GetC2();
    head.minMass = polynomial.GetGlobalMassRange().first;
    head.maxMass = polynomial.GetGlobalMassRange().second;
    head.use = polynomial.GetUse() ? 1 : 0;
    head.coefficientsCount = storedCount(coefficients.size());
    // Written also with a count of 0.
    head.coefficientsOffset = sizeof head;
    CalibratorUtil::WriteRecord(access, head);
    CalibratorUtil::WriteDoubles(access, coefficients);
}

GpxStoredForms::PolynomialPtr GpxStoredForms::ReadText(CalibrationTextReader& reader) {
    // Order and words are fixed: a text is read as it is written, token by token.
    const auto word = [&](const char* expected) { requireGpx(reader.Token() == expected); };
    const auto number = [&](const char* name) {
        word(name);
        const auto value = reader.Double();
        requireGpx(value.has_value());
        return *value;
    };
    word("V1.0CGPXData");
    number("Order");  // the count of coefficients says as much
    word("vCoeff");
    auto coefficients = reader.Vector();
    const double c2 = number("c2");
    const double c0 = number("c0");
    const double minMass = number("minMass");
    const double maxMass = number("maxMass");
    const bool use = number("bUse") != 0.0;
    word("endCGPXData");
    return std::make_shared<Constants::CalibrationPolynomialGPX>(std::move(coefficients), c0, c2, minMass, maxMass,
                                                                 use);
}

void GpxStoredForms::AppendText(const ICalibrationPolynomialGPX& polynomial, std::string& text) {
    const auto [minMass, maxMass] = polynomial.GetGlobalMassRange();
    CalibrationTextWriter writer(text);
    writer << "V1.0CGPXData";
    text += ' ';  // before " Order " and " c2 ", which bring blanks of their own
    writer << "Order" << polynomial.GetOrder() << "vCoeff" << polynomial.GetCoefficients();
    text += ' ';
    writer << "c2" << polynomial.GetC2() << "c0" << polynomial.GetC0() << "minMass" << minMass << "maxMass" << maxMass
           << "bUse" << int{polynomial.GetUse()} << "endCGPXData";
}

}  // namespace kvan::calibration
