#include "qsf2sql/variables/variable_settings.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <optional>
#include <ostream>
#include <tuple>

namespace kvan::io::qsf2sql {

using namespace KVAN::io::QSF;

// In comes a condition block whose tables have been read; out come its settings, typed as the variables are declared,
// sorted by name and key. The bytes of texts and vectors stay in the block.
//
// Sorting one vector is cheaper than a map a block: names are compared by their rank, and a setting is a few words. The
// order of entry decides among settings of one name and key, so the sort has it as the last part of its key.
//
// Tolerated, setting by setting: a variable that is not declared or not wanted, silently; one whose table is of another
// kind than its declaration, with a warning. Tables for a key that no quick-info record has are not looked at.

namespace {

/// An integer stands in the low half of the entry's eight bytes.
template <class T>
T numberIn(const VarTabValueEntry& entry) {
    static_assert(sizeof(T) <= sizeof entry.value);
    T number;
    std::memcpy(&number, entry.value, sizeof number);  // lint: raw-bytes: size asserted above
    return number;
}

template <class Alternative>
std::optional<VariableValue> valueIf(bool matches, const VarTabDataEntry& entry) {
    return matches ? std::optional<VariableValue>(Alternative{entry.data}) : std::nullopt;
}

// The value of an entry; none if a table of this kind cannot hold a variable that is declared so.

template <class Header>
std::optional<VariableValue> valueOf(const VarTabValueBlock_Generic<Header>&, const VarTabValueEntry& entry,
                                     VariableType declared) {
    if (declared == VariableType::Integer)
        return numberIn<std::int32_t>(entry);
    if (declared == VariableType::Double)
        return numberIn<double>(entry);
    return std::nullopt;
}

template <class Header>
std::optional<VariableValue> valueOf(const VarTabStringBlock_Generic<Header>&, const VarTabDataEntry& entry,
                                     VariableType declared) {
    return valueIf<Text>(declared == VariableType::String, entry);
}

template <class Header>
std::optional<VariableValue> valueOf(const TypedVarTabValueBlock_Generic<Header, int>&, const VarTabDataEntry& entry,
                                     VariableType declared) {
    return valueIf<IntegerVector>(declared == VariableType::IntegerVector, entry);
}

template <class Header>
std::optional<VariableValue> valueOf(const TypedVarTabValueBlock_Generic<Header, double>&, const VarTabDataEntry& entry,
                                     VariableType declared) {
    return valueIf<DoubleVector>(declared == VariableType::DoubleVector, entry);
}

template <class Header>
std::optional<VariableValue> valueOf(const TypedVarTabValueBlock_Generic<Header, std::string>&,
                                     const VarTabDataEntry& entry, VariableType declared) {
    return valueIf<StringVector>(declared == VariableType::StringVector, entry);
}

auto keyOf(const VariableSetting& setting) {
    return std::tuple(setting.description->nameRank, setting.keyId);
}

struct Printed {
    const VariableSetting& setting;
};

std::ostream& operator<<(std::ostream& stream, const Printed& printed) {
    const VariableValue& value = printed.setting.value;
    if (const auto* const integer = std::get_if<std::int32_t>(&value))
        return stream << *integer;
    if (const auto* const real = std::get_if<double>(&value))
        return stream << *real;
    if (const auto* const text = std::get_if<Text>(&value))
        return stream << text->bytes;
    return stream << "<VariableType=" << static_cast<int>(printed.setting.description->type) << ">";
}

/// Blocks of these kinds hold no variables; the words come whether or not a condition has them.
void logOncePerProcess(const logging::Logger& logger) {
    static std::atomic<bool> logged = false;
    if (logged.exchange(true, std::memory_order_relaxed))
        return;
    KVAN_LOG(logger, DEBUG) << "Ignoring CalibrationBlock in variables.";
    KVAN_LOG(logger, DEBUG) << "Ignoring MSMSParameterBlock in variables.";
}

}  // namespace

VariableSettings::VariableSettings(const VariableDescriptions& descriptions, const AcquisitionKeyMap& keys)
    : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql.VariableSettings")),
      m_descriptions(descriptions),
      m_keys(keys) {}

void VariableSettings::read(const SegmentConditionBlock& condition) {
    m_settings.clear();
    add(condition.values);
    add(condition.strings);
    add(condition.integerVectors);
    add(condition.doubleVectors);
    add(condition.stringVectors);
    addKeyed(condition.keyedValues);
    addKeyed(condition.keyedStrings);
    addKeyed(condition.keyedIntegerVectors);
    addKeyed(condition.keyedDoubleVectors);
    addKeyed(condition.keyedStringVectors);
    finish();
}

void VariableSettings::read(const SpectrumConditionBlock& condition) {
    m_settings.clear();
    add(condition.values);
    add(condition.strings);
    logOncePerProcess(m_logger);
    add(condition.integerVectors);
    add(condition.doubleVectors);
    add(condition.stringVectors);
    finish();
}

template <class Table>
void VariableSettings::add(const Table& table, std::int32_t keyId) {
    for (const auto& entry : table.entries) {
        const VariableDescription* const description = m_descriptions.find(entry.variable);
        if (description == nullptr)
            continue;
        if (const auto value = valueOf(table, entry, description->type)) {
            const auto order = static_cast<std::uint32_t>(m_settings.size());
            m_settings.push_back({description, keyId, order, *value});
        } else {
            KVAN_LOG(m_logger, WARN) << "Variable type mismatch (declaration<->setting) for "
                                     << description->permanentName();
        }
    }
}

template <class Table>
void VariableSettings::addKeyed(const std::vector<Table>& tables) {
    for (const Table& table : tables) {
        const auto& header = table.header;
        if (const auto id = m_keys.findId({header.polarity, header.scanMode, header.acquisitionMode, header.msLevel}))
            add(table, *id);
    }
}

void VariableSettings::finish() {
    std::sort(m_settings.begin(), m_settings.end(), [](const VariableSetting& left, const VariableSetting& right) {
        return std::tuple_cat(keyOf(left), std::tuple(left.order)) <
               std::tuple_cat(keyOf(right), std::tuple(right.order));
    });
    const auto isRepeated = [](const VariableSetting& left, const VariableSetting& right) {
        return keyOf(left) == keyOf(right);
    };
    m_settings.erase(std::unique(m_settings.begin(), m_settings.end(), isRepeated), m_settings.end());
    KVAN_LOG(m_logger, TRACE) << "Read " << m_settings.size() << " variable settings.";
}

void VariableSettings::dump() const {
    if (!m_logger.isEnabled(logging::Level::TRACE))
        return;
    for (const VariableSetting& setting : m_settings)
        KVAN_LOG(m_logger, TRACE) << "Set " << setting.name() << " to " << Printed{setting} << " for AK "
                                  << setting.keyId;
}

}  // namespace kvan::io::qsf2sql
