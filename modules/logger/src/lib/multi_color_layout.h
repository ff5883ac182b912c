#pragma once

#include <logger/logger.h>

#include <array>
#include <boost/property_tree/ptree_fwd.hpp>
#include <cstdint>
#include <optional>
#include <string>

namespace kvan::logging::impl {

/// The colours of a console line, level by level. Does not change once it is made.
class MultiColorLayout {
public:
    /// The layout of a `<sink>` element, empty if it has none. Throws `std::runtime_error` for a layout or a rule that
    /// is not understood.
    static std::optional<MultiColorLayout> of(const boost::property_tree::ptree& sink);

    /// `line` between the escape sequences of its level; its line feed stays at the end. As it is if no rule is for it.
    std::string colored(const std::string& line) const;

private:
    /// A console attribute word: foreground in bits 0 to 3, background in bits 4 to 7, of each blue, green, red,
    /// bright; underline in bit 15. What stands in `mask` is set to `value`, the rest is the terminal's own.
    struct Attributes {
        std::uint16_t mask = 0;
        std::uint16_t value = 0;
    };

    static Attributes attributesOf(const boost::property_tree::ptree& rule);
    static std::string escapeSequence(Attributes attributes);

    std::array<Attributes, Level::FATAL + 1> m_attributes{};
};

}  // namespace kvan::logging::impl
