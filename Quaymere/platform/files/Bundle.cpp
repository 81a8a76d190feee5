// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Bundle.h"

#include "platform/files/Files.h"
#include "platform/files/PropertyList.h"

#include <string>

namespace tidewick {

namespace fs = std::filesystem;

Bundle Bundle::ofExecutable(const fs::path &executable)
{
    const fs::path folder = executable.parent_path();
    if (folder.filename() == "MacOS" && folder.parent_path().filename() == "Contents")
        return Bundle(folder.parent_path().parent_path());
    return Bundle(folder);
}

fs::path Bundle::nodeExecutable() const
{
    return m_path / "Contents" / "MacOS" / "xrpld";
}

std::optional<fs::path> Bundle::resource(std::string_view name, std::string_view extension) const
{
    std::string file(name);
    if (!extension.empty())
        file.append(".").append(extension);
    fs::path path = m_path / "Contents" / "Resources" / file;
    std::error_code error;
    if (!fs::exists(path, error))
        return std::nullopt;
    return path;
}

std::optional<QString> Bundle::version() const
{
    try {
        return PropertyList::text(Files::read(m_path / "Contents" / "Info.plist"),
                                  u"CFBundleShortVersionString");
    } catch (const FileError &) {
        return std::nullopt;
    }
}

} // namespace tidewick
