#pragma once

#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/qsflib/VariableTableRecords.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The tables of values in the pools of the conditions. One object reads many blocks without taking memory for each.
///
/// `Read` finds the table at the reader's position and holds its claims against `poolEnd`, the end of the pool in the
/// file: entries that reach beyond their block or the pool, and entries smaller than their head or than their count
/// asks for, are read errors.
namespace KVAN::io::QSF {

/// Type in the file of each kind of table.
template <class Table>
extern const _RESOURCE_TYPE g_tableType;

/// An entry of a table whose entries have a head.
struct VarTabDataEntry {
    std::uint16_t variable = 0;
    std::string_view data;  ///< as the kind of table says; lies in the table
};

/// The entries of a table that have a head, with their bytes.
class VarTabDataEntries {
public:
    /// What of the bytes of an entry is its value, for the count in its head. Sets `fits` to false where they are too
    /// few for the count.
    using DataOf = std::string_view (*)(std::string_view bytes, std::uint16_t count, bool& fits);

    VarTabDataEntries() = default;
    VarTabDataEntries(VarTabDataEntries&&) = default;
    VarTabDataEntries& operator=(VarTabDataEntries&&) = default;

    void Read(kvan::io::QSFBlockedReader& reader, std::uint32_t count, std::uint64_t size, DataOf dataOf);
    void clear() { m_entries.clear(); }

    const VarTabDataEntry* begin() const { return m_entries.data(); }
    const VarTabDataEntry* end() const { return m_entries.data() + m_entries.size(); }

private:
    std::vector<char> m_bytes;  // of all entries, which point into it; grows before the first is read
    std::vector<VarTabDataEntry> m_entries;
};

/// Scalar numbers.
template <class Header>
class VarTabValueBlock_Generic {
public:
    static constexpr _RESOURCE_TYPE type = g_tableType<VarTabValueBlock_Generic>;

    void Read(kvan::io::QSFBlockedReader& reader, std::uint64_t poolEnd);
    void clear() { entries.clear(); }

    Header header{};
    std::vector<VarTabValueEntry> entries;
};

/// Texts, without their trailing zero bytes.
template <class Header>
class VarTabStringBlock_Generic {
public:
    static constexpr _RESOURCE_TYPE type = g_tableType<VarTabStringBlock_Generic>;

    void Read(kvan::io::QSFBlockedReader& reader, std::uint64_t poolEnd);
    void clear() { entries.clear(); }

    Header header{};
    VarTabDataEntries entries;
};

/// Vectors of `int` or `double`, as their little-endian bytes, or of `std::string`, as texts with a zero byte between
/// them; empty if there are more or fewer texts than the entry counts.
template <class Header, class Element>
class TypedVarTabValueBlock_Generic {
public:
    static constexpr _RESOURCE_TYPE type = g_tableType<TypedVarTabValueBlock_Generic>;

    void Read(kvan::io::QSFBlockedReader& reader, std::uint64_t poolEnd);
    void clear() { entries.clear(); }

    Header header{};
    VarTabDataEntries entries;
};

// For all acquisition keys.
using VarTabValues = VarTabValueBlock_Generic<_VAR_TAB_HEADER>;
using VarTabStrings = VarTabStringBlock_Generic<_STRING_TAB_HEADER>;
template <class Element>
using VarTabVectors = TypedVarTabValueBlock_Generic<_TYPED_VAR_TAB_HEADER, Element>;

// For one acquisition key.
using KeyedVarTabValues = VarTabValueBlock_Generic<_VAR_TAB_HEADER_EXTENDED>;
using KeyedVarTabStrings = VarTabStringBlock_Generic<_STRING_TAB_HEADER_EXTENDED>;
template <class Element>
using KeyedVarTabVectors = TypedVarTabValueBlock_Generic<_TYPED_VAR_TAB_HEADER_EXTENDED, Element>;

// clang-format off
template <> inline constexpr _RESOURCE_TYPE g_tableType<VarTabValues> = RESTYPE_VAR_TAB_VALUE;
template <> inline constexpr _RESOURCE_TYPE g_tableType<VarTabStrings> = RESTYPE_VAR_TAB_STRING;
template <> inline constexpr _RESOURCE_TYPE g_tableType<VarTabVectors<int>> = RESTYPE_VAR_TAB_INT_VECTOR;
template <> inline constexpr _RESOURCE_TYPE g_tableType<VarTabVectors<double>> = RESTYPE_VAR_TAB_DOUBLE_VECTOR;
template <> inline constexpr _RESOURCE_TYPE g_tableType<VarTabVectors<std::string>> = RESTYPE_VAR_TAB_STRING_VECTOR;
template <> inline constexpr _RESOURCE_TYPE g_tableType<KeyedVarTabValues> = RESTYPE_VAR_TAB_VALUE_EXTENDED;
template <> inline constexpr _RESOURCE_TYPE g_tableType<KeyedVarTabStrings> = RESTYPE_VAR_TAB_STRING_EXTENDED;
template <> inline constexpr _RESOURCE_TYPE g_tableType<KeyedVarTabVectors<int>> = RESTYPE_VAR_TAB_INT_VECTOR_EXTENDED;
template <> inline constexpr _RESOURCE_TYPE g_tableType<KeyedVarTabVectors<double>> = RESTYPE_VAR_TAB_DOUBLE_VECTOR_EXTENDED;
template <> inline constexpr _RESOURCE_TYPE g_tableType<KeyedVarTabVectors<std::string>> = RESTYPE_VAR_TAB_STRING_VECTOR_EXTENDED;
// clang-format on

}  // namespace KVAN::io::QSF
