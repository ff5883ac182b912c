#pragma once

#include <boost/throw_exception.hpp>
#include <cstddef>
#include <stdexcept>
#include <type_traits>

namespace kvan::tqclegacy::CALIBRATION {

/// Reading and writing of records through an access policy, with the failure as an exception.
class CalibratorUtil {
public:
    template <class FileAccessPolicy>
    static void ReadAndThrow(FileAccessPolicy& fileAccess, void* buffer, std::size_t bytes) {
        if (!fileAccess.Read(buffer, bytes))
            BOOST_THROW_EXCEPTION(
                std::runtime_error("ReadAndThrow: fileAccess.Read(pBuffer, Bytes) is false: "
                                   "CTQCBaseException::READ_NUMBER_OF_BYTES"));
    }

    template <class FileAccessPolicy>
    static void WriteAndThrow(FileAccessPolicy& fileAccess, const void* buffer, std::size_t bytes) {
        if (!fileAccess.Write(buffer, bytes))
            BOOST_THROW_EXCEPTION(
                std::runtime_error("WriteAndThrow: fileAccess.Write(pBuffer, Bytes) is false: "
                                   "CTQCBaseException::WRITE_NUMBER_OF_BYTES"));
    }

    template <class Record, class FileAccessPolicy>
    static Record ReadRecord(FileAccessPolicy& fileAccess) {
        static_assert(std::is_trivially_copyable_v<Record>);
        Record record;
        ReadAndThrow(fileAccess, &record, sizeof record);
        return record;
    }

    template <class Record, class FileAccessPolicy>
    static void WriteRecord(FileAccessPolicy& fileAccess, const Record& record) {
        static_assert(std::is_trivially_copyable_v<Record>);
        WriteAndThrow(fileAccess, &record, sizeof record);
    }
};

}  // namespace kvan::tqclegacy::CALIBRATION
