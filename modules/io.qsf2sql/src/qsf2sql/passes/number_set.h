#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace kvan::io::qsf2sql::passes {

/// A set of spectrum numbers: 4 bytes a number, filled in any order first and only asked afterwards.
class NumberSet {
public:
    void add(std::uint32_t number) {
        m_isSorted = m_isSorted && (m_numbers.empty() || m_numbers.back() <= number);
        m_numbers.push_back(number);
    }

    /// Ends the filling.
    void seal() {
        if (!m_isSorted)
            std::sort(m_numbers.begin(), m_numbers.end());
        m_isSorted = true;
    }

    bool contains(std::uint32_t number) const { return std::binary_search(m_numbers.begin(), m_numbers.end(), number); }

private:
    std::vector<std::uint32_t> m_numbers;
    bool m_isSorted = true;
};

}  // namespace kvan::io::qsf2sql::passes
