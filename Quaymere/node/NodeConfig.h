// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Bundle.h"
#include "platform/files/Defaults.h"
#include "platform/process/ChildProcess.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tidewick {

/// Where the node's data is, and how its configuration, validators list and environment are made
/// from the bundle's templates and the user's settings. The node never reads a file edited by hand:
/// what is rendered here is written anew before each start. Holds no state but its two sources.
class NodeConfig
{
public:
    /// A resource that the bundle should have and has not.
    class Missing : public std::runtime_error
    {
    public:
        explicit Missing(const std::string &name);
    };

    NodeConfig(Bundle bundle, Defaults defaults);

    /// The application's data folder, chosen once in a process; not created here. A folder of the
    /// name used by early versions is renamed to the present one; if that fails it is used as it
    /// is.
    static const std::filesystem::path &dataDirectory();

    /// The choice behind dataDirectory, below the folder `base`.
    static std::filesystem::path chooseDataDirectory(const std::filesystem::path &base);

    /// Throws FileError for a data folder whose path a node would not read from its configuration
    /// as it is.
    static void checkDataDirectory(const std::filesystem::path &directory);

    /// Writes "xrpld.cfg" and "validators.txt" into `directory`, which is made if need be, and
    /// gives the path of the former. The list of validators is the user's own (ValidatorsFile)
    /// where there is one, else the bundle's. Throws Missing or FileError; what was written until
    /// then stays.
    std::filesystem::path render(const std::filesystem::path &directory) const;

    /// This process's environment with the lines of "node.env" laid over it. Throws Missing or
    /// FileError.
    ProcessEnvironment environment() const;

    /// The growth step that will apply, in MiB.
    qint64 roundGrowthMiB() const;

    /// The bundle's description of its build, lines of key=value; "no build-info" without one.
    QString buildInfo() const;

    /// The page on real nodes, where they come from first of all; nothing in a bundle without it.
    std::optional<std::filesystem::path> nodePage() const
    {
        return m_bundle.resource("real-node", "html");
    }

    /// The executable that is run as the node.
    std::filesystem::path nodeExecutable() const { return m_bundle.nodeExecutable(); }

private:
    std::filesystem::path resource(std::string_view name, std::string_view extension) const;

    Bundle m_bundle;
    Defaults m_defaults;
};

} // namespace tidewick
