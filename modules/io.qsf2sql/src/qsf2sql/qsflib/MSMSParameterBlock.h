#pragma once

#include <qsf2sql/qsf_blocked_reader.h>

namespace KVAN::io::QSF {

/// Parameters of MS/MS. Nobody uses them.
class MSMSParameterBlock {
public:
    /// Checks that the block's words are there. Type and version are not looked at.
    static void PassOver(kvan::io::QSFBlockedReader& reader);
};

}  // namespace KVAN::io::QSF
