#pragma once

#include "level_names.h"

#include <boost/optional.hpp>
#include <string>

namespace kvan::logging::impl {

/// How the property tree reads a level; anything but the six words is a failed conversion.
struct LevelTranslator {
    using internal_type = std::string;
    using external_type = Level::type;

    boost::optional<Level::type> get_value(const std::string& text) const {
        const auto level = levelOfName(text);
        return level ? boost::optional<Level::type>(*level) : boost::none;
    }
};

}  // namespace kvan::logging::impl
