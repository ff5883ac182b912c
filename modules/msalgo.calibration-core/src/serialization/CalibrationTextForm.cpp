#include "serialization/CalibrationTextForm.h"

#include "serialization/CalibrationTextFields.h"
#include "serialization/ICalibTextSerialization.h"
#include "serialization/KiteTextForms.h"
#include "serialization/PsdStoredForms.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsLinear.h>
#include <calibration-core/constants/CalibrationConstantsPaladin.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <iterator>
#include <stdexcept>

namespace kvan::calibration {

namespace {

using namespace Constants;
using TransformatorPtr = CalibrationTextForm::TransformatorPtr;
using Factory = ICalibrationTransformatorFactory;
using Fields = CalibrationTextFields;
using Compensation = ICalibrationConstantsFunctionalTemperatureCompensation;

constexpr const char* g_tof2Prefix = "V1.0CTOF2CalibrationConstants";

/// The constants of a transformator that is written, each in the view `View`.
struct WrittenConstants {
    std::shared_ptr<ICalibrationConstantsFunctional> functional;
    std::shared_ptr<ICalibrationConstantsPhysical> physical;

    template <class View>
    const View& law() const {
        return viewOf<View>(functional.get());
    }
    template <class View>
    const View& axis() const {
        return viewOf<View>(physical.get());
    }

private:
    template <class View, class Held>
    static const View& viewOf(const Held* held) {
        const auto* const view = dynamic_cast<const View*>(held);
        if (view == nullptr)
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactorySerialization::SerializePraefixAndConstants: Constants do not offer "
                "serialization interface."));
        return *view;
    }
};

// The numbers of a line are read one by one: arguments of a call have no order.

TransformatorPtr readTof(Fields& fields, const Factory& factory) {
    const double timeDelay = fields.Double();
    const double timeBase = fields.Double();
    const double c0 = fields.Double();
    const double c1 = fields.Double();
    const double c2 = fields.Double();
    const int calibMode = fields.Int();
    return factory.createTransformatorTof(std::make_shared<CalibrationConstantsFunctionalTOF1>(c0, c1, c2, calibMode),
                                          std::make_shared<CalibrationConstantsPhysicalTOF>(timeDelay, timeBase));
}

void writeTof(const WrittenConstants& constants, CalibrationTextWriter& writer) {
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalTOF>();
    const auto& law = constants.law<ICalibrationConstantsFunctionalTOF1>();
    writer << axis.GetTimeDelay() << axis.GetTimeBase() << law.GetStoredC0() << law.GetStoredC1() << law.GetStoredC2()
           << constants.functional->GetCalibMode();
}

struct Tof2Numbers {
    std::shared_ptr<CalibrationConstantsPhysicalTOF> axis;
    CalibrationConstantsFunctionalTOF2 law;
};

Tof2Numbers readTof2Numbers(Fields& fields) {
    const double timeDelay = fields.Double();
    const double timeBase = fields.Double();
    const double c0 = fields.Double();
    const double c1 = fields.Double();
    const double c2 = fields.Double();
    const double c3 = fields.Double();
    const double c4 = fields.Double();
    const int calibMode = fields.Int();
    return {std::make_shared<CalibrationConstantsPhysicalTOF>(timeDelay, timeBase), {c0, c1, c2, c3, c4, calibMode}};
}

TransformatorPtr readTof2(Fields& fields, const Factory& factory) {
    const Tof2Numbers numbers = readTof2Numbers(fields);
    return factory.createTransformatorTof2(std::make_shared<CalibrationConstantsFunctionalTOF2>(numbers.law),
                                           numbers.axis);
}

void writeTof2(const WrittenConstants& constants, CalibrationTextWriter& writer) {
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalTOF>();
    const auto& law = constants.law<CalibrationConstantsFunctionalTOF2>();
    writer << axis.GetTimeDelay() << axis.GetTimeBase() << law.GetStoredC0() << law.GetStoredC1() << law.GetStoredC2()
           << law.GetStoredC3() << law.GetShift() << law.GetCalibMode();
}

TransformatorPtr readTof2Compensated(Fields& fields, const Factory& factory) {
    fields.Prefix(&g_tof2Prefix, &g_tof2Prefix + 1);
    const Tof2Numbers numbers = readTof2Numbers(fields);
    const auto mode = Compensation::compensationModeFromInt(fields.Int());
    const auto law = std::make_shared<CalibrationConstantsFunctionalTOF2TemperatureCompensation>(numbers.law);
    law->SetMeasuredTemperatures(fields.Vector());
    law->SetCorrectionFactors(fields.Vector());
    law->SetCompensationMode(mode);  // last: setting the temperatures sets a mode of its own
    return factory.createTransformatorTof2(law, numbers.axis);
}

