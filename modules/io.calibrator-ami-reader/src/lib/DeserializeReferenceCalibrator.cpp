#include "DeserializeReferenceCalibrator.h"

#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <logger/logger.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>

// A calibrator within a record: version 1.0 holds a blob, 0.2 a text, a later one nothing that can be read, which is no
// failure. Versions of which no file is known are refused. Reading and skipping share the decision, so that they always
// consume the same bytes.
namespace kvan::io::ami {

using kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization;
using logging::Logger;

namespace {

const Logger& logger() {
    static const Logger s_logger = Logger::getLogger("kvan.io.amiReader.deserializeReferenceCalibrator");
    return s_logger;
}

enum class StoredForm { None, Blob, Text };

/// Tag and version, and the form of what follows them.
StoredForm readStoredForm(Stream& stream) {
    const VersionNumber version = readHead(stream, Tags::get().referenceCalibrator);
    KVAN_LOG(logger(), DEBUG) << "version = " << version.toString();
    if (version > VersionNumber(1, 0))
        return StoredForm::None;
    if (version == VersionNumber(1, 0))
        return StoredForm::Blob;
    if (version == VersionNumber(0, 2))
        return StoredForm::Text;
    if (version == VersionNumber(0, 1))
        ThrowUntestedCodePath();
    BOOST_THROW_EXCEPTION(std::runtime_error("Shouldn't happen."));
}

}  // namespace

bool DeserializeReferenceCalibrator(Stream& stream, TransformatorPtr& calibrator) {
    calibrator.reset();
    switch (readStoredForm(stream)) {
        case StoredForm::None:
            break;
        case StoredForm::Blob:
            calibrator = DeserializeBlob(readBytes(stream));
            break;
        case StoredForm::Text:
            calibrator = DeserializeText(read<std::string>(stream));
            break;
    }
    return calibrator != nullptr;
}

void SkipReferenceCalibrator(Stream& stream) {
    switch (readStoredForm(stream)) {
        case StoredForm::None:
            break;
        case StoredForm::Blob:
            skipBytes(stream);
            break;
        case StoredForm::Text:
            skipString(stream);
            break;
    }
}

TransformatorPtr DeserializeBlob(const Bytes& blob) {
    return CalibrationTransformatorFactorySerialization().DeserializeFromBlob(blob);
}

TransformatorPtr DeserializeText(const std::string& text) {
    // Before the attempt, so that a text that cannot be read stands in the log.
    KVAN_LOG(logger(), DEBUG) << "trying to deserialize: " << text;
    return CalibrationTransformatorFactorySerialization().DeserializeFromString(text);
}

void ThrowUntestedCodePath() {
    BOOST_THROW_EXCEPTION(std::runtime_error("Untested code path."));
}

}  // namespace kvan::io::ami
