#pragma once

#include <sample-analysis/analysis_data.h>

/// The blocks that stand before the spectra in the main file, as bytes.
namespace kvan::sample::native {

Bytes compressionInfoBlock(const std::vector<std::string>& guids);
Bytes instrumentInfoBlock(const InstrumentInfo& info);
Bytes analysisHeaderBlock(const AnalysisHeaderData& header);

}  // namespace kvan::sample::native
