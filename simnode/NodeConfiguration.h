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

/// A configuration the node does not start with. The text is one line.
class ConfigurationError : public std::runtime_error
{
public:
    /// What a real node does about it: exit with status 255, or abort.
    enum class Reaction { Refusal, Abort };

    ConfigurationError(Reaction reaction, const std::string &text)
        : std::runtime_error(text), m_reaction(reaction)
    {
    }

    Reaction reaction() const { return m_reaction; }

private:
    Reaction m_reaction;
};

/// A section of the configuration on one port.
struct PortConfiguration
{
    enum class Protocol { Http, WebSocket };

    QString name;
    QHostAddress address;
    quint16 number;
    Protocol protocol;
};

/// What the node takes from its configuration file; sections it does not know are accepted.
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

    /// A node on this store streams no ledger, maintains nothing and tells nothing of itself.
    bool isStock() const { return store == Store::NuDB; }

    /// Reads the file and the validators file it names; file names in it are relative to its
    /// folder. Throws ConfigurationError.
    static NodeConfiguration read(const std::filesystem::path &file);
};

} // namespace tidewick::sim
