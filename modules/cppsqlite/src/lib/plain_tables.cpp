#include <cppsqlite/plain_tables.h>

// The schema of a database is text that its writer chose: a table of the right name may be a view, a virtual table or
// have generated columns, and a read of it then runs expressions of the writer, without end if he likes. Here the
// schema itself is read, with SQLite's own functions, which evaluate nothing of it.
namespace kvan::cppsqlite {

namespace {

std::optional<std::string> firstText(CppSQLite3DB& database, const std::string& query) {
    const CppSQLite3Query result = database.execQuery(query);
    if (result.eof())
        return {};
    return std::string(result.fieldValue(0));
}

}  // namespace

std::optional<std::string> findComputedTable(CppSQLite3DB& database, std::initializer_list<const char*> names) {
    std::string list;
    for (const char* const name : names)
        list += (list.empty() ? "'" : ", '") + std::string(name) + "'";
    const std::string named = " m.name COLLATE NOCASE IN (" + list + ")";
    // Columns are looked at only where there is nothing but tables: a virtual one would have to be loaded for it. Those
    // of a plain table that are hidden are the generated ones.
    if (auto name = firstText(database,
                              "SELECT m.name FROM sqlite_master m WHERE (m.type <> 'table' OR "
                              "m.rootpage = 0) AND" +
                                  named))
        return name;
    return firstText(
        database, "SELECT m.name FROM sqlite_master m, pragma_table_xinfo(m.name) c WHERE c.hidden <> 0 AND" + named);
}

}  // namespace kvan::cppsqlite
