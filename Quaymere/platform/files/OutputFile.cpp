// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/OutputFile.h"

#include "platform/files/Files.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewick::OutputFile {

namespace {

namespace fs = std::filesystem;

/// The file that a chain of links leads to, whether it exists or not.
fs::path target(fs::path path)
{
    constexpr int mostLinks = 40; // as many as the kernel follows
    std::error_code error;
    for (int links = 0; links < mostLinks && fs::is_symlink(path, error); ++links)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

/// What open(2) would give a new file.
Files::Access newFileAccess()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return {::getegid(), mode_t(0666 & ~mask)};
}

/// The access that a new file in place of this one gets; nothing if the file is to be overwritten
/// instead: a pipe, a device, or a file that would change its owner.
std::optional<Files::Access> accessAfterReplacement(const fs::path &path)
{
    struct stat status
    {
    };
    if (::stat(path.c_str(), &status) != 0)
        return newFileAccess();
    if (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid())
        return std::nullopt;
    return Files::Access{status.st_gid, status.st_mode & 0777U};
}

/// Whether only the replacement is impossible: in a folder of somebody else, for example, or where
/// the file is a mount point.
bool mayStillBeOverwritten(const std::error_code &error)
{
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted
           || error == std::errc::device_or_resource_busy
           || error == std::errc::read_only_file_system;
}

void overwrite(const fs::path &path, const QByteArray &content)
{
    UniqueDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!file || !Files::writeAll(file.get(), content.constData(), std::size_t(content.size()))
        || ::close(file.release()) != 0)
        throw FileError::fromErrno(path);
}

} // namespace

void write(const fs::path &path, const QByteArray &content)
{
    const fs::path file = target(path);
    if (const auto access = accessAfterReplacement(file)) {
        const std::error_code error = Files::replace(file, content, *access);
        if (!error)
            return;
        if (!mayStillBeOverwritten(error))
            throw FileError(path, error);
    }
    overwrite(path, content);
}

} // namespace tidewick::OutputFile
