#include <qsf2sql/array_id.h>
#include <qsf2sql/errors.h>

#include <boost/throw_exception.hpp>

namespace kvan::io {

// An offset of 2^56 would run into the kind: 64 PiB, which only a damaged index claims.
ArrayId::ArrayId(std::uint64_t offset, ArrayKind kind) : m_value(static_cast<std::uint64_t>(kind) << 56 | offset) {
    if (offset >> 56 != 0)
        BOOST_THROW_EXCEPTION(Qsf2SqlFileFormatError("Offset >= (1<<56)."));
}

}  // namespace kvan::io
