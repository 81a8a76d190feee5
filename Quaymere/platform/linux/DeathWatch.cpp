// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/DeathWatch.h"

#include "platform/time/Clock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// The maximum number of processes guarded at a time; beyond that, the oldest are dropped.
constexpr std::size_t mostGuarded = 8;

/// The interval between checks whether the processes told to end have ended.
constexpr std::chrono::milliseconds lookInterval{100};

/// Names a process. With a descriptor, it is to be guarded; without one, it is to be told to end.
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
    bool isTold = false;
};

using AllGuarded = std::array<Guarded, mostGuarded>;

/// The next message from the program; nothing once the program has gone.
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

/// Leaves the terminal's process group and ignores the signals that tell the program to end: this
/// process has to end last.
void standApart()
{
    ::setpgid(0, 0);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        ::signal(number, SIG_IGN);
}

/// Moves the channel to descriptor 0 and the lock to 1, and closes everything else, so that nobody
/// waits for a stream that this process holds open. Both must come with numbers above the standard
/// streams.
void closeOthers(int channel, int lock)
{
    ::dup2(channel, 0);
    ::close(1);
    if (lock >= 0)
        ::dup2(lock, 1);
    if (::syscall(SYS_close_range, 2U, ~0U, 0U) == 0)
        return;
    constexpr int mostOpenThisEarly = 1024; // kernels before 5.9
    for (int descriptor = 2; descriptor < mostOpenThisEarly; ++descriptor)
        ::close(descriptor);
}

/// Sends SIGTERM, but not a second time.
void tell(Guarded &guarded)
{
    if (guarded.descriptor >= 0 && !std::exchange(guarded.isTold, true))
        ::syscall(SYS_pidfd_send_signal, guarded.descriptor, SIGTERM, nullptr, 0U);
}

/// Handles the program's messages until it has gone. Returns the guarded processes.
AllGuarded listen()
{
    AllGuarded all{};
    std::size_t next = 0;
    while (const auto word = receive(0)) {
        if (word->descriptor < 0) {
            for (Guarded &known : all) {
                if (known.id == word->id)
                    tell(known);
            }
            continue;
        }
        if (all[next].descriptor >= 0)
            ::close(all[next].descriptor);
        all[next] = *word;
        next = (next + 1) % all.size();
    }
    return all;
}

bool haveEnded(const AllGuarded &all)
{
    return std::all_of(all.begin(), all.end(), [](const Guarded &left) {
        pollfd end{left.descriptor, POLLIN, 0};
        return left.descriptor < 0 || ::poll(&end, 1, 0) > 0;
    });
}

[[noreturn]] void watch(int channel, int lock, std::chrono::seconds patience)
{
    standApart();
    closeOthers(channel, lock);
    AllGuarded all = listen();
    std::for_each(all.begin(), all.end(), tell);
    const ContinuousClock::time_point deadline = ContinuousClock::now() + patience;
    while (!haveEnded(all) && ContinuousClock::now() < deadline)
        ::poll(nullptr, 0, static_cast<int>(lookInterval.count()));
    for (const Guarded &left : all) {
        if (left.descriptor >= 0)
            ::syscall(SYS_pidfd_send_signal, left.descriptor, SIGKILL, nullptr, 0U);
    }
    ::_exit(0);
}

} // namespace

DeathWatch::DeathWatch(const std::filesystem::path &lockFile, std::chrono::seconds patience)
{
    if (!lockFile.empty()) {
        constexpr int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC;
        m_lock = UniqueDescriptor(::open(lockFile.c_str(), flags, 0600));
    }
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return;
    UniqueDescriptor ours(ends[0]);
    const UniqueDescriptor theirs(ends[1]);
    const pid_t starter = ::fork();
    if (starter == 0) {
        // The second fork makes the watchdog process nobody's child here, so that it leaves no
        // zombie if it is killed.
        if (::fork() != 0)
            ::_exit(0);
        ours.reset(); // otherwise the end of the program would go unnoticed here
        watch(theirs.get(), m_lock.get(), patience);
    }
    while (starter > 0 && ::waitpid(starter, nullptr, 0) < 0 && errno == EINTR) {
    }
    m_channel = std::move(ours);
}

DeathWatch::~DeathWatch()
{
    if (!m_channel)
        return;
    ::shutdown(m_channel.get(), SHUT_WR);
    char nothing = 0;
    while (::read(m_channel.get(), &nothing, 1) < 0 && errno == EINTR) {
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

/// This program's own watchdog process inherited the descriptor in the fork, so the two share the
/// lock.
bool DeathWatch::isAlone() const
{
    return !m_lock || ::flock(m_lock.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool DeathWatch::terminate(pid_t id) const
{
    return m_channel && ::send(m_channel.get(), &id, sizeof id, MSG_NOSIGNAL) > 0;
}

} // namespace tidewick
