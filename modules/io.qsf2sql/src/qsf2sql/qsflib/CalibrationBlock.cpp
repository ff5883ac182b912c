#include "qsf2sql/qsflib/CalibrationBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/qsflib/MainFileRecords.h>

namespace KVAN::io::QSF {

std::uint64_t CalibrationBlock::PassOver(kvan::io::QSFBlockedReader& reader) {
    const auto header = CQSFUtil::ReadHeader<CalibrationBlockHeader>(reader, RESTYPE_CALIBRATION);
    if (header.resource.size < sizeof header)
        reader.readError();
    const std::uint64_t size = header.resource.size - sizeof header;
    reader.requireAvailable(size, 1);
    return size;
}

void CalibrationBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t size = PassOver(reader);
    blob.resize(size);
    reader.read(reinterpret_cast<char*>(blob.data()), static_cast<std::int64_t>(size));
}

}  // namespace KVAN::io::QSF
