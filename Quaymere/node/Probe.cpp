// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Probe.h"

#include "platform/files/Files.h"

#include <cerrno>
#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace tidewick::Probe {

bool portInUse(quint16 port, qint32 timeoutMs)
{
    const UniqueDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket)
        return false;
    ::fcntl(socket.get(), F_SETFL, ::fcntl(socket.get(), F_GETFL) | O_NONBLOCK);

    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return true;
    if (errno != EINPROGRESS)
        return false;

    if (Files::waitForEvents(socket.get(), POLLOUT, std::chrono::milliseconds(timeoutMs)) <= 0)
        return false;
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket.get(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
}

std::optional<double> freeGB(const std::filesystem::path &location)
{
    constexpr double bytesPerGB = 1'000'000'000;
    std::error_code error;
    std::filesystem::path place = location;
    while (!std::filesystem::exists(place, error) && place.has_relative_path())
        place = place.parent_path();
    struct statvfs volume
    {
    };
    if (::statvfs(place.c_str(), &volume) != 0)
        return std::nullopt;
    return static_cast<double>(volume.f_bavail) * static_cast<double>(volume.f_frsize) / bytesPerGB;
}

namespace {

/// The unit of `st_blocks`, whatever the volume's own block size.
constexpr qint64 blockSize = 512;

using Directory = std::unique_ptr<DIR, decltype([](DIR *directory) { ::closedir(directory); })>;

Directory openDirectory(const std::string &path, int flags)
{
    UniqueDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    Directory directory(descriptor ? ::fdopendir(descriptor.get()) : nullptr);
    if (directory)
        descriptor.release(); // closedir closes it
    return directory;
}

bool isDotEntry(std::string_view name)
{
    return name == "." || name == "..";
}

} // namespace

qint64 directorySize(const std::filesystem::path &directory, const Skip &skip)
{
    qint64 sum = 0;
    // Only one folder is open at a time, however deep the tree, and its entries are not kept:
    // fts(3) would hold some 300 bytes for each file of a folder, and a store can have 300,000.
    std::vector<std::string> pending{directory.string()};
    int flags = 0;
    while (!pending.empty()) {
        const std::string path = std::move(pending.back());
        pending.pop_back();
        const Directory folder = openDirectory(path, std::exchange(flags, O_NOFOLLOW));
        if (!folder)
            continue;
        while (const dirent *entry = ::readdir(folder.get())) {
            const std::string_view name(static_cast<const char *>(entry->d_name));
            if (isDotEntry(name) || (skip && skip(name)))
                continue;
            struct stat status
            {
            };
            unsigned char type = entry->d_type;
            if (type == DT_UNKNOWN || type == DT_REG) {
                if (::fstatat(::dirfd(folder.get()), name.data(), &status, AT_SYMLINK_NOFOLLOW)
                    != 0)
                    continue;
                type = static_cast<unsigned char>(IFTODT(status.st_mode));
            }
            if (type == DT_DIR)
                pending.push_back(path + '/' + std::string(name));
            else if (type == DT_REG
                     && __builtin_add_overflow(sum, status.st_blocks * blockSize, &sum))
                qFatal("The size of %s is beyond 64 bits", directory.c_str());
        }
    }
    return sum;
}

} // namespace tidewick::Probe
