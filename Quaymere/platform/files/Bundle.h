// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <filesystem>
#include <optional>
#include <string_view>

namespace tidewick {

/// The application's folder with everything it ships: "Contents/MacOS" (executables),
/// "Contents/Resources". It may be moved or copied as a whole. A value; it looks at the disk only
/// when asked for a resource.
class Bundle
{
public:
    explicit Bundle(std::filesystem::path path) : m_path(std::move(path)) {}

    /// The bundle this program runs from: three levels above its real path (links resolved) when it
    /// lies in "Contents/MacOS", else the folder it lies in.
    static Bundle main();

    /// The bundle to which an executable with this real path belongs.
    static Bundle ofExecutable(const std::filesystem::path &executable);

    const std::filesystem::path &path() const { return m_path; }

    /// The node's executable, whether it exists or not.
    std::filesystem::path nodeExecutable() const;

    /// The resource `name` with the extension `extension` (none when empty); nothing if there is no
    /// such file.
    std::optional<std::filesystem::path> resource(std::string_view name,
                                                  std::string_view extension) const;

    /// The application's version as its "Info.plist" has it; nothing in a build for development.
    std::optional<QString> version() const;

private:
    std::filesystem::path m_path;
};

} // namespace tidewick
