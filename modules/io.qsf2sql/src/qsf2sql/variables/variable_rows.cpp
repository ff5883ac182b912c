#include "qsf2sql/variables/variable_rows.h"

#include "qsf2sql/variables/windows_1252.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string_view>
#include <typeinfo>
#include <utility>
#include <variant>

namespace kvan::io::qsf2sql {

// In come the settings of one condition; each becomes a row, or is logged and passed over. Both tables take them alike:
// a setting must be of the table's sort, its name must be one that the cache keeps, and the first row of a key stays.
//
// Text and vectors are bound where they lie, in the condition or in the buffer of the conversion. They are unbound when
// the settings are done, before the next condition takes their place. Values go in under the type of the first
// declaration of their name, since that is what `SupportedVariables` says of the column.

namespace {

enum Parameter : int { OWNER = 1, ACQUISITION_KEY, VARIABLE, VALUE };

/// Of two declarations of one name the first says what a column holds, but a setting may follow the other. Callers know
/// the failure by these words.
class WrongVariableType : public std::bad_cast {
public:
    const char* what() const noexcept override {
        return "boost::bad_any_cast: failed conversion using boost::any_cast";
    }
};

template <class Alternative>
const Alternative& valueAs(const VariableValue& value) {
    const auto* const held = std::get_if<Alternative>(&value);
    if (held == nullptr)
        BOOST_THROW_EXCEPTION(WrongVariableType());
    return *held;
}

}  // namespace

// Values of a segment that hold for every acquisition key would go to `PerSegmentVariables`, which is kept empty.
const VariableTable g_segmentVariables{
    "INSERT INTO PerSegAcqKeyVariables (Segment,AcquisitionKey,Variable,Value) VALUES (?1,?2,?3,?4)", true,
    "copySegmentVariables()", " for AK = -1.", [](const VariableDescription& variable) {
        return "per-segment variable (schema variable ID = " + std::to_string(variable.schemaId) + ")";
    }};

const VariableTable g_spectrumVariables{
    "INSERT INTO PerSpectrumVariables (Spectrum,Variable,Value) VALUES (?1,?3,?4)", false, "copySpectrumVariables()",
    " for AK != -1.", [](const VariableDescription& variable) { return "variable " + variable.permanentName(); }};

VariableRows::VariableRows(const VariableTable& table, const VariableDescriptions& descriptions,
                           cppsqlite::CppSQLite3DB& database, const logging::Logger& logger)
    : m_table(table),
      m_descriptions(descriptions),
      m_logger(logger),
      m_insert(database.compileStatement(table.insert)) {}

void VariableRows::insert(std::uint32_t owner, const VariableSettings& settings) {
    m_insert.bind(OWNER, owner);
    for (const VariableSetting& setting : settings) {
        if (!hasPlaceFor(setting))
            continue;
        const VariableDescription* const variable = m_descriptions.find(setting.name());
        if (variable == nullptr) {
            KVAN_LOG(m_logger, WARN) << m_table.copier << ": no variable info for " << setting.name() << ". Skipping.";
            continue;
        }
        if (m_table.isKeyed)
            m_insert.bind(ACQUISITION_KEY, setting.keyId);
        m_insert.bind(VARIABLE, variable->schemaId);
        bindValue(variable->type, setting.value);
        if (!insertRow() && !std::exchange(m_repetitionReported, true)) {
            KVAN_LOG(m_logger, WARN) << "QSF contains multiply defined " << m_table.repeated(*variable)
                                     << ". Ignoring this and all other duplicates.";
        }
    }
    m_insert.bindNull(VALUE);
}

bool VariableRows::hasPlaceFor(const VariableSetting& setting) const {
    const bool isKeyed = setting.keyId != VariableSettings::noKey;
    if (isKeyed == m_table.isKeyed)
        return true;
    KVAN_LOG(m_logger, WARN) << m_table.copier << ": unexpected setting of " << setting.name() << m_table.wrongKey
                             << " Skipping.";
    return false;
}

/// Numbers as such, texts as UTF-8, vectors as blobs: little-endian elements, or UTF-8 with a zero byte between texts.
void VariableRows::bindValue(VariableType type, const VariableValue& value) {
    const auto bindBlob = [this](std::string_view bytes) { m_insert.bindBorrowed(VALUE, bytes.data(), bytes.size()); };
    switch (type) {
        case VariableType::Integer:
            return m_insert.bind(VALUE, valueAs<std::int32_t>(value));
        case VariableType::Double:
            return m_insert.bind(VALUE, valueAs<double>(value));
        case VariableType::String:
            return m_insert.bindBorrowed(VALUE, windows1252ToUtf8(valueAs<Text>(value).bytes, m_utf8));
        case VariableType::IntegerVector:
            return bindBlob(valueAs<IntegerVector>(value).bytes);
        case VariableType::DoubleVector:
            return bindBlob(valueAs<DoubleVector>(value).bytes);
        case VariableType::StringVector:
            return bindBlob(windows1252ToUtf8(valueAs<StringVector>(value).bytes, m_utf8));
        case VariableType::NotDeclared:
            break;
    }
    BOOST_THROW_EXCEPTION(std::runtime_error("Not implemented yet."));
}

/// Tolerated: a condition that repeats a variable of an earlier one. False then, and the first value stays.
bool VariableRows::insertRow() {
    try {
        m_insert.execDML();
    } catch (const cppsqlite::CppSQLite3Exception& fault) {
        if (fault.errorCode() != SQLITE_CONSTRAINT)
            throw;
        return false;
    }
    return true;
}

}  // namespace kvan::io::qsf2sql
