#pragma once

#include <memory>

namespace kvan::cppsqlite {

/// A whole result as texts, in memory. Moves.
class CppSQLite3Table {
public:
    CppSQLite3Table() = default;
    CppSQLite3Table(CppSQLite3Table&& other) noexcept = default;
    CppSQLite3Table& operator=(CppSQLite3Table&& other) noexcept = default;
    virtual ~CppSQLite3Table();

    int numFields() const;
    int numRows() const;
    const char* fieldName(int column) const;
    /// Null for NULL. Rows and columns count from 0.
    const char* fieldValue(int row, int column) const;
    void finalize();

private:
    friend class CppSQLite3DB;

    struct Free {
        void operator()(char** results) const noexcept;
    };
    /// The names of the columns, then row by row.
    using Results = std::unique_ptr<char*[], Free>;

    CppSQLite3Table(Results results, int rows, int columns);

    const char* cell(int row, int column) const;

    Results m_results;
    int m_rows = 0;
    int m_columns = 0;
};

}  // namespace kvan::cppsqlite
