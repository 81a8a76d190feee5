// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <filesystem>
#include <optional>
#include <string_view>

namespace tidewick {

/// The application's folder and everything shipped in it: "Contents/MacOS" (executables) and
/// "Contents/Resources". It can be moved or copied as a whole. A value type: once constructed, it
/// reads the disk only in resource() and version().
class Bundle
{
public:
    explicit Bundle(std::filesystem::path path) : m_path(std::move(path)) {}

    /// The bundle this program runs from. If the executable's real path (links resolved) is in
    /// "Contents/MacOS", the bundle is three levels above it; otherwise it is the executable's own
    /// folder.
    static Bundle main();

    /// The bundle that an executable with this real path belongs to.
    static Bundle ofExecutable(const std::filesystem::path &executable);

    const std::filesystem::path &path() const { return m_path; }

    /// The node's executable, whether it exists or not.
    std::filesystem::path nodeExecutable() const;

    /// The path of the resource `name` with the extension `extension`, or without one if that is
    /// empty. Nothing if there is no such file.
    std::optional<std::filesystem::path> resource(std::string_view name,
                                                  std::string_view extension) const;

    /// The application's version from "Info.plist"; nothing in a development build.
    std::optional<QString> version() const;

private:
    std::filesystem::path m_path;
};

} // namespace tidewick
