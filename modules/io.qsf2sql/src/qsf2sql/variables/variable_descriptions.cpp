#include "qsf2sql/variables/variable_descriptions.h"

#include "qsf2sql/variables/windows_1252.h"

#include <qsf2sql/qsflib/VariableTableRecords.h>

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <optional>
#include <stdexcept>

namespace kvan::io::qsf2sql {

namespace {

using KVAN::io::QSF::VarTabDescBlock;
using KVAN::io::QSF::VarTabDescEntryBlock;
using KVAN::io::QSF::VarTabDescEntryRecord;

constexpr BuiltInVariable g_builtInTable[] = {
    {2, "Digitizer_Summation"},
    {5, "Collision_Energy_Act"},
    {6, "MSMS_PreCursorChargeState"},
    {7, "MSMS_IsolationMass_Act"},
    {8, "Quadrupole_IsolationResolution_Act"},
    {9, "TOF_DeviceTempCurrentValue1"},
    {10, "TOF_DeviceTempCurrentValue2"},
    {11, "TOF_SwitchTempCompensation"},
    {12, "TOF_UseOnlyOneTemperature"},
    {13, "TOF_DeviceTempGradient1"},
    {14, "TOF_DeviceTempGradient2"},
    {15, "TOF_DeviceReferenceTemp1"},
    {16, "TOF_DeviceReferenceTemp2"},
    {20, "Prototype_AutoMSMS_Exclusion_Mass_Count"},
    {21, "Prototype_AutoMSMS_Exclusion_Mass_Bin_Width"},
    {22, "Prototype_AutoMSMS_Exclusion_Mass_List_Blocks"},
};

/// Tolerated: a vector flag other than 0 and 1, which makes a scalar.
std::optional<VariableType> typeOf(const VarTabDescEntryBlock& entry) {
    const bool isVector = entry.isVector == 1;
    switch (entry.elementType) {
        case VarTabDescEntryRecord::Integer:
            return isVector ? VariableType::IntegerVector : VariableType::Integer;
        case VarTabDescEntryRecord::Double:
            return isVector ? VariableType::DoubleVector : VariableType::Double;
        case VarTabDescEntryRecord::String:
            return isVector ? VariableType::StringVector : VariableType::String;
        default:
            return std::nullopt;
    }
}

const BuiltInVariable* findBuiltIn(std::span<const BuiltInVariable> builtIns, const std::string& name) {
    const auto found = std::find_if(builtIns.begin(), builtIns.end(),
                                    [&name](const BuiltInVariable& row) { return row.permanentName == name; });
    return found == builtIns.end() ? nullptr : &*found;
}

bool isBuiltInId(std::span<const BuiltInVariable> builtIns, std::int64_t id) {
    return std::any_of(builtIns.begin(), builtIns.end(),
                       [id](const BuiltInVariable& row) { return row.schemaId == id; });
}

/// The largest number that is an index in the file or the Id of a built-in.
std::int64_t topOf(const VarTabDescBlock& declarations, std::span<const BuiltInVariable> builtIns) {
    std::int64_t top = 0;
    for (const VarTabDescEntryBlock& entry : declarations.entries)
        top = std::max<std::int64_t>(top, entry.variable);
    for (const BuiltInVariable& row : builtIns)
        top = std::max(top, row.schemaId);
    return top;
}

}  // namespace

const std::span<const BuiltInVariable> g_builtInVariables(g_builtInTable);

// In come the declarations of the file in their order. Callers ask for the built-in variables by number, so these have
// the same Ids in every cache, and any other variable whose index in the file is one of these numbers moves above all
// indices. What the file does not declare follows as a row without values.
//
// Tolerated: a type that is not known, which is logged and the variable passed over; if it is a built-in one, it counts
// as not declared. A name that is declared twice, which is kept twice; the first declaration is the one that it finds.
VariableDescriptions::VariableDescriptions(const VarTabDescBlock& declarations,
                                           std::span<const BuiltInVariable> builtIns, bool allVariables,
                                           const std::unordered_set<std::string>& requested)
    : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql.VariableDescriptions")) {
    KVAN_LOG(m_logger, TRACE) << "Variable description block has " << declarations.entries.size() << " entries.";
    std::int64_t top = topOf(declarations, builtIns);
    std::unordered_set<std::int64_t> declaredBuiltIns;

