#include "qsf2sql/qsflib/CalibrationBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/qsflib/MainFileRecords.h>

namespace KVAN::io::QSF {

// A head of 12 bytes, then the serialised calibration up to the end of the block; what it says is not looked at here.
// The size in the head says how long the calibration is, so one below the head itself would wrap.
std::uint64_t CalibrationBlock::PassOver(kvan::io::QSFBlockedReader& reader) {
    const auto header = CQSFUtil::ReadHeader<CalibrationBlockHeader>(reader, RESTYPE_CALIBRATION);
    if (header.resource.size < sizeof header)
        reader.readError();
    const std::uint64_t size = header.resource.size - sizeof header;
    reader.requireAvailable(size, 1);
    return size;
}

void CalibrationBlock::Read(kvan::io::QSFBlockedReader& reader) {
    kvan::io::readArray(reader, PassOver(reader), blob);
}

}  // namespace KVAN::io::QSF
