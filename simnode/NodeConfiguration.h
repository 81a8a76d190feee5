// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QString>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <vector>

namespace tidewick::sim {

/// The node cannot start with its configuration. The text is one line.
class ConfigurationError : public std::runtime_error
{
public:
    /// The reaction of a real node: it exits with status 255, or aborts.
    enum class Reaction { Refusal, Abort };

    ConfigurationError(Reaction reaction, const std::string &text)
        : std::runtime_error(text), m_reaction(reaction)
    {
    }

    Reaction reaction() const { return m_reaction; }

private:
    Reaction m_reaction;
};

/// The section of the configuration for one port.
struct PortConfiguration
{
    enum class Protocol { Http, WebSocket };

    QString name;
    QHostAddress address;
    quint16 number;
    Protocol protocol;
};

/// The values that the node takes from its configuration file. It accepts unknown sections.
struct NodeConfiguration
{
    enum class Store { Mossgrid, NuDB };

    std::vector<PortConfiguration> ports;
    Store store;
    std::filesystem::path storePath;
    /// Empty: no folder for other databases.
    std::filesystem::path databasePath;
    /// Empty: no debug log.
    std::filesystem::path debugLog;
    QString nodeSize;
    /// Bytes by which the store grows between two trims.
    qint64 roundGrowthBytes;

    /// Whether this is a stock node, which neither streams the ledger nor maintains its store, and
    /// reports none of the three extra objects in get_counts.
    bool isStock() const { return store == Store::NuDB; }

    /// Reads the file, and checks the validators file that it names. File names in it are relative
    /// to its folder. Throws ConfigurationError.
    static NodeConfiguration read(const std::filesystem::path &file);
};

} // namespace tidewick::sim
