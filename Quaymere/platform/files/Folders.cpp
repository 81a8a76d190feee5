// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Folders.h"

#include "platform/files/Files.h"

#include <QUuid>

#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace tidewick::Folders {

namespace fs = std::filesystem;

namespace {

fs::path withoutTrailingSlash(const fs::path &path)
{
    std::string text = path.string();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text;
}

/// The folder named by an environment variable. Empty unless it is absolute: a relative one would
/// depend on the working directory.
fs::path fromEnvironment(const char *variable)
{
    const char *value = std::getenv(variable);
    return value != nullptr && *value == '/' ? withoutTrailingSlash(value) : fs::path();
}

fs::path home()
{
    if (fs::path named = fromEnvironment("HOME"); !named.empty())
        return named;
    const passwd *user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? fs::path(user->pw_dir) : fs::path("/");
}

} // namespace

fs::path applicationSupport()
{
    const fs::path named = fromEnvironment("XDG_DATA_HOME");
    return named.empty() ? home() / ".local" / "share" : named;
}

fs::path configuration()
{
    const fs::path named = fromEnvironment("XDG_CONFIG_HOME");
    return named.empty() ? home() / ".config" : named;
}

fs::path settings()
{
    return configuration() / "Tidewick";
}

fs::path temporary()
{
    const char *named = std::getenv("TMPDIR");
    return named != nullptr && *named != '\0' ? fromOperand(named) : fs::path("/tmp");
}

fs::path newTemporary(const std::string &prefix)
{
    const QString unique = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    return temporary() / (prefix + unique.toStdString());
}

fs::path lockFile(const std::string &name)
{
    if (const fs::path runtime = fromEnvironment("XDG_RUNTIME_DIR"); !runtime.empty())
        return runtime / (name + ".lock");
    const fs::path folder = settings();
    try {
        Files::createFolders(folder);
    } catch (const FileError &) {
        // The caller finds out when it cannot create the lock.
    }
    return folder / (name + ".lock");
}

fs::path fromOperand(const std::string &operand)
{
    const fs::path path(operand);
    if (path.is_absolute())
        return withoutTrailingSlash(path);
    std::error_code error;
    const fs::path current = fs::current_path(error);
    if (error)
        throw FileError(operand.empty() ? fs::path(".") : path, error);
    return withoutTrailingSlash((current / path).lexically_normal());
}

} // namespace tidewick::Folders
