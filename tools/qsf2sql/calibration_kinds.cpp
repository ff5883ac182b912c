#include "calibration_kinds.h"

#include <calibration-core/interfaces/CalibrationBlobDescription.h>

#include <algorithm>
#include <span>
#include <vector>

// The calibrations that the spectra were acquired with, by kind. What kind a blob is, and the family's name, the
// library says; here are the words for the rest and the counts of spectra. A spectrum may have a blob of its own, so
// each is described alone, which reads no more than its head records. Kinds of one count stand in the order of their
// names, so that the text depends on nothing else.

namespace qsf2sql_tool {

namespace {

using kvan::calibration::CalibrationBlobDescription;

// Spectra are counted by their calibration first, so that a blob that many share is described once.
constexpr const char* g_query =
    "SELECT t.Blob, s.Number FROM (SELECT TransformatorId, count(*) AS Number FROM Spectra GROUP BY 1) s "
    "JOIN Transformators t ON t.Id = s.TransformatorId";

std::string degreeOf(const CalibrationBlobDescription& blob) {
    switch (blob.degree) {
        case CalibrationBlobDescription::Degree::Linear:
            return ", linear";
        case CalibrationBlobDescription::Degree::Quadratic:
            return ", quadratic";
        case CalibrationBlobDescription::Degree::Cubic:
            return ", cubic";
        case CalibrationBlobDescription::Degree::Fixed:
            break;
    }
    return {};
}

std::string nameOf(const std::optional<CalibrationBlobDescription>& blob) {
    if (!blob)
        return "none";
    return std::string(blob->familyName) + degreeOf(*blob) + (blob->hasMassCorrection ? ", with GPX correction" : "");
}

struct Count {
    std::optional<CalibrationBlobDescription> kind;
    std::int64_t spectra;
};

/// One for each kind that occurs. Each spectrum may have a blob of its own, but there are few kinds.
std::vector<Count> countKinds(Database& database) {
    std::vector<Count> counts;
    std::vector<unsigned char> blob;
    for (auto query = database.execQuery(g_query); !query.eof(); query.nextRow()) {
        const std::span<const unsigned char> bytes = query.blobField(0);
        blob.assign(bytes.begin(), bytes.end());
        const auto kind = kvan::calibration::describeBlob(blob);
        const auto known =
            std::find_if(counts.begin(), counts.end(), [&](const Count& row) { return row.kind == kind; });
        if (known == counts.end())
            counts.push_back({kind, query.getInt64Field(1)});
        else
            known->spectra += query.getInt64Field(1);
    }
    return counts;
}

}  // namespace

std::string calibrationKinds(Database& database) {
    std::vector<Count> counts = countKinds(database);
    if (counts.empty())
        return "none";
    // Of one kind the number would be that of all spectra.
    if (counts.size() == 1)
        return nameOf(counts[0].kind);
    std::sort(counts.begin(), counts.end(), [](const Count& a, const Count& b) {
        return a.spectra != b.spectra ? a.spectra > b.spectra : nameOf(a.kind) < nameOf(b.kind);
    });
    std::string text;
    for (const Count& count : counts)
        text += (text.empty() ? "" : "; ") + nameOf(count.kind) + " (" + std::to_string(count.spectra) + " spectra)";
    return text;
}

}  // namespace qsf2sql_tool
