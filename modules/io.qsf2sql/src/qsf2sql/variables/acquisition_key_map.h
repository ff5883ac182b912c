#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace kvan::io::qsf2sql {

/// By what reference calibrations and variables are chosen: bytes of the quick-info record, not mapped or tested.
struct AcquisitionKey {
    std::uint32_t polarity = 0;
    std::uint32_t scanMode = 0;
    std::uint32_t acquisitionMode = 0;
    std::uint8_t msLevel = 0;

    bool operator==(const AcquisitionKey&) const = default;
};

struct AcquisitionKeyHash {
    std::size_t operator()(const AcquisitionKey& key) const;
};

/// For log lines: "[ polarity, scan mode, acquisition mode, MS level ]".
std::ostream& operator<<(std::ostream& stream, const AcquisitionKey& key);

/// The distinct keys of an analysis with their Ids in the cache, which count from 1 in order of first appearance.
class AcquisitionKeyMap {
public:
    std::int32_t getOrAddId(const AcquisitionKey& key);
    std::optional<std::int32_t> findId(const AcquisitionKey& key) const;

    /// Fills the table `AcquisitionKeys`.
    void writeTo(cppsqlite::CppSQLite3DB& database) const;

private:
    std::unordered_map<AcquisitionKey, std::int32_t, AcquisitionKeyHash> m_ids;
    std::vector<AcquisitionKey> m_keys;  // in order of their Ids
};

}  // namespace kvan::io::qsf2sql
