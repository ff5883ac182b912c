#include "native/block_file.h"

#include <qsf2sql/qsflib/VariableTableRecords.h>
#include <sample-analysis/variable_tables.h>

#include <array>
#include <boost/numeric/conversion/cast.hpp>
#include <cstring>

// The values of variables lie in tables, one block for each kind of value: numbers in entries of one size, texts and
// vectors in entries that give their own. The tables of a segment carry the key of the spectra that they hold for,
// those of a spectrum do not need one; the block types differ by that. A kind without values has no block.

namespace kvan::sample::native {

namespace qsf = KVAN::io::QSF;

using boost::numeric_cast;

namespace {

/// The entries of one block.
struct Entries {
    std::uint32_t count = 0;
    Bytes bytes = {};
};

enum Kind { Values, Strings, IntegerVectors, DoubleVectors, StringVectors, NumberOfKinds };

struct KindTypes {
    std::uint16_t plain;
    std::uint16_t extended;
};

// By `Kind`.
constexpr KindTypes g_types[] = {
    {qsf::RESTYPE_VAR_TAB_VALUE, qsf::RESTYPE_VAR_TAB_VALUE_EXTENDED},
    {qsf::RESTYPE_VAR_TAB_STRING, qsf::RESTYPE_VAR_TAB_STRING_EXTENDED},
    {qsf::RESTYPE_VAR_TAB_INT_VECTOR, qsf::RESTYPE_VAR_TAB_INT_VECTOR_EXTENDED},
    {qsf::RESTYPE_VAR_TAB_DOUBLE_VECTOR, qsf::RESTYPE_VAR_TAB_DOUBLE_VECTOR_EXTENDED},
    {qsf::RESTYPE_VAR_TAB_STRING_VECTOR, qsf::RESTYPE_VAR_TAB_STRING_VECTOR_EXTENDED},
};

/// Puts each setting to the entries of its kind.
class Sorter {
public:
    explicit Sorter(std::array<Entries, NumberOfKinds>& tables) : m_tables(tables) {}

    void add(const VariableSetting& setting) {
        std::visit([&](const auto& value) { add(setting.variable, value); }, setting.value);
    }

private:
    template <class Number>
    void add(std::uint16_t variable, Number value) {
        // Eight bytes for integers and doubles alike; which of them it is the declaration tells.
        qsf::VarTabValueEntry entry{};
        entry.variable = variable;
        std::memcpy(entry.value, &value, sizeof value);
        append(next(Values).bytes, entry);
    }
    void add(std::uint16_t variable, const std::string& text) {
        addData(Strings, variable, text.size(), text.data(), text.size());
    }
    void add(std::uint16_t variable, const std::vector<std::int32_t>& values) {
        addData(IntegerVectors, variable, values.size(), values.data(), values.size() * sizeof values[0]);
    }
    void add(std::uint16_t variable, const std::vector<double>& values) {
        addData(DoubleVectors, variable, values.size(), values.data(), values.size() * sizeof values[0]);
    }
    void add(std::uint16_t variable, const std::vector<std::string>& texts) {
        // Zero bytes stand between the texts, not after the last: n texts have n - 1 of them.
        std::string joined;
        for (std::size_t text = 0; text < texts.size(); ++text)
            joined.append(text == 0 ? 0 : 1, '\0').append(texts[text]);
        addData(StringVectors, variable, texts.size(), joined.data(), joined.size());
    }

    void addData(Kind kind, std::uint16_t variable, std::size_t count, const void* data, std::size_t size) {
        qsf::VarTabEntryHead head{};
        head.size = numeric_cast<std::uint16_t>(sizeof head + size);
        head.variable = variable;
        // Of elements, or of the bytes of a text.
        head.count = numeric_cast<std::uint16_t>(count);
        Entries& entries = next(kind);
        append(entries.bytes, head);
        append(entries.bytes, data, size);
    }

    Entries& next(Kind kind) {
        ++m_tables[kind].count;
        return m_tables[kind];
    }

    std::array<Entries, NumberOfKinds>& m_tables;
};

template <class Header>
void appendTable(Bytes& pool, std::uint16_t type, const Entries& entries, Header header) {
    header.resource = makeHead(type, sizeof header + entries.bytes.size());
    header.entryOffset = sizeof header;
    header.entryCount = entries.count;
    append(pool, header);
    append(pool, entries.bytes.data(), entries.bytes.size());
}

}  // namespace

Bytes variableTables(const std::vector<VariableSetting>& settings, const std::optional<VariableKey>& key) {
    // The order within a kind is that of the settings: of two settings of one variable the reader takes the first.
    std::array<Entries, NumberOfKinds> tables;
    Sorter sorter(tables);
    for (const VariableSetting& setting : settings)
        sorter.add(setting);

    Bytes pool;
    for (std::size_t kind = 0; kind < tables.size(); ++kind) {
        if (tables[kind].count == 0)
            continue;
        if (!key) {
            appendTable(pool, g_types[kind].plain, tables[kind], qsf::_VAR_TAB_HEADER{});
            continue;
        }
        qsf::_VAR_TAB_HEADER_EXTENDED header{};
        header.polarity = key->polarity;
        header.acquisitionMode = key->acquisitionMode;
        header.msLevel = key->msLevel;
        header.scanMode = key->scanMode;
        appendTable(pool, g_types[kind].extended, tables[kind], header);
    }
    return pool;
}

}  // namespace kvan::sample::native
