// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/DeathWatch.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// The number of processes guarded at a time; the oldest are let go beyond that.
constexpr std::size_t mostGuarded = 8;

/// A message of one byte that carries a descriptor, set up to be sent or to be filled.
struct Message
{
    Message()
    {
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = control.data();
        header.msg_controllen = control.size();
    }
    Message(const Message &) = delete;
    Message &operator=(const Message &) = delete;
    ~Message() = default;

    char byte = 0;
    iovec part{&byte, 1};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr header{};
};

/// The next descriptor to guard, or -1 once the other end is gone.
int receive(int channel)
{
    while (true) {
        Message message;
        const ssize_t count = ::recvmsg(channel, &message.header, 0);
        if (count == 0 || (count < 0 && errno != EINTR))
            return -1;
        const cmsghdr *control = count > 0 ? CMSG_FIRSTHDR(&message.header) : nullptr;
        if (control == nullptr || control->cmsg_type != SCM_RIGHTS)
            continue;
        int descriptor = -1;
        std::memcpy(&descriptor, CMSG_DATA(control), sizeof descriptor);
        return descriptor;
    }
}

/// Out of reach of the terminal and of whoever tells the program to end: this one goes last.
void standApart()
{
    ::setpgid(0, 0);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        ::signal(number, SIG_IGN);
}

/// Closes everything but the channel, so that nobody waits for a stream that this process holds.
void closeOthers(int channel)
{
    ::dup2(channel, 0);
    ::syscall(SYS_close_range, 1U, ~0U, 0U);
}

[[noreturn]] void watch(int channel)
{
    standApart();
    closeOthers(channel);
    std::array<int, mostGuarded> guarded{};
    guarded.fill(-1);
    std::size_t next = 0;
    for (int process = receive(0); process >= 0; process = receive(0)) {
        if (guarded[next] >= 0)
            ::close(guarded[next]);
        guarded[next] = process;
        next = (next + 1) % guarded.size();
    }
    for (const int process : guarded) {
        if (process >= 0)
            ::syscall(SYS_pidfd_send_signal, process, SIGTERM, nullptr, 0U);
    }
    ::_exit(0);
}

} // namespace

DeathWatch::DeathWatch()
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return;
    UniqueDescriptor ours(ends[0]);
    const UniqueDescriptor theirs(ends[1]);
    m_watcher = ::fork();
    if (m_watcher == 0)
        watch(theirs.get());
    if (m_watcher > 0)
        m_channel = std::move(ours);
}

DeathWatch::~DeathWatch()
{
    if (m_watcher <= 0)
        return;
    m_channel.reset();
    while (::waitpid(m_watcher, nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool DeathWatch::guard(int process) const
{
    if (!m_channel)
        return false;
    Message message;
    cmsghdr *control = CMSG_FIRSTHDR(&message.header);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof process);
    std::memcpy(CMSG_DATA(control), &process, sizeof process);
    return ::sendmsg(m_channel.get(), &message.header, MSG_NOSIGNAL) == 1;
}

} // namespace tidewick
