#include "multi_color_layout.h"

#include "level_names.h"
#include "level_translator.h"
#include "line_format.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string_view>

// The configuration speaks of console attribute words, a terminal of escape sequences (ECMA-48, select graphic
// rendition). A rule becomes a mask and a value, four bits each for foreground and background (blue 1, green 2, red 4,
// bright 8) and bit 15 for the underline; what the mask leaves out has the terminal's default. Codes are 30 to 37 for
// the foreground, 40 to 47 for the background, 60 more for bright ones; brightness without a colour is 1, bold, for the
// text and 100 for its ground. A line that does not carry its level in our form is shown as it is.
namespace kvan::logging::impl {

namespace {

using boost::property_tree::ptree;

constexpr unsigned g_blue = 1;
constexpr unsigned g_green = 2;
constexpr unsigned g_red = 4;
constexpr unsigned g_color = g_blue | g_green | g_red;
constexpr unsigned g_bright = 8;
constexpr unsigned g_backgroundShift = 4;
constexpr unsigned g_underline = 0x8000;

struct NamedColor {
    std::string_view name;
    unsigned mask;
    unsigned value;
};

constexpr NamedColor g_colors[] = {
    {"none", 0, 0},
    {"default", 0, 0},
    {"black", g_color | g_bright, 0},
    {"white", g_color | g_bright, g_red | g_green | g_blue},
    {"red", g_color | g_bright, g_red},
    {"green", g_color | g_bright, g_green},
    {"blue", g_color | g_bright, g_blue},
    {"yellow", g_color | g_bright, g_red | g_green},
    {"cyan", g_color | g_bright, g_green | g_blue},
    {"magenta", g_color | g_bright, g_red | g_blue},
};

NamedColor colorOf(const std::string& name) {
    for (const NamedColor& color : g_colors) {
        if (color.name == name)
            return color;
    }
    BOOST_THROW_EXCEPTION(std::runtime_error("Invalid color provided: '" + name + "'"));
}

std::optional<std::string> attribute(const ptree& rule, const char* name) {
    const auto found = rule.get_optional<std::string>(std::string("<xmlattr>.") + name);
    return found ? std::optional(*found) : std::nullopt;
}

bool hasStyle(const ptree& rule, const char* attributeName, const char* word) {
    const auto style = attribute(rule, attributeName);
    if (style && *style != word)
        BOOST_THROW_EXCEPTION(std::runtime_error("Invalid style provided: '" + *style + "'"));
    return style.has_value();
}

/// Four bits of mask and of value, for the foreground or the background.
NamedColor colorAndStyle(const ptree& rule, const char* colorName, const char* styleName) {
    NamedColor color = colorOf(attribute(rule, colorName).value_or("none"));
    if (hasStyle(rule, styleName, "bright")) {
        color.mask |= g_bright;
        color.value |= g_bright;
    }
    return color;
}

/// Codes of the select-graphic-rendition sequence for the foreground or the background.
struct ColorCodes {
    unsigned plain;
    unsigned bright;
    const char* brightAlone;
};
constexpr ColorCodes g_foreground = {30, 90, ";1"};
constexpr ColorCodes g_background = {40, 100, ";100"};

/// The sequence counts its colours with red as 1 and blue as 4.
std::string colorCode(unsigned mask, unsigned value, const ColorCodes& codes) {
    const bool isBright = (value & g_bright) != 0;
    if ((mask & g_color) == 0)
        return isBright ? codes.brightAlone : "";
    // Green has the same bit on both sides.
    const unsigned color = ((value & g_red) != 0 ? 1u : 0u) | (value & g_green) | ((value & g_blue) != 0 ? 4u : 0u);
    return std::string(1, ';').append(std::to_string((isBright ? codes.bright : codes.plain) + color));
}

}  // namespace

std::optional<MultiColorLayout> MultiColorLayout::of(const ptree& sink) {
    const auto element = sink.get_child_optional("layout");
    if (!element)
        return std::nullopt;
    const auto layoutClass = element->get<std::string>("<xmlattr>.class");
    if (layoutClass != "kvan.logging.MultiColorLayout")
        BOOST_THROW_EXCEPTION(
            std::runtime_error("<layout> element with unknown class attribute '" + layoutClass + "'"));
    MultiColorLayout layout;
    std::array<bool, Level::FATAL + 1> isSeen{};
    for (const auto& [name, child] : *element) {
        if (name != "rule")
            continue;
        const auto level = child.get<Level::type>("<xmlattr>.level", LevelTranslator());
        // Two rules for one level contradict each other; which one was meant nobody knows.
        if (isSeen[level])
            BOOST_THROW_EXCEPTION(std::runtime_error("<rule> element with duplicate level '" +
                                                     std::string(g_levelNames[level]) + "' found"));
        isSeen[level] = true;
        layout.m_attributes[level] = attributesOf(child);
    }
    return layout;
}

MultiColorLayout::Attributes MultiColorLayout::attributesOf(const ptree& rule) {
    const NamedColor front = colorAndStyle(rule, "fg-color", "fg-style");
    const NamedColor back = colorAndStyle(rule, "bg-color", "bg-style");
    const unsigned underline = hasStyle(rule, "text-style", "underline") ? g_underline : 0;
    return {static_cast<std::uint16_t>(front.mask | back.mask << g_backgroundShift | underline),
            static_cast<std::uint16_t>(front.value | back.value << g_backgroundShift | underline)};
}

std::string MultiColorLayout::escapeSequence(Attributes attributes) {
    const unsigned mask = attributes.mask;
    const unsigned value = attributes.value;
    const std::string front = colorCode(mask, value, g_foreground);
    const std::string back = colorCode(mask >> g_backgroundShift, value >> g_backgroundShift, g_background);
    // From the default on: what an earlier line has set must not shine through.
    return "\x1b[0" + front + back + ((value & g_underline) != 0 ? ";4" : "") + "m";
}

std::string MultiColorLayout::colored(const std::string& line) const {
    const auto level = levelOfLine(line);
    if (!level || m_attributes[*level].mask == 0)
        return line;
    // The line feed stays outside of the sequences: a background would otherwise run over the whole next line.
    const std::string text = line.substr(0, line.find_last_not_of('\n') + 1);
    return escapeSequence(m_attributes[*level]) + text + "\x1b[0m\n";
}

}  // namespace kvan::logging::impl