void writeTof2Compensated(const WrittenConstants& constants, CalibrationTextWriter& writer) {
    const auto& compensation = constants.law<Compensation>();
    writer << g_tof2Prefix;
    writeTof2(constants, writer);
    writer << compensation.GetCompensationMode() << compensation.GetMeasuredTemperatures()
           << compensation.GetCorrectionFactors();
}

TransformatorPtr readPaladin(Fields& fields, const Factory& factory) {
    const double c0 = fields.Double();
    const double c1 = fields.Double();
    const double c2 = fields.Double();
    const int calibMode = fields.Int();
    const double measurementsPerRawMass = fields.Double();
    const double beginRawMass = fields.Double();
    return factory.createTransformatorTrap(
        std::make_shared<CalibrationConstantsFunctionalPaladin>(c0, c1, c2, calibMode),
        std::make_shared<CalibrationConstantsPhysicalPaladin>(beginRawMass, measurementsPerRawMass));
}

void writePaladin(const WrittenConstants& constants, CalibrationTextWriter& writer) {
    const auto& law = constants.law<ICalibrationConstantsFunctionalPaladin>();
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalPaladin>();
    writer << law.GetStoredC0() << law.GetStoredC1() << law.GetStoredC2() << constants.functional->GetCalibMode()
           << axis.GetMeasurementsPerRawMass() << axis.GetBeginRawMass();
}

TransformatorPtr readLinear(Fields& fields, const Factory& factory) {
    const double a0 = fields.Double();
    const double a1 = fields.Double();
    const double c0 = fields.Double();
    const double c1 = fields.Double();
    const int calibMode = fields.Int();
    return factory.createTransformatorLinear(std::make_shared<CalibrationConstantsFunctionalLinear>(c0, c1, calibMode),
                                             std::make_shared<CalibrationConstantsPhysicalLinear>(a0, a1));
}

void writeLinear(const WrittenConstants& constants, CalibrationTextWriter& writer) {
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalLinear>();
    const auto& law = constants.law<ICalibrationConstantsFunctionalLinear>();
    writer << axis.GetA0() << axis.GetA1() << law.GetStoredC0() << law.GetStoredC1()
           << constants.functional->GetCalibMode();
}

/// Throws for the calibration modes that no text has.
void checkFtmsMode(int mode) {
    switch (mode) {
        case 0:
        case 1:
        case 4:
        case 5:
            return;
        case 3:
        case 6:
            BOOST_THROW_EXCEPTION(std::runtime_error(
                "CalibrationTransformatorFactorySerialization::DeserializeFromStringFTMS: mode 3 or 6 not supported."));
        case 2:
            BOOST_THROW_EXCEPTION(std::runtime_error(
                "CalibrationTransformatorFactorySerialization::DeserializeFromStringFTMS: mode 2 not supported."));
        default:
            BOOST_THROW_EXCEPTION(std::runtime_error(
                "CalibrationTransformatorFactorySerialization::DeserializeFromStringFTMS: unknown FTMS operation "
                "mode: " +
                std::to_string(mode)));
    }
}

TransformatorPtr readFtms(Fields& fields, const Factory& factory) {
    const double alpha = fields.Double();
    const double beta = fields.Double();
    const double freqHigh = fields.Double();
    const double freqLow = fields.Double();
    const double freqWidth = fields.Double();
    const int calibMode = fields.Int();
    checkFtmsMode(calibMode);
    const int ftmsRawMode = fields.Int();
    const int size = fields.Int();
    const bool quadraticFlag = fields.Int() != 0;
    return factory.createTransformatorIcr(
        factory.createConstantsFunctionalIcr(calibMode, ftmsRawMode, size, quadraticFlag, alpha, beta, freqHigh),
        std::make_shared<CalibrationConstantsPhysicalFTMS>(freqLow, freqWidth, size, calibMode, ftmsRawMode));
}

void writeFtms(const WrittenConstants& constants, CalibrationTextWriter& writer) {
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalFTMS>();
    if (const auto* const linear =
            dynamic_cast<const ICalibrationConstantsFunctionalFTMS04*>(constants.functional.get())) {
        writer << 0.0 << linear->GetBeta() << linear->GetFreqHigh();
    } else {
        const auto& quadratic = constants.law<ICalibrationConstantsFunctionalFTMS1356>();
        writer << quadratic.GetAlpha() << quadratic.GetBeta() << quadratic.GetFreqHigh();
    }
    const auto& law = constants.law<ICalibrationConstantsFunctionalFTMS>();
    writer << axis.GetFreqLow() << axis.GetFreqWidth() << constants.functional->GetCalibMode() << law.GetFTMSRawMode()
           << axis.GetSize() << int{law.GetQuadraticFlag()};
}

