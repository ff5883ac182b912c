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

/// Columns: type, whether c2, c3 and an ion trap's c2 are 0.0, FTMS mode, spectra, whether a correction follows, and of
/// plain time-of-flight blobs the size and the number of coefficients of the correction, in the order of its bytes.
constexpr const char* g_query =
    "SELECT hex(substr(t.Blob, 1, 2)), substr(t.Blob, 37, 8) = zeroblob(8), substr(t.Blob, 45, 8) = zeroblob(8), "
    "substr(t.Blob, 21, 8) = zeroblob(8), hex(substr(t.Blob, 5, 1)), count(*), hex(substr(t.Blob, 3, 2)) = '0100', "
    "CASE hex(substr(t.Blob, 1, 2)) WHEN '0100' THEN length(t.Blob) END, "
    "CASE hex(substr(t.Blob, 1, 4)) WHEN '01000100' THEN hex(substr(t.Blob, 79, 2)) END "
    "FROM Spectra s JOIN Transformators t ON t.Id = s.TransformatorId GROUP BY 1, 2, 3, 4, 5, 7, 8, 9";

bool isCorrected(const Query& query) {
    return query.integer(6) == 1;
}

/// A plain time-of-flight block with an extension behind it and its correction is a compensated one.
std::string headOf(const Query& query) {
    constexpr std::int64_t blockEnd = 44;
    constexpr std::int64_t correctionHead = 40;
    const auto size = query.integer(7);
    std::int64_t end = blockEnd;
    if (const std::string count = query.text(8); count.size() == 4)
        end += correctionHead + 8 * std::stol(count.substr(2) + count.substr(0, 2), nullptr, 16);
    return size && *size > end ? "0300" : query.text(0);
}

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
        const std::string head = headOf(query);
        const auto* const kind =
            std::find_if(std::begin(g_kinds), std::end(g_kinds), [&](const Kind& row) { return head == row.head; });
        std::string name = "none";
        if (kind != std::end(g_kinds))
            name = kind->name + degreeOf(query, kind->degree) + (isCorrected(query) ? ", with GPX correction" : "");
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
