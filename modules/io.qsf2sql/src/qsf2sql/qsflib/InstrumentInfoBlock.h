#pragma once

#include <qsf2sql/qsf_blocked_reader.h>

#include <string>

namespace KVAN::io::QSF {

/// INSTRUMENT_INFO: the two texts that make the serial number of the instrument.
class InstrumentInfoBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader);

    std::string textA;
    std::string textB;
};

}  // namespace KVAN::io::QSF
