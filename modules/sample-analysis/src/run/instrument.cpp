#include "run/instrument.h"

#include <calibration-core/interfaces/Polarity.h>

// What the instrument tells about itself: every type of variable occurs, set or read back, with units and
// texts that are not ASCII, so that whoever reads a sample meets all cases. Voltages follow the polarity, temperatures
// the drift of the run, energies the precursor.

namespace kvan::sample::run {

namespace {

using enum KVAN::io::QSF::VarTabDescEntryRecord::Element;

// Indices in the file.
enum Variable : std::uint16_t {
    CapillaryVoltageSet = 101,
    EndPlateVoltageSet,
    DryGasTemperatureSet,
    SourceName,
    TransferTimesSet,
    LensVoltagesSet,
    StageNames,
    FlightTubeTemperature,
    ElectronicsTemperature,
    Summation,
    DryGasTemperature,
    Pressures,
    LensVoltages,
    Phase,
    Messages,
    CollisionEnergy,
    ChargeState,
    IsolationMass,
    IsolationWidth,
};

}  // namespace

// Texts are Windows-1252.
std::vector<VariableDeclaration> Instrument::declarations() {
    constexpr const char* volts = "V";
    constexpr const char* degrees = "\xB0\x43";
    constexpr const char* microseconds = "\xB5s";
    // clang-format off
    return {
        {CapillaryVoltageSet, Double, false, "Source_CapillaryVoltage_Set", "Source", "Capillary voltage", "", "%.0f", volts},
        {EndPlateVoltageSet, Double, false, "Source_EndPlateVoltage_Set", "Source", "End plate voltage", "", "%.0f", volts},
        {DryGasTemperatureSet, Double, false, "Source_DryGasTemperature_Set", "Source", "Dry gas, set", "", "%.1f", degrees},
        {SourceName, String, false, "Source_Name", "Source", "Ion source", "", "", ""},
        {TransferTimesSet, Double, true, "Transfer_Times_Set", "Transfer", "Transfer times", "", "%.1f", microseconds},
        {LensVoltagesSet, Integer, true, "Lens_Voltages_Set", "Transfer", "Lens voltages, set", "", "%d", volts},
        {StageNames, String, true, "Transfer_StageNames", "Transfer", "Stages", "", "", ""},
        {FlightTubeTemperature, Double, false, "TOF_DeviceTempCurrentValue1", "TOF", "Flight tube", "", "%.3f", degrees},
        {ElectronicsTemperature, Double, false, "TOF_DeviceTempCurrentValue2", "TOF", "Electronics", "", "%.3f", degrees},
        {Summation, Integer, false, "Digitizer_Summation", "Digitizer", "Summed scans", "", "%d", ""},
        {DryGasTemperature, Double, false, "Source_DryGasTemperature_Act", "Source", "Dry gas", "", "%.1f", degrees},
        {Pressures, Double, true, "Vacuum_Pressures_Act", "Vacuum", "Pressures by stage", "", "%.2e", "mbar"},
        {LensVoltages, Integer, true, "Lens_Voltages_Act", "Transfer", "Lens voltages", "", "%d", volts},
        {Phase, String, false, "Method_Phase", "Method", "Phase", "", "", ""},
        {Messages, String, true, "Method_Messages", "Method", "Messages", "", "", ""},
        {CollisionEnergy, Double, false, "Collision_Energy_Act", "MS/MS", "Collision energy", "", "%.1f", "eV"},
        {ChargeState, Integer, false, "MSMS_PreCursorChargeState", "MS/MS", "Charge of the precursor", "0=unknown", "%d", ""},
        {IsolationMass, Double, false, "MSMS_IsolationMass_Act", "MS/MS", "Isolated m/z", "", "%.4f", "m/z"},
        {IsolationWidth, Double, false, "Quadrupole_IsolationResolution_Act", "MS/MS", "Isolation width", "", "%.2f", "m/z"},
    };
    // clang-format on
}

Bytes Instrument::settings(const VariableKey& key) {
    const bool negative = key.polarity == POLARITY_NEGATIVE;
    const double transferTime = key.msLevel == 0 ? 75.0 : 60.0;
    return variableTables({{CapillaryVoltageSet, negative ? 3500.0 : -4500.0},
                           {EndPlateVoltageSet, negative ? 500.0 : -500.0},
                           {DryGasTemperatureSet, 200.0},
                           {SourceName, "Electrospray, 3 \xB5L/min"},
                           {TransferTimesSet, std::vector{transferTime, transferTime + 12.5}},
                           {LensVoltagesSet, negative ? std::vector{-5, -40, -300} : std::vector{5, 40, 300}},
                           {StageNames, std::vector<std::string>{"Funnel", "Hexapole", "Quadrupole"}}},
                          key);
}

Bytes Instrument::readings(const Moment& moment) {
    const double warmth = 4.0 * moment.part * (1.0 - moment.part);
    const bool isFragment = moment.isolated > 0.0;
    std::vector<VariableSetting> settings = {
        {FlightTubeTemperature, 29.5 + 0.8 * warmth + 0.002 * m_noise.normal()},
        {ElectronicsTemperature, 34.0 + 1.7 * warmth + 0.01 * m_noise.normal()},
        {Summation, isFragment ? 800 : 2500},
        {DryGasTemperature, 200.0 + 0.2 * m_noise.normal()},
        {Pressures, std::vector{2.6 + 0.01 * m_noise.normal(), 3.1e-3, 1.4e-7 + 2e-9 * m_noise.normal()}},
        {LensVoltages, std::vector<std::int32_t>{5, 40, 300 + static_cast<std::int32_t>(m_noise.below(3)) - 1}},
        {Phase, moment.part < 0.1   ? "Equilibration at 40 \xB0\x43"
                : moment.part < 0.9 ? "Gradient"
                                    : "Wash"},
    };
    // Now and then there is something to tell.
    if (m_noise.below(20) == 0)
        settings.push_back({Messages, std::vector<std::string>{"Spray current above 0.2 \xB5\x41", "Lock mass found"}});
    if (isFragment) {
        settings.push_back({CollisionEnergy, 20.0 + 0.03 * (moment.isolated - 400.0)});
        settings.push_back({ChargeState, moment.charge});
        settings.push_back({IsolationMass, moment.isolated});
        settings.push_back({IsolationWidth, moment.isolated < 700.0 ? 2.0 : 3.0});
    }
    return variableTables(settings);
}

}  // namespace kvan::sample::run
