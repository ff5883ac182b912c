#include "qsf2sql/qsf2sql_impl.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>
#include <qsf2sql/errors.h>

#include <boost/throw_exception.hpp>
#include <locale>
#include <sstream>
#include <type_traits>

namespace kvan::io {

using qsf2sql_detail::NativeType;

namespace {

template <class T>
struct NativeTraits;
template <>
struct NativeTraits<float> {
    static constexpr const char* name = "float";
    static constexpr const char* readCheck = "readNativeArrayData<float>";
};
template <>
struct NativeTraits<double> {
    static constexpr const char* name = "double";
    static constexpr const char* readCheck = "readNativeArrayData<double>";
};
template <>
struct NativeTraits<unsigned int> {
    static constexpr const char* name = "unsigned int";
    static constexpr const char* readCheck = "readNativeArrayData<uint32_t>";
};

[[noreturn]] void throwUnknownKind() {
    BOOST_THROW_EXCEPTION(std::runtime_error("Shouldn't happen."));
}

std::string idText(std::uint64_t id) {
    std::ostringstream text;
    text.imbue(std::locale::classic());  // whatever the host has set
    text << id << " (0x" << std::hex << id << ")";
    return text.str();
}

enum class Block { Lines, Scan };

Block blockOf(ArrayKind kind) {
    if (kind >= ArrayKind::LineIndex && kind <= ArrayKind::LineMz)
        return Block::Lines;
    if (kind == ArrayKind::ProfileIntensity || kind == ArrayKind::ProfileMz)
        return Block::Scan;
    throwUnknownKind();
}

bool isComputed(ArrayKind kind) {
    return kind == ArrayKind::LineMz || kind == ArrayKind::ProfileMz;
}

/// The Id of the line field that an array is read or computed from.
ArrayId storedLineField(ArrayId id) {
    return isComputed(id.kind()) ? id.withKind(ArrayKind::LineIndex) : id;
}

/// Signed scans can be decoded but are served to nobody.
NativeType nativeTypeOf(KVAN::io::QSF::ElementType type) {
    switch (type) {
        case KVAN::io::QSF::ELEMENT_UINT32:
            return NativeType::UInt32;
        case KVAN::io::QSF::ELEMENT_FLOAT32:
            return NativeType::Float;
        case KVAN::io::QSF::ELEMENT_FLOAT64:
            return NativeType::Double;
        default:
            BOOST_THROW_EXCEPTION(
                Qsf2SqlFileFormatError("ScanSpectrumBlock unsupported format " + std::to_string(type)));
    }
}

}  // namespace

void Qsf2SqlImpl::checkId(std::uint64_t id, const char* what) const {
    if (id >> 56 == 0)
        BOOST_THROW_EXCEPTION(Qsf2SqlCacheError(
            "Requested array with non-existing Id " + idText(id) +
            " - upper 8 bits of the 64-bit Id shouldn't be zero; could be a type-conversion error in user's code "
            "(accidental truncation to 32 bits)."));
    KVAN_LOG(m_idLogger, TRACE) << what << ": " << idText(id);
}

/// The key is set ahead of the read: a block whose read failed is not read again.
void Qsf2SqlImpl::loadScanBlock(std::uint64_t offset) {
    if (offset == m_lastScanOffset)
        return;
    m_lastScanOffset = offset;
    m_reader.seekTo(offset);
    m_scan.Read(m_reader, m_compressor);
}

/// Whether the block has the field; the reader then stands at its first element. The key is set behind the read.
bool Qsf2SqlImpl::loadLineHeader(ArrayId id) {
    if (id.value() == m_lastLineId) {
        m_reader.seekTo(m_lines.GetDataPosition());
        return m_lastLineFieldExists;
    }
    m_reader.seekTo(id.offset());
    m_lastLineFieldExists = m_lines.ReadHeaderAndSeekToFieldData(m_reader, static_cast<std::uint8_t>(id.kind()));
    m_lastLineId = id.value();
    return m_lastLineFieldExists;
}

std::uint64_t Qsf2SqlImpl::getArrayLength(std::uint64_t idValue) {
    checkId(idValue, "getArrayLength");
    const ArrayId id(idValue);
    if (blockOf(id.kind()) == Block::Scan) {
        loadScanBlock(id.offset());
        return m_scan.GetNumberOfEntries();
    }
    loadLineHeader(storedLineField(id));
    return m_lines.GetNumberOfEntries();
}

NativeType Qsf2SqlImpl::getNativeStorageFormat(std::uint64_t idValue) {
    checkId(idValue, "getNativeStorageFormat");
    const ArrayId id(idValue);
    if (blockOf(id.kind()) == Block::Scan) {
        loadScanBlock(id.offset());
        return isComputed(id.kind()) ? NativeType::Double : nativeTypeOf(m_scan.GetElementType());
    }
    if (!loadLineHeader(storedLineField(id)))
        return NativeType::Absent;
    return isComputed(id.kind()) ? NativeType::Double : m_lines.GetNativeType();
}

template <class T>
std::optional<std::span<const T>> Qsf2SqlImpl::readArrayData(std::uint64_t id, std::vector<T>& scratch) {
    // Asking for the format also loads the block and leaves the reader at the field's data.
    const NativeType native = getNativeStorageFormat(id);
    switch (native) {
        case NativeType::Float:
            KVAN_LOG(m_logger, TRACE) << "Reading from native 32-bit floats.";
            return readAs<T, float>(id, scratch);
        case NativeType::Double:
            KVAN_LOG(m_logger, TRACE) << "Reading from native 64-bit doubles.";
            return readAs<T, double>(id, scratch);
        case NativeType::UInt32:
            KVAN_LOG(m_logger, TRACE) << "Reading from native 32-bit unsigned integers.";
            return readAs<T, unsigned int>(id, scratch);
        case NativeType::Absent:
            KVAN_LOG(m_logger, TRACE) << "Requested component not available.";
            return std::nullopt;
    }
    BOOST_THROW_EXCEPTION(
        std::invalid_argument("readArrayData(): unknown native format " + std::to_string(static_cast<int>(native))));
}

template <class T, class Native>
std::span<const T> Qsf2SqlImpl::readAs(std::uint64_t id, std::vector<T>& scratch) {
    if constexpr (std::is_same_v<T, Native>) {
        KVAN_LOG(m_logger, TRACE) << "Read array non-converting to " << NativeTraits<T>::name;
        return readNativeArrayData<T>(id, scratch);
    } else {
        KVAN_LOG(m_logger, TRACE) << "Read array converting to " << NativeTraits<T>::name;
        std::vector<Native> nativeScratch;
        return convertElements(readNativeArrayData<Native>(id, nativeScratch), scratch);
    }
}

template <class T>
std::span<const T> Qsf2SqlImpl::readNativeArrayData(std::uint64_t idValue, std::vector<T>& scratch) {
    checkId(idValue, NativeTraits<T>::readCheck);
    const ArrayId id(idValue);
    if constexpr (std::is_same_v<T, double>) {
        if (id.kind() == ArrayKind::LineMz)
            return readLineMz(id, scratch);
        if (id.kind() == ArrayKind::ProfileMz)
            return readProfileMz(id, scratch);
    }
    return lowLevelReadNativeArrayData<T>(id, scratch);
}

template <class T>
std::span<const T> Qsf2SqlImpl::lowLevelReadNativeArrayData(ArrayId id, std::vector<T>& scratch) {
    if (isComputed(id.kind()))
        BOOST_THROW_EXCEPTION(std::runtime_error("ProfileMZ and LineMZ have no on-disk representation."));
    if (id.kind() == ArrayKind::ProfileIntensity)
        return m_scan.GetScanDataSave(scratch);
    const std::uint32_t count = m_lines.GetNumberOfEntries();
    m_reader.requireAvailable(count, sizeof(T));
    scratch.resize(count);
    m_reader.read(reinterpret_cast<char*>(scratch.data()), static_cast<std::int64_t>(std::size_t{count} * sizeof(T)));
    return scratch;
}

std::span<const double> Qsf2SqlImpl::readLineMz(ArrayId id, std::vector<double>& scratch) {
    readArrayData<double>(id.withKind(ArrayKind::LineIndex).value(), scratch);
    const auto transformator =
        m_calibrations->getTransformatorForSpectrumWhere(SpectrumCalibrations::Column::LineMzId, id.value());
    transformator->DIndicesToMasses(scratch);
    return scratch;
}

std::span<const double> Qsf2SqlImpl::readProfileMz(ArrayId id, std::vector<double>& scratch) {
    const auto transformator =
        m_calibrations->getTransformatorForSpectrumWhere(SpectrumCalibrations::Column::ProfileMzId, id.value());
    // A scan without entries asks for the range up to -1 and is refused there.
    const auto last = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_scan.GetNumberOfEntries()) - 1u);
    transformator->IndexRangeToMasses(0, last, scratch);
    return scratch;
}

template std::optional<std::span<const double>> Qsf2SqlImpl::readArrayData(std::uint64_t, std::vector<double>&);
template std::optional<std::span<const float>> Qsf2SqlImpl::readArrayData(std::uint64_t, std::vector<float>&);
template std::optional<std::span<const unsigned int>> Qsf2SqlImpl::readArrayData(std::uint64_t,
                                                                                 std::vector<unsigned int>&);

}  // namespace kvan::io
