#pragma once

#include <logger/logger.h>
#include <qsf2sql/array_id.h>
#include <qsf2sql/calibration_prefs.h>
#include <qsf2sql/variables_prefs.h>

#include <boost/filesystem/path.hpp>
#include <cstdint>
#include <memory>
#include <optional>

namespace kvan::cppsqlite {
class CppSQLite3DB;
}

namespace kvan::io {

class Qsf2SqlImpl;

/// One open analysis. Owns its native file, its connection to the cache and its decoded blocks; nothing but the cache
/// on disk is shared with other objects. To be used by one thread at a time.
class Qsf2Sql {
public:
    using CalibrationPrefs = io::CalibrationPrefs;
    using VariablesPrefs = io::VariablesPrefs;

    /// Opens the analysis of the main file `qsfFile`, making its cache if there is none that fits. Leaves nothing
    /// when it throws: `Qsf2SqlCannotOpenFileError`, `Qsf2SqlFileFormatError`, `Qsf2SqlCacheError`, or what the
    /// compressor and the calibration sources throw.
    Qsf2Sql(const boost::filesystem::path& qsfFile, const std::optional<CalibrationPrefs>& calibrationPrefs,
            const VariablesPrefs& variablesPrefs);
    ~Qsf2Sql();

    /// An open cache that fits the main file and the settings. `cacheFile` receives its path; `*isTemporary`, if asked
    /// for, whether it lies in the temporary directory and is the caller's to remove.
    static std::unique_ptr<cppsqlite::CppSQLite3DB> getValidSQLiteCache(const boost::filesystem::path& qsfFile,
                                                                        boost::filesystem::path& cacheFile,
                                                                        bool* isTemporary,
                                                                        const VariablesPrefs& settings);

    /// Number of elements of the array, 0 if its block does not have this component.
    std::uint64_t getArrayLength(std::uint64_t id);

    /// How its elements are stored; m/z are doubles. Scans of signed integers are refused.
    qsf2sql_detail::NativeType getNativeStorageFormat(std::uint64_t id);

    /// Fills `out`, of `getArrayLength(id)` elements, with the array as `T` (`double`, `float` or `unsigned int`),
    /// converted where it is stored otherwise. False if the block does not have this component. `out` is untouched
    /// then, and where it throws.
    template <class T>
    bool readArrayData(std::uint64_t id, T* out);

private:
    logging::Logger m_logger;
    std::unique_ptr<Qsf2SqlImpl> m_impl;
};

}  // namespace kvan::io
