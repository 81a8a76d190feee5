// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/NodeConfiguration.h"

#include "platform/files/Files.h"
#include "platform/text/NumberText.h"
#include "simnode/ConfigurationText.h"

#include <algorithm>
#include <cctype>

namespace tidewick::sim {

namespace fs = std::filesystem;

namespace {

using ConfigurationText::Sections;
using ConfigurationText::Values;
using Reaction = ConfigurationError::Reaction;

constexpr qint64 bytesPerMiB = 1024LL * 1024;
/// With more, the growth in bytes might not fit in 64 bits.
constexpr qint64 mostMiB = 1LL << 40;

ConfigurationError refusal(const std::string &text)
{
    return {Reaction::Refusal, text};
}

ConfigurationError abortion(const std::string &text)
{
    return {Reaction::Abort, text};
}

QByteArrayList linesOf(const Sections &sections, const QByteArray &name)
{
    const auto section = sections.find(name);
    return section == sections.end() ? QByteArrayList() : section->second;
}

QByteArray valueOf(const Values &values, const QByteArray &key)
{
    const auto value = values.find(key);
    return value == values.end() ? QByteArray() : value->second;
}

/// The file named by the first line of a section; empty if there is none.
fs::path pathOf(const Sections &sections, const QByteArray &name, const fs::path &folder)
{
    const QByteArrayList lines = linesOf(sections, name);
    return lines.isEmpty() ? fs::path() : folder / lines.first().toStdString();
}

PortConfiguration::Protocol protocolOf(const QByteArray &text, const std::string &section)
{
    if (text == "http")
        return PortConfiguration::Protocol::Http;
    if (text == "ws")
        return PortConfiguration::Protocol::WebSocket;
    throw refusal("protocol '" + text.toStdString() + "' in " + section + " is not http or ws");
}

PortConfiguration portOf(const Sections &sections, const QByteArray &name)
{
    const std::string section = '[' + name.toStdString() + ']';
    const auto lines = sections.find(name);
    if (lines == sections.end())
        throw refusal("missing section " + section);
    const Values values = ConfigurationText::values(lines->second);

    const QByteArray ip = valueOf(values, "ip");
    const QHostAddress address(QString::fromLatin1(ip));
    if (!address.isLoopback())
        throw refusal("ip '" + ip.toStdString() + "' in " + section + " is not a loopback address");

    const QByteArray port = valueOf(values, "port");
    const auto number = NumberText::integer(QString::fromLatin1(port));
    if (!number || *number < 1 || *number > 65535)
        throw refusal("port '" + port.toStdString() + "' in " + section + " is not a port number");

    return {QString::fromLatin1(name), address, static_cast<quint16>(*number),
            protocolOf(valueOf(values, "protocol"), section)};
}

std::vector<PortConfiguration> portsOf(const Sections &sections)
{
    const QByteArrayList names = linesOf(sections, "server");
    if (names.isEmpty())
        throw refusal("no ports: the section [server] is missing or empty");
    std::vector<PortConfiguration> ports;
    ports.reserve(static_cast<std::size_t>(names.size()));
    for (const QByteArray &name : names)
        ports.push_back(portOf(sections, name));
    return ports;
}

NodeConfiguration::Store storeOf(const QByteArray &type)
{
    const QByteArray folded = type.toLower();
    if (folded == "mossgrid")
        return NodeConfiguration::Store::Mossgrid;
    if (folded == "nudb")
        return NodeConfiguration::Store::NuDB;
    if (type.isEmpty())
        throw abortion("no store: the section [node_db] names no type");
    throw abortion("unknown store type '" + type.toStdString() + "' in [node_db]");
}

/// Whether this is the public key of a validator list's publisher: 33 bytes in hexadecimal, the
/// first of which is the key's type.
bool isPublisherKey(const QByteArray &text)
{
    constexpr qsizetype digits = 66;
    return text.size() == digits && text.toUpper().startsWith("ED")
           && std::all_of(text.begin(), text.end(), [](char digit) {
                  return std::isxdigit(static_cast<unsigned char>(digit)) != 0;
              });
}

void checkValidators(const fs::path &file)
{
    if (file.empty())
        return;
    try {
        const Sections sections = ConfigurationText::sections(Files::read(file));
        if (!sections.contains("validators") && !sections.contains("validator_list_keys"))
            throw refusal("no section [validators] or [validator_list_keys] in " + file.string());
        for (const QByteArray &key : linesOf(sections, "validator_list_keys")) {
            if (!isPublisherKey(key))
                throw refusal("'" + key.toStdString() + "' in [validator_list_keys] of "
                              + file.string() + " is not a publisher's key");
        }
    } catch (const FileError &error) {
        throw refusal(std::string("the validators file cannot be read: ") + error.what());
    }
}

Sections sectionsIn(const fs::path &file)
{
    try {
        return ConfigurationText::sections(Files::read(file));
    } catch (const FileError &error) {
        throw abortion(std::string("the configuration cannot be read: ") + error.what());
    }
}

} // namespace

NodeConfiguration NodeConfiguration::read(const fs::path &file)
{
    const Sections sections = sectionsIn(file);
    const fs::path folder = file.parent_path();

    NodeConfiguration configuration{};
    configuration.ports = portsOf(sections);
    checkValidators(pathOf(sections, "validators_file", folder));

    const Values store = ConfigurationText::values(linesOf(sections, "node_db"));
    configuration.store = storeOf(valueOf(store, "type"));
    const QByteArray path = valueOf(store, "path");
    if (path.isEmpty())
        throw abortion("the section [node_db] names no path");
    configuration.storePath = folder / path.toStdString();
    const auto growth =
        NumberText::integer(QString::fromLatin1(valueOf(store, "round_growth_mib")));
    configuration.roundGrowthBytes =
        qBound<qint64>(1, growth.value_or(1024), mostMiB) * bytesPerMiB;

    configuration.databasePath = pathOf(sections, "database_path", folder);
    configuration.debugLog = pathOf(sections, "debug_logfile", folder);
    const QByteArrayList size = linesOf(sections, "node_size");
    configuration.nodeSize =
        size.isEmpty() ? QStringLiteral("tiny") : QString::fromUtf8(size.first());
    return configuration;
}

} // namespace tidewick::sim
