#pragma once

#include "qsf2sql/qsflib/MainFileRecords.h"
#include "qsf2sql/qsflib/ResourcePool.h"

namespace KVAN::io::QSF {

/// RESTYPE_SPECTRUM_CONDITION: the start of a spectrum. Its pool holds the tables of its variables. One object reads
/// many blocks without taking memory for each.
class SpectrumConditionBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader);

    SpectrumConditionRecord header{};
    ResourcePool pool;
};

}  // namespace KVAN::io::QSF
