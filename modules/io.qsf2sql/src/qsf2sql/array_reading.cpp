#include "qsf2sql/qsf2sql_impl.h"
#include "qsf2sql/qsflib/LineSpectrumBlock.h"
#include "qsf2sql/qsflib/element_conversion.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>
#include <qsf2sql/errors.h>
#include <qsf2sql/storage.h>

#include <boost/throw_exception.hpp>
#include <locale>
#include <sstream>
#include <type_traits>

// The road of a read: an Id is checked, the array is located, its elements are fetched.
//
// Locating gives a value and promises nothing else. It reads the heads of a line block, and decodes a scan, whose
// length stands nowhere; the last line field and the last scan are remembered, so that asking for the length and then
// for the elements, or for intensities and then for m/z, costs one look at the file. Fetching goes by that value alone,
// and seeks for itself.
//
// A fault leaves the storage usable, unless the reader itself has failed: then all that is not in memory fails.
namespace kvan::io {

using KVAN::io::QSF::convertElements;
using qsf2sql::recalibration::SpectrumCalibrations;
using qsf2sql_detail::NativeType;

namespace {

/// What the trace says of a native type.
struct NativeName {
    NativeType type;
    const char* name;      // of the element type
    const char* elements;  // in a line about where an array comes from
    const char* reader;    // in a line about the Id
};

constexpr NativeName g_nativeNames[] = {
    {NativeType::Float, "float", "32-bit floats", "readNativeArrayData<float>"},
    {NativeType::Double, "double", "64-bit doubles", "readNativeArrayData<double>"},
    {NativeType::UInt32, "unsigned int", "32-bit unsigned integers", "readNativeArrayData<uint32_t>"},
};

const NativeName& nameOf(NativeType type) {
    for (const NativeName& row : g_nativeNames)
        if (row.type == type)
            return row;
    BOOST_THROW_EXCEPTION(
        std::invalid_argument("readArrayData(): unknown native format " + std::to_string(static_cast<int>(type))));
}

template <class T>
constexpr NativeType g_typeOf = std::is_same_v<T, float>    ? NativeType::Float
                                : std::is_same_v<T, double> ? NativeType::Double
                                                            : NativeType::UInt32;

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

ArrayId Qsf2SqlImpl::checkId(std::uint64_t id, const char* what) const {
    if (id >> 56 == 0)
        BOOST_THROW_EXCEPTION(Qsf2SqlCacheError(
            "Requested array with non-existing Id " + idText(id) +
            " - upper 8 bits of the 64-bit Id shouldn't be zero; could be a type-conversion error in user's code "
            "(accidental truncation to 32 bits)."));
    traceId(ArrayId(id), what);
    return ArrayId(id);
}

void Qsf2SqlImpl::traceId(ArrayId id, const char* what) const {
    KVAN_LOG(m_idLogger, TRACE) << what << ": " << idText(id.value());
}

template <class T>
void Qsf2SqlImpl::traceRead(ArrayId id, NativeType native) const {
    const NativeName& stored = nameOf(native);
    KVAN_LOG(m_logger, TRACE) << "Reading from native " << stored.elements << ".";
    KVAN_LOG(m_logger, TRACE) << (native == g_typeOf<T> ? "Read array non-converting to " : "Read array converting to ")
                              << nameOf(g_typeOf<T>).name;
    traceId(id, stored.reader);
}

StoredArray Qsf2SqlImpl::locate(ArrayId id) {
    if (blockOf(id.kind()) == Block::Scan) {
        const KVAN::io::QSF::ScanSpectrumBlock& scan = scanAt(id.offset());
        if (!isComputed(id.kind()))
            return {nativeTypeOf(scan.GetElementType()), scan.GetNumberOfEntries(), id.offset()};
        // The m/z of a scan that could not be read fail where their number is needed.
        const bool isRead = scan.GetElementType() != KVAN::io::QSF::ELEMENT_UNKNOWN;
        return {NativeType::Double, isRead ? scan.GetNumberOfEntries() : 0, id.offset()};
    }
    StoredArray field = lineField(storedLineField(id));
    if (isComputed(id.kind()) && field.type != NativeType::Absent)
        field.type = NativeType::Double;
    return field;
}

// The key is set before the read, so that a scan that could not be read is not tried again: each further request meets
// the block of unknown type that the fault has left. No block lies at offset 0, the first key.
const KVAN::io::QSF::ScanSpectrumBlock& Qsf2SqlImpl::scanAt(std::uint64_t offset) {
    if (offset != m_lastScanOffset) {
        m_lastScanOffset = offset;
        m_reader.seekTo(offset);
        m_scan.Read(m_reader, m_compressor);
    }
    return m_scan;
}

// The key is set after the read, so that heads that could not be read are tried again. It holds the kind: another field
// of the block reads the heads once more, out of the reader's window. Nothing is served from memory once the reader has
// failed, since what is in memory is a place only.
const StoredArray& Qsf2SqlImpl::lineField(ArrayId id) {
    m_reader.requireSound();
    if (id.value() != m_lastLineId) {
        m_lastLineField =
            KVAN::io::QSF::LineSpectrumBlock::Locate(m_reader, id.offset(), static_cast<std::uint8_t>(id.kind()));
        m_lastLineId = id.value();
    }
    return m_lastLineField;
}

template <class T>
void Qsf2SqlImpl::fetch(ArrayId id, const StoredArray& stored, std::span<T> to) {
    switch (id.kind()) {
        case ArrayKind::ProfileIntensity:
            return scanAt(stored.position).GetScanDataSave(to);
        case ArrayKind::ProfileMz:
            return convertElements(profileMz(id), to);
        case ArrayKind::LineMz:
            return convertElements(lineMz(id), to);
        default:
            if (stored.type == NativeType::Double)
                return convertElements(lowLevelReadNativeArrayData(stored, m_doubles), to);
            return convertElements(lowLevelReadNativeArrayData(stored, m_floats), to);
    }
}

template <class T>
std::span<const T> Qsf2SqlImpl::lowLevelReadNativeArrayData(const StoredArray& stored, std::vector<T>& elements) {
    m_reader.seekTo(stored.position);
    readArray(m_reader, stored.count, elements);
    return elements;
}

// The indices are read as an array of their own, with its lines in the trace.
std::span<const double> Qsf2SqlImpl::lineMz(ArrayId id) {
    const ArrayId indexId = id.withKind(ArrayKind::LineIndex);
    traceId(indexId, "getNativeStorageFormat");
    const StoredArray indices = locate(indexId);
    traceRead<double>(indexId, indices.type);
    if (indices.type == NativeType::Double) {
        lowLevelReadNativeArrayData(indices, m_doubles);
    } else {
        const std::span<const float> floats = lowLevelReadNativeArrayData(indices, m_floats);
        m_doubles.assign(floats.begin(), floats.end());
    }
    const auto transformator =
        m_calibrations->getTransformatorForSpectrumWhere(SpectrumCalibrations::Column::LineMzId, id.value());
    transformator->DIndicesToMasses(m_doubles);
    return m_doubles;
}

std::span<const double> Qsf2SqlImpl::profileMz(ArrayId id) {
    const auto transformator =
        m_calibrations->getTransformatorForSpectrumWhere(SpectrumCalibrations::Column::ProfileMzId, id.value());
    // A scan without entries asks for the range up to -1 and is refused there.
    const auto entries = static_cast<std::uint32_t>(scanAt(id.offset()).GetNumberOfEntries());
    transformator->IndexRangeToMasses(0, static_cast<std::int32_t>(entries - 1u), m_doubles);
    return m_doubles;
}

std::uint64_t Qsf2Sql::getArrayLength(std::uint64_t idValue) {
    const ArrayId id = m_impl->checkId(idValue, "getArrayLength");
    // Scans of signed elements are counted, though `locate` serves them to nobody.
    if (blockOf(id.kind()) == Block::Scan)
        return m_impl->scanAt(id.offset()).GetNumberOfEntries();
    return m_impl->locate(id).count;
}

NativeType Qsf2Sql::getNativeStorageFormat(std::uint64_t idValue) {
    return m_impl->locate(m_impl->checkId(idValue, "getNativeStorageFormat")).type;
}

template <class T>
bool Qsf2Sql::readArrayData(std::uint64_t idValue, T* out) {
    const ArrayId id = m_impl->checkId(idValue, "getNativeStorageFormat");
    const StoredArray stored = m_impl->locate(id);
    if (stored.type == NativeType::Absent) {
        KVAN_LOG(m_logger, TRACE) << "Requested component not available.";
        return false;
    }
    m_impl->traceRead<T>(id, stored.type);
    m_impl->fetch(id, stored, std::span<T>(out, stored.count));
    return true;
}

template bool Qsf2Sql::readArrayData(std::uint64_t, double*);
template bool Qsf2Sql::readArrayData(std::uint64_t, float*);
template bool Qsf2Sql::readArrayData(std::uint64_t, unsigned int*);

}  // namespace kvan::io
