#pragma once

#include <qsf2sql/storage.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kvan::io::c {

/// What stands behind a handle: the open analysis and one scratch vector an element type, which keep their capacity
/// between reads.
class StorageHandle {
public:
    StorageHandle(const std::string& utf8Path, bool rawCalibration);
    StorageHandle(const StorageHandle&) = delete;
    StorageHandle& operator=(const StorageHandle&) = delete;
    ~StorageHandle();

    std::uint64_t getArrayLength(std::uint64_t id) { return m_storage.getArrayLength(id); }

    /// Copies the array to `out`; leaves `out` alone if the block does not have this component.
    template <class T>
    void readArray(std::uint64_t id, T* out);

private:
    std::vector<double>& scratch(double*) { return m_doubles; }
    std::vector<float>& scratch(float*) { return m_floats; }
    std::vector<unsigned int>& scratch(unsigned int*) { return m_integers; }

    logging::Logger m_logger;
    Qsf2Sql m_storage;
    std::vector<double> m_doubles;
    std::vector<float> m_floats;
    std::vector<unsigned int> m_integers;
};

}  // namespace kvan::io::c
