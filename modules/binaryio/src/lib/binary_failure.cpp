#include <binaryio/binary_failure.h>

// The category is one object of the process, since codes of two categories never compare equal. Its default-equivalent
// conditions are those of the base class: codes of streams stand for nothing of the system.
namespace kvan::binaryio {

namespace {

class StreamCategory final : public boost::system::error_category {
public:
    // Name and texts are part of messages that callers show.
    const char* name() const noexcept override { return "binary io stream"; }

    std::string message(int code) const override {
        switch (static_cast<StreamError>(code)) {
            case StreamError::Success:
                return "Success";
            case StreamError::Unspecified:
                return "Unspecified stream error";
            case StreamError::PositionOutOfBounds:
                return "Binary position out of bounds";
            case StreamError::UnexpectedMagicNumber:
                return "Unexpected magic number";
            case StreamError::EmptyVersionNumber:
                return "Empty version number";
            case StreamError::UnexpectedVersionNumber:
                return "Unexpected version number";
            case StreamError::EndOfStream:
                return "End of stream";
            case StreamError::InvalidOperation:
                return "Invalid operation";
        }
        return "Unknown stream error";
    }
};

}  // namespace

const boost::system::error_category& streamCategory() {
    static const StreamCategory category;
    return category;
}

}  // namespace kvan::binaryio
