#pragma once

#include <boost/throw_exception.hpp>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <type_traits>
#include <vector>

namespace kvan::tqclegacy::CALIBRATION {

/// Reading and writing of records through an access policy, with the failure as an exception.
class CalibratorUtil {
public:
    template <class FileAccessPolicy>
    static void ReadAndThrow(FileAccessPolicy& fileAccess, void* buffer, std::size_t bytes) {
        if (!fileAccess.Read(buffer, bytes))
            ThrowReadFailure();
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

    /// The `count` doubles that begin `offset` bytes after `start`; with a count of 0 nothing is sought. Leaves the
    /// position after them. The claims are held against the bytes that are there before memory is taken.
    template <class FileAccessPolicy>
    static std::vector<double> ReadDoubles(FileAccessPolicy& fileAccess, std::size_t start, std::uint32_t offset,
                                           std::size_t count) {
        std::vector<double> values;
        if (count == 0)
            return values;
        if (!fileAccess.Seek(start + offset) || count > fileAccess.BytesLeft() / sizeof(double))
            ThrowReadFailure();
        values.resize(count);
        ReadAndThrow(fileAccess, values.data(), count * sizeof(double));
        return values;
    }

    template <class FileAccessPolicy>
    static void WriteDoubles(FileAccessPolicy& fileAccess, const std::vector<double>& values) {
        WriteAndThrow(fileAccess, values.data(), values.size() * sizeof(double));
    }

    [[noreturn]] static void ThrowReadFailure() {
        BOOST_THROW_EXCEPTION(
            std::runtime_error("ReadAndThrow: fileAccess.Read(pBuffer, Bytes) is false: "
                               "CTQCBaseException::READ_NUMBER_OF_BYTES"));
    }

    template <class Record, class FileAccessPolicy>
    static void WriteRecord(FileAccessPolicy& fileAccess, const Record& record) {
        static_assert(std::is_trivially_copyable_v<Record>);
        WriteAndThrow(fileAccess, &record, sizeof record);
    }
};

}  // namespace kvan::tqclegacy::CALIBRATION
