#include "qsf2sql/passes/analysis_properties.h"

#include "qsf2sql/passes/acquisition_time.h"

namespace kvan::io::qsf2sql::passes {

using namespace KVAN::io::QSF;

namespace {

// The rows and their order are the format's. Texts go in byte for byte, in the code page of the file; the two rows of
// vendors are constants.

std::string acquisitionTime(const AnalysisHeaderRecord& utc) {
    return utcToLocalTimeIso8601(utc.year, utc.month, utc.day, utc.hour, utc.minute, utc.second, utc.milliseconds,
                                 utc.timeZoneMinutes);
}

}  // namespace

AnalysisProperties::AnalysisProperties(cppsqlite::CppSQLite3DB& database)
    : m_insert(database.compileStatement("INSERT INTO Properties (Key,Value) VALUES (?,?)")) {}

void AnalysisProperties::insert(std::string_view key, std::string_view value) {
    m_insert.bind(1, key);
    m_insert.bind(2, value);
    m_insert.execDML();
}

void AnalysisProperties::insert(std::string_view key, int value) {
    m_insert.bind(1, key);
    m_insert.bind(2, value);
    m_insert.execDML();
}

void AnalysisProperties::insertAll(const AnalysisHeaderRecord& header, const AnalysisDescriptionBlock& description) {
    const auto& texts = description.texts;
    insert("AcquisitionSoftware", texts[AnalysisDescriptionBlock::AcquisitionSoftware]);
    insert("AcquisitionSoftwareVendor", "Zentrik");
    insert("AcquisitionSoftwareVersion", texts[AnalysisDescriptionBlock::AcquisitionSoftwareVersion]);
    insert("InstrumentVendor", "Zentrik");
    insert("InstrumentFamily", description.instrumentFamily);
    insert("InstrumentName", texts[AnalysisDescriptionBlock::InstrumentName]);
    insert("InstrumentRevision", description.instrumentRevision);
    insert("InstrumentSourceType", description.instrumentSourceType);
    insert("OperatorName", texts[AnalysisDescriptionBlock::OperatorName]);
    insert("Description", texts[AnalysisDescriptionBlock::Description]);
    insert("SampleName", texts[AnalysisDescriptionBlock::SampleName]);
    insert("AcquisitionMethod", texts[AnalysisDescriptionBlock::AcquisitionMethod]);
    insert("AcquisitionDateTime", acquisitionTime(header));
}

// Text B whole if it has a full stop in it, else texts A and B joined by one. Where no instrument block was read before
// the pass ended, both texts are "-1" and the number of the analysis description follows.
std::string instrumentSerialNumber(const SerialNumberParts& parts) {
    if (parts.textB == "-1")
        return "-1." + std::to_string(parts.fallback);
    if (parts.textB.find('.') != std::string::npos)
        return parts.textB;
    return parts.textA + "." + parts.textB;
}

}  // namespace kvan::io::qsf2sql::passes
