#include <logger/logger.h>

extern "C" __attribute__((visibility("default"))) void log_from_module(const char* text) {
    KVAN_LOG(kvan::logging::Logger::getLogger("module"), WARN) << text;
}
