#pragma once

#include "qsf2sql/qsflib/SegmentConditionBlock.h"
#include "qsf2sql/qsflib/SpectrumConditionBlock.h"
#include "qsf2sql/variables/acquisition_key_map.h"
#include "qsf2sql/variables/variable_descriptions.h"

#include <logger/logger.h>

#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

namespace kvan::io::qsf2sql {

/// The value of a variable as the file holds it, one alternative for each `VariableType` in the order of their codes.
/// The bytes lie in the condition block that was read.
struct Text {
    std::string_view bytes;  ///< Windows-1252
};
struct IntegerVector {
    std::string_view bytes;  ///< little-endian words of 32 bits
};
struct DoubleVector {
    std::string_view bytes;  ///< little-endian doubles
};
struct StringVector {
    std::string_view bytes;  ///< Windows-1252, a zero byte between two strings
};
using VariableValue = std::variant<std::int32_t, double, Text, IntegerVector, DoubleVector, StringVector>;

struct VariableSetting {
    const VariableDescription* description = nullptr;  ///< of the file's index; never null
    std::int32_t keyId = 0;                            ///< `AcquisitionKeys.Id`, or `VariableSettings::noKey`
    std::uint32_t order = 0;                           ///< of the setting in its block
    VariableValue value;

    const std::string& name() const { return description->permanentName(); }
};

/// The variables that one condition block sets, in the order of their permanent names and key Ids. Of several settings
/// of one name and key the first in the block counts. Variables that the descriptions do not hold are passed over.
///
/// One object reads many blocks. The settings are valid as long as the block that was read last is not changed.
class VariableSettings {
public:
    static constexpr std::int32_t noKey = -1;

    /// Both arguments must stay as they are while this object is used.
    VariableSettings(const VariableDescriptions& descriptions, const AcquisitionKeyMap& keys);

    void read(const KVAN::io::QSF::SegmentConditionBlock& condition);
    void read(const KVAN::io::QSF::SpectrumConditionBlock& condition);

    std::vector<VariableSetting>::const_iterator begin() const { return m_settings.begin(); }
    std::vector<VariableSetting>::const_iterator end() const { return m_settings.end(); }

    /// Logs all settings at TRACE.
    void dump() const;

private:
    template <class Table>
    void add(const Table& table, std::int32_t keyId = noKey);
    template <class Table>
    void addKeyed(const std::vector<Table>& tables);
    void finish();

    logging::Logger m_logger;
    const VariableDescriptions& m_descriptions;
    const AcquisitionKeyMap& m_keys;
    std::vector<VariableSetting> m_settings;
};

}  // namespace kvan::io::qsf2sql
