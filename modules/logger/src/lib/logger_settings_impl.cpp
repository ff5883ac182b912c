#include "logger_settings_impl.h"

#include "level_translator.h"
#include "locked_sink.h"
#include "sink_factories.h"

#include <algorithm>
#include <boost/property_tree/xml_parser.hpp>
#include <boost/regex.hpp>
#include <boost/throw_exception.hpp>
#include <sstream>
#include <stdexcept>

// Reads a document element by element, in its order, because the order is part of the language: sinks, then one root,
// then loggers, and a sink may refer to earlier ones. A sink is made when its element is read, also when no logger
// refers to it, so a document that fails later may have made a log file. The first broken rule throws and the settings
// go; attributes and elements that are not known are passed over.
namespace kvan::logging::impl {

namespace {

using boost::property_tree::ptree;

/// The reader of XML goes one call deeper with each nested element, some 300 bytes of stack, so their number is
/// bounded. A configuration of a thousand loggers stays below.
constexpr std::ptrdiff_t g_mostTags = 4000;

[[noreturn]] void fail(const std::string& reason) {
    BOOST_THROW_EXCEPTION(std::runtime_error(reason));
}

std::optional<Level::type> levelAttribute(const ptree& element) {
    const auto attribute = element.get_child_optional("<xmlattr>.level");
    return attribute ? std::optional(attribute->get_value<Level::type>(LevelTranslator())) : std::nullopt;
}

ptree readXml(const std::string& document, const std::string& name) {
    namespace xml = boost::property_tree::xml_parser;
    if (std::count(document.begin(), document.end(), '<') > g_mostTags)
        fail("The document has too many elements");
    // The reader cannot know what the stream is called; its failure is thrown anew with the name.
    std::istringstream stream(document);
    ptree tree;
    try {
        xml::read_xml(stream, tree);
    } catch (const xml::xml_parser_error& fault) {
        BOOST_THROW_EXCEPTION(xml::xml_parser_error(fault.message(), name, fault.line()));
    }
    return tree;
}

}  // namespace

LoggerSettings LoggerSettings::parse(const std::string& document, const std::string& name) {
    LoggerSettings settings;
    Impl::parse_configuration(settings, readXml(document, name));
    return settings;
}

class LoggerSettings::Impl::MapSinkContext final : public SinkContext {
public:
    MapSinkContext(const Impl& settings, const ptree& tree) : m_settings(settings), m_tree(tree) {}

    const ptree& tree() const override { return m_tree; }
    SinkEntry get_sink_info(const std::string& name) const override { return m_settings.find(name); }
    std::shared_ptr<std::mutex> streamMutex() const override { return m_settings.m_streamMutex; }

private:
    const Impl& m_settings;
    const ptree& m_tree;
};

void LoggerSettings::Impl::parse_configuration(LoggerSettings& settings, const ptree& document) {
    // Names of elements that are not listed here, text and comments among them, are passed over.
    Impl reading(settings);
    for (const auto& [name, element] : document.get_child("kvan-logconf")) {
        if (name == "sink")
            reading.readSink(element);
        else if (name == "root")
            reading.readRoot(element);
        else if (name == "logger")
            reading.readLogger(element);
    }
    reading.finish();
}

void LoggerSettings::Impl::readSink(const ptree& element) {
    static const boost::regex namePattern("[A-Za-z:.\\-_0-9]+");
    if (m_isRootSeen)
        fail("<root> element before <sink> element");
    if (!m_settings.m_loggers.empty())
        fail("<logger> element before <sink> element");
    const auto name = element.get<std::string>("<xmlattr>.name");
    if (!boost::regex_match(name, namePattern))
        fail("Invalid sink name provided: '" + name + "'");
    if (m_sinks.count(name) != 0)
        fail("<sink> element with duplicate name '" + name + "' found");
    const auto sinkClass = element.get<std::string>("<xmlattr>.class");
    // The class decides what else the element may hold; its factory reads that by itself.
    const auto factory = sinkFactories().find(sinkClass);
    if (factory == sinkFactories().end())
        fail("<sink> element with unknown class attribute '" + sinkClass + "'");
    // Without a level of its own a sink takes whatever its loggers let through.
    const Level::type threshold = levelAttribute(element).value_or(Level::TRACE);
    auto sink = factory->second(MapSinkContext(*this, element));
    m_sinks.emplace(name, SinkEntry{sink, threshold});
    if (sink)
        addSink(std::move(sink));
}

void LoggerSettings::Impl::addSink(std::shared_ptr<ISink> sink) {
    // What must be held around a fork: queues one by one, locks of sinks each once, since several share the streams'
    // one.
    if (auto async = std::dynamic_pointer_cast<AsyncSink>(sink)) {
        m_settings.m_asyncSinks.push_back(std::move(async));
    } else if (auto locked = std::dynamic_pointer_cast<LockedSink>(sink)) {
        auto& mutexes = m_settings.m_sinkMutexes;
        if (std::find(mutexes.begin(), mutexes.end(), &locked->mutex()) == mutexes.end())
            mutexes.push_back(&locked->mutex());
    }
    m_settings.m_sinks.push_back(std::move(sink));
}

void LoggerSettings::Impl::readRoot(const ptree& element) {
    if (m_isRootSeen)
        fail("Duplicate <root> element found");
    if (m_sinks.empty())
        fail("No <sink> element before <root> element");
    m_isRootSeen = true;
    m_settings.m_root = readRule(element);
    // The level where nobody names one.
    if (!m_settings.m_root.level)
        m_settings.m_root.level = Level::INFO;
    if (!m_settings.m_root.sinks)
        fail("No <sink> reference within <root> element");
}

void LoggerSettings::Impl::readLogger(const ptree& element) {
    if (m_sinks.empty())
        fail("No <sink> element before <logger> element");
    if (!m_isRootSeen)
        fail("No <root> element before <logger> element");
    const auto name = element.get<std::string>("<xmlattr>.name");
    if (m_settings.m_loggers.count(name) != 0)
        fail("<logger> element with duplicate name '" + name + "' found");
    m_settings.m_loggers.emplace(name, readRule(element));
}

LoggerSettings::Rule LoggerSettings::Impl::readRule(const ptree& element) const {
    Rule rule;
    rule.level = levelAttribute(element);
    for (const auto& [name, child] : element) {
        if (name != "sink")
            continue;
        // A reference to the null sink counts: the rule has sinks then, and they are none.
        if (!rule.sinks)
            rule.sinks.emplace();
        const SinkEntry& entry = find(child.get<std::string>("<xmlattr>.ref"));
        if (entry.sink)
            rule.sinks->push_back(entry);
    }
    return rule;
}

void LoggerSettings::Impl::finish() {
    if (m_sinks.empty())
        fail("No <sink> element found");
    if (!m_isRootSeen)
        fail("No <root> element found");
}

const SinkEntry& LoggerSettings::Impl::find(const std::string& sinkName) const {
    const auto found = m_sinks.find(sinkName);
    if (found == m_sinks.end())
        fail("Unknown <sink> reference '" + sinkName + "'");
    return found->second;
}

}  // namespace kvan::logging::impl