struct TextFamily {
    int strategy;
    const char* prefixes[3];  // oldest first, null where there is none; the newest is written
    const char* operation;    // named in failures
    bool oneLine;             // whether the constants end with the line of the prefix
    TransformatorPtr (*read)(Fields& fields, const Factory& factory);
    void (*write)(const WrittenConstants& constants, CalibrationTextWriter& writer);
};

constexpr TextFamily g_families[] = {
    {CalibrationTextForm::TofStrategy,
     {"V1.0CTOFCalibrationConstants", "V2.0CTOFCalibrationConstants", "V3.0CTOFCalibrationConstants"},
     "DeserializeFromStringLinear",  // deliberate: the words that readers of these texts know
     false,
     readTof,
     writeTof},
    {2,
     {"V1.0CPaladinCalibrationConstants", "V2.0CPaladinCalibrationConstants", "V3.0CPaladinCalibrationConstants"},
     "DeserializeFromStringPaladin",
     true,
     readPaladin,
     writePaladin},
    {3,
     {"V1.0CICRCalibrationConstants", "V2.0CICRCalibrationConstants", "V3.0CICRCalibrationConstants"},
     "DeserializeFromStringFTMS",
     true,
     readFtms,
     writeFtms},
    {4,
     {"V1.0CLinearCalibrationConstants", "V2.0CLinearCalibrationConstants", "V3.0CLinearCalibrationConstants"},
     "DeserializeFromStringLinear",
     true,
     readLinear,
     writeLinear},
    {12, {nullptr, nullptr, g_tof2Prefix}, "DeserializeFromStringTOF2", true, readTof2, writeTof2},
    {13,
     {nullptr, nullptr, "V1.0CTOF2TemperatureCompensatedCalibrationConstants"},
     "DeserializeFromStringTOF2TemperatureCompensated",
     true,
     readTof2Compensated,
     writeTof2Compensated},
};

/// Families around a time-of-flight axis, whose constants hold its text.
struct WrappingTextFamily {
    int strategy;
    TransformatorPtr (*read)(CalibrationTextReader& reader, const Factory& factory);
};

constexpr WrappingTextFamily g_wrappingFamilies[] = {
    {PsdTextForm::Strategy, PsdTextForm::Read},
    {Kite1TextForm::Strategy, Kite1TextForm::Read},
    {Kite2TextForm::Strategy, Kite2TextForm::Read},
};

const TextFamily& familyOf(int strategy) {
    const auto* const family = std::find_if(std::begin(g_families), std::end(g_families),
                                            [=](const TextFamily& row) { return row.strategy == strategy; });
    if (family == std::end(g_families))
        BOOST_THROW_EXCEPTION(std::runtime_error("Calibration deserialization failed: unknown calibration strategy: " +
                                                 std::to_string(strategy)));
    return *family;
}

}  // namespace

TransformatorPtr CalibrationTextForm::ReadConstants(int strategy, CalibrationTextReader& reader,
                                                    const Factory& factory) {
    const auto* const wrapping = std::find_if(std::begin(g_wrappingFamilies), std::end(g_wrappingFamilies),
                                              [=](const WrappingTextFamily& row) { return row.strategy == strategy; });
    if (wrapping != std::end(g_wrappingFamilies))
        return wrapping->read(reader, factory);
    const TextFamily& family = familyOf(strategy);
    Fields fields(reader, family.operation);
    fields.Prefix(std::begin(family.prefixes), std::end(family.prefixes));
    if (family.oneLine)
        reader.LimitToLine();
    auto transformator = family.read(fields, factory);
    reader.LiftLimit();
    return transformator;
}

int CalibrationTextForm::StrategyOf(const ICalibrationTransformator& transformator) {
    constexpr int compensatedTof1 = 9;
    const int code = transformator.GetFunctionalTypeCode();
    return code == compensatedTof1 ? TofStrategy : code;
}

void CalibrationTextForm::SerializePraefixAndConstants(int strategy, const ICalibrationTransformator& transformator,
                                                       CalibrationTextWriter& writer) {
    if (const auto* const own = dynamic_cast<const ICalibTextSerialization*>(&transformator))
        return own->SerializeDataToString(writer);
    const TextFamily& family = familyOf(strategy);
    writer << *std::rbegin(family.prefixes);
    family.write({transformator.GetFunctionalConstants(), transformator.GetPhysicalConstants()}, writer);
}

}  // namespace kvan::calibration
