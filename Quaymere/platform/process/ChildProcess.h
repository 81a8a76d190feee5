// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <QObject>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

class QSocketNotifier;

namespace tidewick {

class DeathWatch;

using ProcessEnvironment = std::map<std::string, std::string>;

/// This process's own environment.
ProcessEnvironment currentEnvironment();

/// How to run an executable.
struct ChildSpec
{
    std::filesystem::path executable;
    /// Without the program's own name (argv[0]), which is `executable`.
    std::vector<std::string> arguments;
    ProcessEnvironment environment = currentEnvironment();
    /// If empty, the working directory of this process.
    std::filesystem::path workingDirectory;

    /// Descriptors of this process that become the child's standard streams.
    int standardInput = 0;
    int standardOutput = 1;
    int standardError = 2;

    /// Puts the child in its own process group, out of reach of the terminal's Ctrl-C.
    bool ownProcessGroup = false;

    /// Sends SIGTERM to the child when this process has died; must outlive the child. If it is null
    /// or cannot guard the child, the kernel sends the signal.
    const DeathWatch *deathWatch = nullptr;
};

/// A running child process. It inherits its three standard streams and no other descriptor. All its
/// signals have the default action, and none is blocked. It receives SIGTERM if this process dies
/// first.
///
/// Owned by the code that started it. Start it from the main thread: the child takes the end of the
/// thread that started it for the death of this process. Destroying the object leaves the child
/// running. Signals reach this very child or nobody, because it is held by a process descriptor
/// (pidfd) and not by an ID that could be reused.
class ChildProcess final : public QObject
{
    Q_OBJECT

public:
    /// How a process ended: the exit status, or the signal that ended it.
    struct Ending
    {
        int status;
        bool signaled;
    };

    /// Returns once the new program runs. If nothing could be started, throws FileError, which
    /// names the file or folder at fault.
    static std::unique_ptr<ChildProcess> start(const ChildSpec &spec);

    ~ChildProcess() override;

    pid_t id() const { return m_id; }

    /// Sends SIGTERM, if the child is guarded only once; harmless when the child has ended.
    void terminate();
    /// Sends SIGKILL; harmless when the child has ended.
    void kill();

    /// Blocks until the child has ended. For modes without an event loop.
    Ending wait();

signals:
    /// Emitted once, from the event loop, when the child has ended. A slot that deletes this object
    /// has to use deleteLater.
    void exited(int status, bool signaled);

private:
    ChildProcess(pid_t id, UniqueDescriptor process, const DeathWatch *deathWatch);

    void send(int signalNumber);
    void reap();

    pid_t m_id;
    UniqueDescriptor m_process;
    const DeathWatch *m_deathWatch;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tidewick
