#include "qsf2sql/qsflib/ResourcePool.h"

#include "qsf2sql/errors.h"

#include <algorithm>
#include <boost/throw_exception.hpp>

namespace KVAN::io::QSF {

void ResourcePool::Read(kvan::io::QSFBlockedReader& reader, std::uint64_t blockStart, std::uint32_t blockSize,
                        std::uint32_t poolOffset) {
    m_blocks.clear();
    if (poolOffset == 0)
        return;
    const std::uint64_t end = blockStart + blockSize;
    std::uint64_t position = blockStart + poolOffset;
    while (position + sizeof(RESOURCE_HEADER) <= end) {
        reader.seekTo(position);
        const auto header = kvan::io::readRecord<RESOURCE_HEADER>(reader);
        if (header.size == 0)
            BOOST_THROW_EXCEPTION(kvan::io::Qsf2SqlFileFormatError("QSF: pool entry of size 0."));
        if (header.size < sizeof(RESOURCE_HEADER))
            return;
        m_blocks.emplace_back(header.type, position);
        position += header.size;
    }
}

std::vector<std::uint64_t> ResourcePool::Remove(_RESOURCE_TYPE type, std::size_t count) {
    std::vector<std::uint64_t> positions;
    const auto taken = [&](const auto& block) {
        if (block.first != type || positions.size() == count)
            return false;
        positions.push_back(block.second);
        return true;
    };
    m_blocks.erase(std::remove_if(m_blocks.begin(), m_blocks.end(), taken), m_blocks.end());
    return positions;
}

}  // namespace KVAN::io::QSF
