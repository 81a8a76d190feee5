// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/DeathWatch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>

#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// The number of processes guarded at a time; the oldest are let go beyond that.
constexpr std::size_t mostGuarded = 8;

/// A process to guard, with its descriptor, or to let go of, without.
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

    pid_t id = 0;
    iovec part{&id, sizeof id};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr header{};
};

struct Guarded
{
    pid_t id = 0;
    int descriptor = -1;
};

/// The next word from the program; nothing once it is gone.
std::optional<Guarded> receive(int channel)
{
    Message message;
    ssize_t count = 0;
    do {
        count = ::recvmsg(channel, &message.header, 0);
    } while (count < 0 && errno == EINTR);
    if (count <= 0)
        return std::nullopt;
    Guarded guarded{message.id, -1};
    const cmsghdr *control = CMSG_FIRSTHDR(&message.header);
    if (control != nullptr && control->cmsg_type == SCM_RIGHTS)
        std::memcpy(&guarded.descriptor, CMSG_DATA(control), sizeof guarded.descriptor);
    return guarded;
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
    if (::syscall(SYS_close_range, 1U, ~0U, 0U) == 0)
        return;
    constexpr int mostOpenThisEarly = 1024; // kernels before 5.9
    for (int descriptor = 1; descriptor < mostOpenThisEarly; ++descriptor)
        ::close(descriptor);
}

[[noreturn]] void watch(int channel)
{
    standApart();
    closeOthers(channel);
    std::array<Guarded, mostGuarded> guarded{};
    std::size_t next = 0;
    while (const auto word = receive(0)) {
        Guarded *place = std::find_if(guarded.begin(), guarded.end(), [&](const Guarded &known) {
            return known.descriptor >= 0 && known.id == word->id;
        });
        if (place == guarded.end()) {
            place = &guarded[next];
            next = (next + 1) % guarded.size();
        }
        if (place->descriptor >= 0)
            ::close(place->descriptor);
        *place = *word;
    }
    for (const Guarded &left : guarded) {
        if (left.descriptor >= 0)
            ::syscall(SYS_pidfd_send_signal, left.descriptor, SIGTERM, nullptr, 0U);
    }
    ::_exit(0);
}

} // namespace

DeathWatch::DeathWatch()
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return;
    UniqueDescriptor ours(ends[0]);
    const UniqueDescriptor theirs(ends[1]);
    m_watcher = ::fork();
    if (m_watcher == 0) {
        ours.reset(); // or the end of the program would not be seen from here
        watch(theirs.get());
    }
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

bool DeathWatch::guard(int process, pid_t id) const
{
    if (!m_channel)
        return false;
    Message message;
    message.id = id;
    cmsghdr *control = CMSG_FIRSTHDR(&message.header);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof process);
    std::memcpy(CMSG_DATA(control), &process, sizeof process);
    return ::sendmsg(m_channel.get(), &message.header, MSG_NOSIGNAL) > 0;
}

void DeathWatch::release(pid_t id) const
{
    if (m_channel)
        (void)!::send(m_channel.get(), &id, sizeof id, MSG_NOSIGNAL);
}

} // namespace tidewick
