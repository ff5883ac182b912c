#pragma once

#include "qsf2sql/qsflib/MainFileRecords.h"
#include "qsf2sql/qsflib/ResourcePool.h"

namespace KVAN::io::QSF {

/// RESTYPE_SEGMENT_CONDITION: the start of a segment. Its pool holds the tables of its variables. One object reads many
/// blocks without taking memory for each.
class SegmentConditionBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader);

    SegmentConditionRecord header{};
    ResourcePool pool;
};

}  // namespace KVAN::io::QSF
