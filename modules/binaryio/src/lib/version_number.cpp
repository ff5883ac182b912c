#include <binaryio/binary_failure.h>
#include <binaryio/version_number.h>

#include <boost/format.hpp>
#include <boost/throw_exception.hpp>
#include <locale>

// Versions are compared as pairs of numbers, so that 1.10 comes after 1.2. Texts are formatted in the "C" locale: a
// host that groups digits must not change a message.
namespace kvan::binaryio {

std::string VersionNumber::toString() const {
    return m_parts ? (boost::format("%|1$d|.%|2$d|", std::locale::classic()) % m_parts->first % m_parts->second).str()
                   : std::string();
}

IBinaryBase& operator>>(IBinaryBase& stream, VersionNumber& version) {
    std::uint16_t major = 0;
    std::uint16_t minor = 0;
    stream >> major >> minor;
    // Both parts are read before the version changes.
    version = VersionNumber(major, minor);
    return stream;
}

IBinaryBase& operator>>(IBinaryBase& stream, const expected_type<VersionNumber>& expected) {
    // Before the read: to expect nothing is a fault of the caller, not of the data.
    if (!expected.get().isValid())
        BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::EmptyVersionNumber, "Invalid empty version"));
    VersionNumber found;
    stream >> found;
    if (found != expected.get()) {
        const boost::format text =
            boost::format("Found V%|1$d|.%|2$d| but expecting V%|3$d|.%|4$d|", std::locale::classic()) %
            found.getMajor() % found.getMinor() % expected.get().getMajor() % expected.get().getMinor();
        BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::UnexpectedVersionNumber, text.str()));
    }
    return stream;
}

}  // namespace kvan::binaryio
