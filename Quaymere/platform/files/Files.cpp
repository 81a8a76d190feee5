// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Files.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewick {

FileError::FileError(const std::filesystem::path &path, const std::string &reason)
    : std::runtime_error(path.string() + ": " + reason)
{
}

FileError::FileError(const std::filesystem::path &path, std::error_code code)
    : FileError(path, code.message())
{
}

FileError FileError::fromErrno(const std::filesystem::path &path)
{
    return {path, std::error_code(errno, std::generic_category())};
}

UniqueDescriptor &UniqueDescriptor::operator=(UniqueDescriptor &&other) noexcept
{
    if (this != &other) {
        reset();
        m_descriptor = std::exchange(other.m_descriptor, -1);
    }
    return *this;
}

void UniqueDescriptor::reset()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}

namespace Files {

QString display(const std::filesystem::path &path)
{
    return Utf8::decodeLossy(QByteArray::fromStdString(path.string()));
}

QByteArray read(const std::filesystem::path &path)
{
    const UniqueDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file)
        throw FileError::fromErrno(path);
    QByteArray content;
    std::array<char, 65536> buffer{};
    while (true) {
        const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
        if (count == 0)
            return content;
        if (count > 0)
            content.append(buffer.data(), count);
        else if (errno != EINTR)
            throw FileError::fromErrno(path);
    }
}

QString readText(const std::filesystem::path &path)
{
    auto text = Utf8::decode(read(path));
    if (!text)
        throw FileError(path, "not UTF-8 text");
    return *std::move(text);
}

bool writeAll(int descriptor, const char *data, std::size_t size)
{
    while (size > 0) {
        const ssize_t count = ::write(descriptor, data, size);
        if (count >= 0) {
            data += count;
            size -= static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            pollfd room{descriptor, POLLOUT, 0};
            ::poll(&room, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

int waitForEvents(int descriptor, short events, std::chrono::milliseconds limit)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + limit;
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd entry{descriptor, events, 0};
        const int ready = ::poll(&entry, 1, static_cast<int>(std::max<qint64>(left.count(), 0)));
        if (ready >= 0 || errno != EINTR)
            return ready;
    }
}

namespace {

/// The mode that open would give. The 0600 of mkostemp would hide the file from the user's group
/// and from others.
mode_t newFileMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0644 & ~mask;
}

} // namespace

void writeAtomically(const std::filesystem::path &path, const QByteArray &content)
{
    if (const auto error = replace(path, content, {::getegid(), newFileMode()}))
        throw FileError(path, error);
}

std::error_code replace(const std::filesystem::path &path, const QByteArray &content,
                        const Access &access)
{
    constexpr std::string_view ending = ".XXXXXX";
    const std::string name = path.filename().string().substr(0, NAME_MAX - ending.size());
    std::string temporary = (path.parent_path() / name).string().append(ending);
    UniqueDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return {errno, std::generic_category()};
    // A network or quota error may appear only in close, so its result counts too.
    const bool written =
        (access.group == ::getegid() || ::fchown(file.get(), uid_t(-1), access.group) == 0)
        && ::fchmod(file.get(), access.mode) == 0
        && writeAll(file.get(), content.constData(), static_cast<std::size_t>(content.size()))
        && ::close(file.release()) == 0 && ::rename(temporary.c_str(), path.c_str()) == 0;
    if (written)
        return {};
    const std::error_code error(errno, std::generic_category());
    ::unlink(temporary.c_str());
    return error;
}

void createFolders(const std::filesystem::path &folder)
{
    std::error_code error;
    std::filesystem::path part;
    for (const std::filesystem::path &name : folder) {
        part /= name;
        if (!std::filesystem::is_directory(part, error) && ::mkdir(part.c_str(), 0700) != 0
            && errno != EEXIST)
            throw FileError::fromErrno(folder);
    }
    if (!std::filesystem::is_directory(folder, error))
        throw FileError(folder, std::make_error_code(std::errc::not_a_directory));
}

void createOwnFolder(const std::filesystem::path &folder)
{
    createFolders(folder);
    struct stat link
    {
    };
    struct stat target
    {
    };
    if (::lstat(folder.c_str(), &link) != 0 || ::stat(folder.c_str(), &target) != 0)
        throw FileError::fromErrno(folder);
    if (link.st_uid != ::geteuid() || target.st_uid != ::geteuid())
        throw FileError(folder, "belongs to another user");
}

} // namespace Files

} // namespace tidewick
