#pragma once

#include "qsf2sql/qsflib/ResourcePool.h"
#include "qsf2sql/qsflib/VarTabBlocks.h"

#include <qsf2sql/qsflib/MainFileRecords.h>

#include <string>

namespace KVAN::io::QSF {

/// RESTYPE_SPECTRUM_CONDITION: the start of a spectrum, with the tables of its variables. One object reads many blocks
/// without taking memory for each.
class SpectrumConditionBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader);

    SpectrumConditionRecord header{};
    VarTabValues values;
    VarTabStrings strings;
    VarTabVectors<int> integerVectors;
    VarTabVectors<double> doubleVectors;
    VarTabVectors<std::string> stringVectors;

private:
    ResourcePool m_pool;
};

}  // namespace KVAN::io::QSF
