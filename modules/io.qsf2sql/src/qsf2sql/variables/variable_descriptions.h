#pragma once

#include "qsf2sql/qsflib/VarTabDescBlock.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kvan::io::qsf2sql {

/// What a variable holds, by the codes of the column `Type`.
enum class VariableType : std::int32_t {
    Integer = 0,
    Double = 1,
    String = 2,
    IntegerVector = 10,
    DoubleVector = 11,
    StringVector = 12,
    NotDeclared = 255,  ///< known to the library, not described by this file; never has a value
};

/// A variable that has the same Id in every cache.
struct BuiltInVariable {
    std::int64_t schemaId;
    const char* permanentName;
};

/// The variables that the library itself depends on. The gaps between the Ids are part of the table.
extern const std::span<const BuiltInVariable> g_builtInVariables;

/// A variable of one cache.
struct VariableDescription {
    VariableType type = VariableType::NotDeclared;
    std::int64_t schemaId = 0;
    std::array<std::string, 6> texts;  ///< by `VarTabDescEntryBlock::Text`, in the code page of the file
    std::size_t nameRank = 0;          ///< place of the name among all names by their bytes; the same for equal names

    const std::string& permanentName() const { return texts[KVAN::io::QSF::VarTabDescEntryBlock::PermanentName]; }
};

/// Which of the file's declared variables exist in the cache, and under which Ids.
///
/// A built-in name has its Id from the table. Any other name is kept if all variables are wanted or it was requested,
/// under its index in the file or, where that is the Id of a built-in, under a number above all indices. Built-ins that
/// the file does not declare follow as `VariableType::NotDeclared`.
class VariableDescriptions {
public:
    VariableDescriptions(const KVAN::io::QSF::VarTabDescBlock& declarations, std::span<const BuiltInVariable> builtIns,
                         bool allVariables, const std::unordered_set<std::string>& requested);
    /// Only moved: names are found through views into the records.
    VariableDescriptions(VariableDescriptions&&) = default;

    /// Null for an index that is not declared or whose variable is not kept. Of two declarations of one index the first
    /// counts.
    const VariableDescription* find(std::uint16_t fileIndex) const;
    /// Null for a name that is not kept. Names are compared whole and by case; the first of a name counts.
    const VariableDescription* find(const std::string& permanentName) const;
    /// Throws `std::runtime_error` "Variable not supported." for a name that is not kept.
    VariableType getVariableType(const std::string& permanentName) const;

    /// Fills the table `SupportedVariables`.
    void writeTo(cppsqlite::CppSQLite3DB& database) const;

private:
    void rankNames();

    logging::Logger m_logger;
    std::vector<VariableDescription> m_records;
    std::unordered_map<std::uint16_t, std::size_t> m_byFileIndex;
    std::unordered_map<std::string_view, std::size_t> m_byName;  // the first of each name
};

}  // namespace kvan::io::qsf2sql
