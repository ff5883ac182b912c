#pragma once

#include "qsf2sql/qsflib/ResourcePool.h"
#include "qsf2sql/qsflib/VarTabBlocks.h"

#include <qsf2sql/qsflib/MainFileRecords.h>

#include <string>
#include <vector>

namespace KVAN::io::QSF {

/// RESTYPE_SEGMENT_CONDITION: the start of a segment, with the tables of its variables. One object reads many blocks;
/// only tables for one key take memory for each block.
class SegmentConditionBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader);

    SegmentConditionRecord header{};

    // For all keys.
    VarTabValues values;
    VarTabStrings strings;
    VarTabVectors<int> integerVectors;
    VarTabVectors<double> doubleVectors;
    VarTabVectors<std::string> stringVectors;

    // For one key each, in the order of the file.
    std::vector<KeyedVarTabValues> keyedValues;
    std::vector<KeyedVarTabStrings> keyedStrings;
    std::vector<KeyedVarTabVectors<int>> keyedIntegerVectors;
    std::vector<KeyedVarTabVectors<double>> keyedDoubleVectors;
    std::vector<KeyedVarTabVectors<std::string>> keyedStringVectors;

private:
    ResourcePool m_pool;
};

}  // namespace KVAN::io::QSF
