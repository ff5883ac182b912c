#include "calibration-table-reader/typed_row.h"

#include <binaryio/heap_binary.h>

#include <boost/throw_exception.hpp>
#include <cmath>
#include <limits>
#include <span>
#include <stdexcept>

// SQLite converts whatever it is asked to: a text becomes the number 0, and a NULL too. A calibration made of such
// numbers would be wrong without a word, so the stored type is looked at first and only lossless conversions are taken:
// a whole number for a real one, and a real one for a whole number where it is one.
namespace kvan::io::calibration::tables {

namespace {

const char* nameOf(int type) {
    switch (type) {
        case SQLITE_NULL:
            return "NULL";
        case SQLITE_TEXT:
            return "a text";
        case SQLITE_BLOB:
            return "a blob";
        default:
            return "a number";
    }
}

}  // namespace

double TypedRow::real(int column) const {
    const int type = typeOf(column);
    if (type != SQLITE_FLOAT && type != SQLITE_INTEGER)
        fail(column, std::string(nameOf(type)) + " instead of a number");
    return m_query.getFloatField(column);
}

std::int64_t TypedRow::integer(int column) const {
    if (typeOf(column) == SQLITE_INTEGER)
        return m_query.getInt64Field(column);
    const double value = real(column);
    // Tolerated: a whole number in a REAL column. Above 2^53 a double has no room for the units.
    if (std::abs(value) > 0x1p53 || std::trunc(value) != value)
        fail(column, "not a whole number");
    return static_cast<std::int64_t>(value);
}

int TypedRow::smallInteger(int column) const {
    const std::int64_t value = integer(column);
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
        fail(column, "out of range");
    return static_cast<int>(value);
}

std::vector<double> TypedRow::reals(int column) const {
    const int type = typeOf(column);
    if (type != SQLITE_BLOB)
        fail(column, std::string(nameOf(type)) + " instead of a blob");
    const std::span<const unsigned char> bytes = m_query.blobField(column);
    // No coefficients at all would be a law that gives nothing.
    if (bytes.empty() || bytes.size() % sizeof(double) != 0)
        fail(column, "a blob of " + std::to_string(bytes.size()) + " bytes instead of doubles");
    binaryio::IHeapBinary blob(bytes.data(), bytes.size());
    return binaryio::readArray<std::vector<double>>(blob, bytes.size() / sizeof(double));
}

// For models whose blob has no fixed place.
std::optional<int> TypedRow::findBlob(int first) const {
    for (int column = first; column < m_query.numFields(); ++column) {
        if (typeOf(column) == SQLITE_BLOB)
            return column;
    }
    return {};
}

void TypedRow::fail(int column, const std::string& fault) const {
    BOOST_THROW_EXCEPTION(std::runtime_error(std::string("Wrong value in table ") + m_table + ", " + m_keyColumn + " " +
                                             std::to_string(m_key) + ", column " +
                                             std::string(m_query.fieldName(column)) + ": " + fault));
}

int TypedRow::typeOf(int column) const {
    // A table with fewer columns than its model needs is a fault of the file.
    if (column >= m_query.numFields())
        BOOST_THROW_EXCEPTION(std::runtime_error(std::string("Too few columns in table ") + m_table));
    return m_query.fieldDataType(column);
}

}  // namespace kvan::io::calibration::tables
