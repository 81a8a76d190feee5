// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Preloaded into programs under valgrind 3.19, which does not support the system calls for process
// file descriptors. A server outside opens them, at the socket that TIDEWICK_DESCRIPTORS names;
// signals are sent by process id.

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

int connectedSocket()
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const char *path = std::getenv("TIDEWICK_DESCRIPTORS");
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s", path != nullptr ? path : "");
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return socket;
    ::close(socket);
    return -1;
}

/// Gets a file descriptor of the process from the server. Returns -1 and sets errno on failure.
long descriptorOf(pid_t process)
{
    const int socket = connectedSocket();
    long descriptor = -1;
    if (socket >= 0 && ::write(socket, &process, sizeof process) == sizeof process) {
        char byte = 0;
        iovec bytes{&byte, 1};
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
        msghdr message{};
        message.msg_iov = &bytes;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const ssize_t length = ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
        const cmsghdr *const header = CMSG_FIRSTHDR(&message);
        if (length == 1 && header != nullptr) {
            int received = -1;
            std::memcpy(&received, CMSG_DATA(header), sizeof received);
            descriptor = received;
        }
    }
    ::close(socket);
    if (descriptor < 0)
        errno = ENOSYS;
    return descriptor;
}

/// The id of the process that a descriptor refers to. Not positive if the process no longer exists.
pid_t processOf(int descriptor)
{
    std::array<char, 64> path{};
    std::snprintf(path.data(), path.size(), "/proc/self/fdinfo/%d", descriptor);
    pid_t process = 0;
    if (std::FILE *file = std::fopen(path.data(), "r")) {
        std::array<char, 128> line{};
        while (std::fgets(line.data(), int(line.size()), file) != nullptr
               && std::strncmp(line.data(), "Pid:", 4) != 0) {
        }
        process = pid_t(std::strtol(line.data() + 4, nullptr, 10));
        std::fclose(file);
    }
    return process;
}

} // namespace

/// Replaces the C library's function.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): its names are reserved ones
extern "C" long syscall(long number, ...) noexcept
{
    std::va_list list;
    va_start(list, number);
    std::array<long, 6> arguments{};
    for (long &argument : arguments)
        argument = va_arg(list, long);
    va_end(list);

    if (number == SYS_pidfd_open)
        return descriptorOf(pid_t(arguments[0]));
    if (number == SYS_pidfd_send_signal) {
        const pid_t process = processOf(int(arguments[0]));
        if (process > 0)
            return ::kill(process, int(arguments[1]));
        errno = ESRCH;
        return -1;
    }
    using Syscall = long(long, ...);
    static auto *const original = reinterpret_cast<Syscall *>(::dlsym(RTLD_NEXT, "syscall"));
    return original(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4],
                    arguments[5]);
}
