#include "calibration_kinds.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace qsf2sql_tool {

namespace {

/// How the degree of a law is told from its blob.
enum class Degree { Fixed, SecondIsZero, ThirdIsZero, Mode, TrapSecondIsZero };

struct Kind {
    const char* head;  // the first two bytes of the blob
    const char* name;
    Degree degree;
};

constexpr Kind g_kinds[] = {
    {"0100", "time of flight", Degree::SecondIsZero},
    {"0300", "time of flight, temperature-compensated", Degree::SecondIsZero},
    {"0600", "post-source decay", Degree::Fixed},
    {"0700", "KITE 1", Degree::Fixed},
    {"0800", "KITE 2", Degree::Fixed},
    {"0900", "time of flight, second generation", Degree::ThirdIsZero},
    {"0A00", "time of flight, second generation, temperature-compensated", Degree::ThirdIsZero},
    {"0101", "Fourier transform", Degree::Mode},
    {"0110", "ion trap", Degree::TrapSecondIsZero},
    {"0210", "linear", Degree::Fixed},
};

/// A plain block with an extension is a compensated one. Columns: head, whether c2, c3 and an ion trap's c2 are 0.0,
/// FTMS mode, spectra.
constexpr const char* g_query =
    "SELECT CASE WHEN hex(substr(t.Blob, 1, 4)) = '01000000' AND hex(substr(t.Blob, 45, 2)) = 'ACBF' THEN '0300' ELSE "
    "hex(substr(t.Blob, 1, 2)) END, substr(t.Blob, 37, 8) = zeroblob(8), substr(t.Blob, 45, 8) = zeroblob(8), "
    "substr(t.Blob, 21, 8) = zeroblob(8), hex(substr(t.Blob, 5, 1)), count(*) FROM Spectra s JOIN Transformators t ON "
    "t.Id = s.TransformatorId GROUP BY 1, 2, 3, 4, 5";

std::string degreeOf(const Query& query, Degree degree) {
    const auto isZero = [&query](int column) { return query.integer(column) == 1; };
    const auto linearOr = [](bool linear) { return std::string(linear ? ", linear" : ", quadratic"); };
    switch (degree) {
        case Degree::SecondIsZero:
            return linearOr(isZero(1));
        case Degree::ThirdIsZero:
            return isZero(2) ? linearOr(isZero(1)) : ", cubic";
        case Degree::TrapSecondIsZero:
            return linearOr(isZero(3));
        case Degree::Mode:
            return linearOr(query.text(4) == "00" || query.text(4) == "04");
        case Degree::Fixed:
            break;
    }
    return {};
}

struct Count {
    std::string name;
    std::int64_t spectra;
};

}  // namespace

std::string calibrationKinds(Database& database) {
    std::vector<Count> counts;
    Query query(database, g_query);
    while (query.next()) {
        const auto* const kind = std::find_if(std::begin(g_kinds), std::end(g_kinds),
                                              [&](const Kind& row) { return query.text(0) == row.head; });
        const std::string name = kind == std::end(g_kinds) ? "none" : kind->name + degreeOf(query, kind->degree);
        const auto known =
            std::find_if(counts.begin(), counts.end(), [&](const Count& row) { return row.name == name; });
        const std::int64_t spectra = query.integer(5).value_or(0);
        if (known == counts.end())
            counts.push_back({name, spectra});
        else
            known->spectra += spectra;
    }
    if (counts.empty())
        return "none";
    if (counts.size() == 1)
        return counts[0].name;
    std::stable_sort(counts.begin(), counts.end(),
                     [](const Count& a, const Count& b) { return a.spectra > b.spectra; });
    std::string text;
    for (const Count& count : counts)
        text += (text.empty() ? "" : "; ") + count.name + " (" + std::to_string(count.spectra) + " spectra)";
    return text;
}

}  // namespace qsf2sql_tool
