#pragma once

#include "logger_settings.h"
#include "sink_context.h"

#include <boost/property_tree/ptree.hpp>

namespace kvan::logging::impl {

/// Reads the elements of one document into the settings, in the order in which they stand.
class LoggerSettings::Impl {
public:
    static void parse_configuration(LoggerSettings& settings, const boost::property_tree::ptree& document);

private:
    using ptree = boost::property_tree::ptree;
    class MapSinkContext;

    explicit Impl(LoggerSettings& settings) : m_settings(settings) {}

    void readSink(const ptree& element);
    void readRoot(const ptree& element);
    void readLogger(const ptree& element);
    Rule readRule(const ptree& element) const;
    void finish();
    void addSink(std::shared_ptr<ISink> sink);
    const SinkEntry& find(const std::string& sinkName) const;

    LoggerSettings& m_settings;
    std::shared_ptr<std::mutex> m_streamMutex = std::make_shared<std::mutex>();
    std::map<std::string, SinkEntry> m_sinks;
    bool m_isRootSeen = false;
};

}  // namespace kvan::logging::impl