    for (const VarTabDescEntryBlock& entry : declarations.entries) {
        const std::string& name = entry.texts[VarTabDescEntryBlock::PermanentName];
        KVAN_LOG(m_logger, TRACE) << name << " (" << entry.texts[VarTabDescEntryBlock::DisplayName] << ") idx "
                                  << entry.variable << " type " << entry.elementType << " vec " << entry.isVector;
        const std::optional<VariableType> type = typeOf(entry);
        if (!type) {
            KVAN_LOG(m_logger, WARN) << "Variable " << name << " has unsupported type " << entry.elementType
                                     << "; skipping";
            continue;
        }
        const BuiltInVariable* const builtIn = findBuiltIn(builtIns, name);
        if (builtIn == nullptr && !allVariables && !requested.contains(name))
            continue;
        std::int64_t schemaId = entry.variable;
        if (builtIn != nullptr)
            declaredBuiltIns.insert(schemaId = builtIn->schemaId);
        else if (isBuiltInId(builtIns, schemaId))
            schemaId = ++top;
        m_byFileIndex.try_emplace(entry.variable, m_records.size());
        m_records.push_back({*type, schemaId, entry.texts});
    }

    // These have no index in the file, so that no setting can meet them.
    for (const BuiltInVariable& row : builtIns)
        if (!declaredBuiltIns.contains(row.schemaId))
            m_records.push_back({VariableType::NotDeclared, row.schemaId, {row.permanentName}});
    rankNames();
}

/// Comparing two numbers stands for comparing two names when the settings of a block are sorted.
void VariableDescriptions::rankNames() {
    for (std::size_t index = 0; index < m_records.size(); ++index)
        m_byName.try_emplace(m_records[index].permanentName(), index);
    std::vector<std::string_view> names;
    for (const auto& [name, first] : m_byName)
        names.push_back(name);
    std::sort(names.begin(), names.end());
    for (VariableDescription& record : m_records) {
        const auto place = std::lower_bound(names.begin(), names.end(), record.permanentName());
        record.nameRank = static_cast<std::size_t>(place - names.begin());
    }
}

const VariableDescription* VariableDescriptions::find(std::uint16_t fileIndex) const {
    const auto found = m_byFileIndex.find(fileIndex);
    return found == m_byFileIndex.end() ? nullptr : &m_records[found->second];
}

const VariableDescription* VariableDescriptions::find(const std::string& permanentName) const {
    const auto found = m_byName.find(permanentName);
    return found == m_byName.end() ? nullptr : &m_records[found->second];
}

VariableType VariableDescriptions::getVariableType(const std::string& permanentName) const {
    const VariableDescription* const record = find(permanentName);
    if (record == nullptr)
        BOOST_THROW_EXCEPTION(std::runtime_error("Variable not supported."));
    return record->type;
}

void VariableDescriptions::writeTo(cppsqlite::CppSQLite3DB& database) const {
    auto insert = database.compileStatement("INSERT INTO SupportedVariables VALUES (?,?,?,?,?,?,?,?)");
    for (const VariableDescription& record : m_records) {
        // Units have a degree or micro sign in them; of the display texts only they are converted.
        const std::string dimension = windows1252ToUtf8(record.texts[VarTabDescEntryBlock::DisplayDimension]);
        KVAN_LOG(m_logger, TRACE) << "Supported variable ID = " << record.schemaId
                                  << ", permname = " << record.permanentName() << ", dimension = " << dimension;
        insert.bind(1, record.schemaId);
        insert.bindBorrowed(2, record.permanentName());
        insert.bind(3, static_cast<std::int32_t>(record.type));
        for (int text = VarTabDescEntryBlock::DisplayGroupName; text < VarTabDescEntryBlock::DisplayDimension; ++text)
            insert.bindBorrowed(3 + text, record.texts[static_cast<std::size_t>(text)]);
        insert.bind(8, dimension);
        insert.execDML();
    }
}

}  // namespace kvan::io::qsf2sql
