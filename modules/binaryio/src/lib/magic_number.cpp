#include <binaryio/binary_failure.h>
#include <binaryio/magic_number.h>

#include <boost/format.hpp>
#include <boost/throw_exception.hpp>
#include <locale>
#include <mutex>
#include <shared_mutex>
#include <string_view>
#include <unordered_map>

// Tags are compared by number alone. The names serve the messages: a failure says which record was found where another
// one was expected. They are kept in one registry of the process, written when a tag is made (once, for the constants
// of a reader) and read when a message is put together, hence a lock that readers share.
namespace kvan::binaryio {

namespace {

class NameRegistry {
public:
    static NameRegistry& instance() {
        static NameRegistry s_registry;
        return s_registry;
    }

    void add(std::uint32_t value, const char* name) {
        const std::unique_lock lock(m_mutex);
        // Two names of one number are possible in 16 bits of hash; the first one stays.
        m_names.emplace(value, name);
    }

    std::string find(std::uint32_t value) const {
        const std::shared_lock lock(m_mutex);
        const auto found = m_names.find(value);
        return found != m_names.end() ? found->second : "<unknown number>";
    }

private:
    mutable std::shared_mutex m_mutex;
    std::unordered_map<std::uint32_t, std::string> m_names;
};

}  // namespace

MagicNumber::MagicNumber(const char* name) : m_value(valueOf(name)) {
    NameRegistry::instance().add(m_value, name ? name : "");
}

std::uint32_t MagicNumber::valueOf(const char* name) {
    const std::string_view text = name ? name : "";
    std::uint32_t hash = 0;
    for (const char character : text) {
        // A rotation of 16 bits to the left by one: the highest bit comes in again at the lowest.
        const std::uint32_t mixed = hash ^ static_cast<unsigned char>(character);
        hash = mixed >= 0x8000 ? (mixed & 0x7FFF) * 2 + 1 : mixed * 2;
    }
    // The shift drops the highest four bits, so that the number begins with 0xBFA; the length fills the lowest four,
    // and goes on into the hash for longer names.
    return (hash | 0xFBFA0000U) << 4 ^ static_cast<std::uint32_t>(text.size());
}

std::string MagicNumber::nameOf(std::uint32_t value) {
    return NameRegistry::instance().find(value);
}

void MagicNumber::assertMagicIs(std::uint32_t found) const {
    if (found == m_value)
        return;
    const boost::format text = boost::format("Found %|1$x|x (%2%) but expected %|3$x|x (%4%)", std::locale::classic()) %
                               found % nameOf(found) % m_value % nameOf(m_value);
    BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::UnexpectedMagicNumber, text.str()));
}

IBinaryBase& operator>>(IBinaryBase& stream, MagicNumber& magic) {
    std::uint32_t found = 0;
    stream >> found;
    if (magic.getValue() != 0)
        magic.assertMagicIs(found);
    else
        magic = MagicNumber(found);
    return stream;
}

}  // namespace kvan::binaryio
