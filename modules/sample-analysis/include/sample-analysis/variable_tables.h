#pragma once

#include <calibration-core/interfaces/Polarity.h>
#include <sample-analysis/analysis_data.h>

#include <variant>

/// The values of variables, as blocks for the pools of the conditions.
namespace kvan::sample::native {

/// Texts are Windows-1252.
using VariableValue = std::variant<std::int32_t, double, std::string, std::vector<std::int32_t>, std::vector<double>,
                                   std::vector<std::string>>;

/// Sets the variable that is declared with that index. Nothing checks that it is declared so.
struct VariableSetting {
    std::uint16_t variable = 0;
    VariableValue value = {};
};

/// For which spectra of a segment values hold: those whose quick info says the same.
struct VariableKey {
    std::uint8_t polarity = POLARITY_POSITIVE;
    std::uint8_t acquisitionMode = 0;
    std::uint8_t msLevel = 0;
    std::uint8_t scanMode = 0;
};

/// One block for each kind of value that is there, in the order of the settings. Without a key for a spectrum, with one
/// for a segment; the blocks of several keys may follow one another. Throws `boost::numeric::bad_numeric_cast` for a
/// value that does not fit an entry of 64 KiB.
Bytes variableTables(const std::vector<VariableSetting>& settings, const std::optional<VariableKey>& key = {});

}  // namespace kvan::sample::native

namespace kvan::sample {
using namespace native;  // callers need not know the room
}
