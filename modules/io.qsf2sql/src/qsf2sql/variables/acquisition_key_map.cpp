#include "qsf2sql/variables/acquisition_key_map.h"

#include <boost/container_hash/hash.hpp>
#include <ostream>

// A key is how a spectrum was measured: polarity, scan mode, acquisition mode, MS level. Thousands of spectra share a
// handful of keys, so rows name them by Id. Ids count from 1 without a gap and never change: the key of Id n is the
// n-th of the list, and the rows are written in that order.
namespace kvan::io::qsf2sql {

// The four fields are compared together and taken as they stand: values that nobody knows make keys as well.
std::size_t AcquisitionKeyHash::operator()(const AcquisitionKey& key) const {
    std::size_t hash = 0;
    boost::hash_combine(hash, key.polarity);
    boost::hash_combine(hash, key.scanMode);
    boost::hash_combine(hash, key.acquisitionMode);
    boost::hash_combine(hash, key.msLevel);
    return hash;
}

std::ostream& operator<<(std::ostream& stream, const AcquisitionKey& key) {
    return stream << "[ " << key.polarity << ", " << key.scanMode << ", " << key.acquisitionMode << ", "
                  << unsigned{key.msLevel} << " ]";
}

// Quick-info records add keys as they come, so the Ids follow the order of the extra file. Everything else, references
// and tables of settings, only finds them: a key that no spectrum has gets no row.

std::int32_t AcquisitionKeyMap::getOrAddId(const AcquisitionKey& key) {
    const auto [found, added] = m_ids.try_emplace(key, static_cast<std::int32_t>(m_keys.size()) + 1);
    if (added)
        m_keys.push_back(key);
    return found->second;
}

std::optional<std::int32_t> AcquisitionKeyMap::findId(const AcquisitionKey& key) const {
    const auto found = m_ids.find(key);
    return found == m_ids.end() ? std::nullopt : std::optional(found->second);
}

void AcquisitionKeyMap::writeTo(cppsqlite::CppSQLite3DB& database) const {
    auto insert = database.compileStatement(
        "INSERT INTO AcquisitionKeys (Id,Polarity,ScanMode,AcquisitionMode,MsLevel) VALUES (?,?,?,?,?)");
    std::int32_t id = 0;
    for (const AcquisitionKey& key : m_keys) {
        insert.bind(1, ++id);
        insert.bind(2, static_cast<std::int64_t>(key.polarity));
        insert.bind(3, static_cast<std::int64_t>(key.scanMode));
        insert.bind(4, static_cast<std::int64_t>(key.acquisitionMode));
        insert.bind(5, std::int32_t{key.msLevel});
        insert.execDML();
    }
}

}  // namespace kvan::io::qsf2sql
