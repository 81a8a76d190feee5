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

/// Locates the node's data, and creates its configuration, validators list and environment from the
/// bundle's templates and the user's settings. The node never reads a file edited by hand: the
/// files rendered here are rewritten before each start. Holds no state except its two sources.
class NodeConfig
{
public:
    /// A resource that the bundle should have is missing.
    class Missing : public std::runtime_error
    {
    public:
        explicit Missing(const std::string &name);
    };

    NodeConfig(Bundle bundle, Defaults defaults);

    /// The application's data folder, chosen once per process and not created here. A folder with
    /// the name that early versions used is renamed to the current name; if that fails, it is used
    /// under the old name.
    static const std::filesystem::path &dataDirectory();

    /// The choice made by dataDirectory, among the subfolders of `base`.
    static std::filesystem::path chooseDataDirectory(const std::filesystem::path &base);

    /// Throws FileError for a data folder whose path the node would not read correctly from its
    /// configuration.
    static void checkDataDirectory(const std::filesystem::path &directory);

    /// Writes "xrpld.cfg" and "validators.txt" into `directory`, which is created if necessary, and
    /// returns the path of the former. The list of validators is the user's own (ValidatorsFile) if
    /// there is one, else the bundle's. Throws Missing or FileError; files already written then
    /// remain.
    std::filesystem::path render(const std::filesystem::path &directory) const;

    /// This process's environment with the variables of "node.env" set in it. Throws Missing or
    /// FileError.
    ProcessEnvironment environment() const;

    /// The growth step that will apply, in MiB.
    qint64 roundGrowthMiB() const;

    /// The bundle's description of its build, lines of key=value; "no build-info" if there is none.
    QString buildInfo() const;

    /// The page about real nodes and, above all, where to get one; nothing if the bundle has none.
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
