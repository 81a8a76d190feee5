// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/ChildProcess.h"

#include "platform/process/DeathWatch.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <string_view>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// The steps of a start that can fail in the child. The step decides which file the error names.
enum class Step : int { Folder, Execute, Other };

/// The byte with which the parent lets the child continue. It says whether a watchdog process
/// guards the child already.
constexpr char goUnguarded = 1;
constexpr char goGuarded = 2;

/// Sent by the child if it could not become the new program.
struct StartFailure
{
    Step step;
    int error;
};

/// Everything the child needs, prepared before the fork: after it, the child must not allocate
/// memory.
struct Launch
{
    const char *executable;
    const char *folder;
    char *const *arguments;
    char *const *environment;
    std::array<int, 3> streams;
    bool ownProcessGroup;
    pid_t parent;
    int channel;
};

std::vector<char *> pointersTo(std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

void resetSignals()
{
    struct sigaction action
    {
    };
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number)
        ::sigaction(number, &action, nullptr);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// Moves the three streams to descriptors 0 to 2. They are duplicated to numbers above that range
/// first, so that none is overwritten before it is used.
bool placeStreams(std::array<int, 3> streams)
{
    for (int &stream : streams) {
        stream = ::fcntl(stream, F_DUPFD, 3);
        if (stream < 0)
            return false;
    }
    for (int target = 0; target < 3; ++target) {
        if (::dup2(streams[static_cast<std::size_t>(target)], target) < 0)
            return false;
    }
    return true;
}

/// Marks all descriptors except the standard streams as close-on-exec, including the channel: when
/// it closes, the parent knows that exec has succeeded.
bool closeOthersOnExec()
{
    constexpr unsigned closeOnExec = 1U << 2; // CLOSE_RANGE_CLOEXEC
    if (::syscall(SYS_close_range, 3U, ~0U, closeOnExec) == 0)
        return true;
    // Kernels before 5.11. The limit may be a billion, but nobody has that many open.
    const long limit = std::min(::sysconf(_SC_OPEN_MAX), 1L << 20);
    for (long descriptor = 3; descriptor < limit; ++descriptor)
        ::fcntl(static_cast<int>(descriptor), F_SETFD, FD_CLOEXEC);
    return limit > 0;
}

[[noreturn]] void reportAndExit(const Launch &launch, Step step)
{
    const StartFailure failure{step, errno};
    (void)!::write(launch.channel, &failure, sizeof failure);
    ::_exit(127);
}

/// Runs in the forked child. Makes only calls that are safe between fork and exec.
[[noreturn]] void becomeProgram(const Launch &launch)
{
    // The parent sends this byte once it holds the process descriptor. If it cannot get one, it
    // closes the channel.
    char go = 0;
    if (::read(launch.channel, &go, 1) != 1)
        ::_exit(127);

    if (launch.ownProcessGroup && ::setpgid(0, 0) != 0)
        reportAndExit(launch, Step::Other);
    // The parent may have died before the request took effect.
    if (go == goUnguarded
        && (::prctl(PR_SET_PDEATHSIG, SIGTERM) != 0 || ::getppid() != launch.parent))
        reportAndExit(launch, Step::Other);
    if (!placeStreams(launch.streams) || !closeOthersOnExec())
        reportAndExit(launch, Step::Other);
    if (*launch.folder != '\0' && ::chdir(launch.folder) != 0)
        reportAndExit(launch, Step::Folder);
    resetSignals();
    ::execve(launch.executable, launch.arguments, launch.environment);
    reportAndExit(launch, Step::Execute);
}

/// Blocks all signals during its lifetime, so that no handler of this process runs in the child.
class SignalsHeld
{
public:
    SignalsHeld()
    {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    SignalsHeld(const SignalsHeld &) = delete;
    SignalsHeld &operator=(const SignalsHeld &) = delete;
    ~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

/// Restores the default action of SIGCHLD. If this process was started with SIGCHLD ignored, the
/// kernel would discard the child's exit status.
void keepChildStatus()
{
    struct sigaction action
    {
    };
    if (::sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
        ::signal(SIGCHLD, SIG_DFL);
}

void forget(pid_t child)
{
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

FileError errorOf(const StartFailure &failure, const ChildSpec &spec)
{
    const std::error_code reason(failure.error, std::generic_category());
    return {failure.step == Step::Folder ? spec.workingDirectory : spec.executable, reason};
}

/// Lets the child continue and waits for its exec. Returns the failure it reports, if any.
std::optional<StartFailure> finishStart(int channel, char go)
{
    (void)!::send(channel, &go, 1, MSG_NOSIGNAL);
    StartFailure failure{};
    ssize_t count = 0;
    do {
        count = ::read(channel, &failure, sizeof failure);
    } while (count < 0 && errno == EINTR);
    return count == sizeof failure ? std::optional(failure) : std::nullopt;
}

} // namespace

ProcessEnvironment currentEnvironment()
{
    ProcessEnvironment environment;
    for (char **entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        const std::size_t equals = text.find('=');
        // If a variable occurs twice, getenv finds the first.
        if (equals != std::string_view::npos)
            environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return environment;
}

std::unique_ptr<ChildProcess> ChildProcess::start(const ChildSpec &spec)
{
    std::vector<std::string> arguments{spec.executable.string()};
    arguments.insert(arguments.end(), spec.arguments.begin(), spec.arguments.end());
    std::vector<std::string> environment;
    for (const auto &[name, value] : spec.environment)
        environment.emplace_back(name).append("=").append(value);
    const std::vector<char *> argumentPointers = pointersTo(arguments);
    const std::vector<char *> environmentPointers = pointersTo(environment);

    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw FileError::fromErrno(spec.executable);
    UniqueDescriptor ours(ends[0]);
    UniqueDescriptor theirs(ends[1]);
    const Launch launch{spec.executable.c_str(),
                        spec.workingDirectory.c_str(),
                        argumentPointers.data(),
                        environmentPointers.data(),
                        {spec.standardInput, spec.standardOutput, spec.standardError},
                        spec.ownProcessGroup,
                        ::getpid(),
                        theirs.get()};

    keepChildStatus();
    pid_t child = -1;
    {
        const SignalsHeld held;
        child = ::fork();
        if (child == 0) {
            ::close(ours.get());
            becomeProgram(launch);
        }
    }
    if (child < 0)
        throw FileError::fromErrno(spec.executable);
    theirs.reset();

    UniqueDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, child, 0U)));
    if (!process) {
        const FileError error = FileError::fromErrno(spec.executable);
        ours.reset();
        forget(child);
        throw error;
    }
    const bool guarded = spec.deathWatch != nullptr && spec.deathWatch->guard(process.get(), child);
    if (const auto failure = finishStart(ours.get(), guarded ? goGuarded : goUnguarded)) {
        forget(child);
        throw errorOf(*failure, spec);
    }
    return std::unique_ptr<ChildProcess>(
        new ChildProcess(child, std::move(process), guarded ? spec.deathWatch : nullptr));
}

ChildProcess::ChildProcess(pid_t id, UniqueDescriptor process, const DeathWatch *deathWatch)
    : m_id(id), m_process(std::move(process)), m_deathWatch(deathWatch)
{
    if (QCoreApplication::instance() == nullptr)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_process.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &ChildProcess::reap);
}

ChildProcess::~ChildProcess() = default;

void ChildProcess::terminate()
{
    if (!m_deathWatch || !m_deathWatch->terminate(m_id))
        send(SIGTERM);
}

void ChildProcess::kill()
{
    send(SIGKILL);
}

void ChildProcess::send(int signalNumber)
{
    ::syscall(SYS_pidfd_send_signal, m_process.get(), signalNumber, nullptr, 0U);
}

namespace {

/// Returns nothing while the child is running, which happens only with WNOHANG.
std::optional<ChildProcess::Ending> collect(int process, int options)
{
    siginfo_t information{};
    int result = 0;
    do {
        result = ::waitid(static_cast<idtype_t>(P_PIDFD), static_cast<id_t>(process), &information,
                          WEXITED | options);
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        qFatal("The child was collected by somebody else");
    if (information.si_pid == 0)
        return std::nullopt;
    return ChildProcess::Ending{information.si_status, information.si_code != CLD_EXITED};
}

} // namespace

ChildProcess::Ending ChildProcess::wait()
{
    m_notifier.reset();
    return *collect(m_process.get(), 0);
}

void ChildProcess::reap()
{
    const std::optional<Ending> ending = collect(m_process.get(), WNOHANG);
    if (!ending)
        return;
    m_notifier->setEnabled(false);
    emit exited(ending->status, ending->signaled);
}

} // namespace tidewick
