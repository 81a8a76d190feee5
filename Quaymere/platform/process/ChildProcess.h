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
    /// Without the program's own name, which is `executable`.
    std::vector<std::string> arguments;
    ProcessEnvironment environment = currentEnvironment();
    /// Empty: the current folder of this process.
    std::filesystem::path workingDirectory;

    /// Descriptors of this process that become the child's standard streams.
    int standardInput = 0;
    int standardOutput = 1;
    int standardError = 2;

    /// Out of reach of the terminal's Ctrl-C.
    bool ownProcessGroup = false;

    /// Tells the child when this process has died, and has to outlive it; without one the kernel
    /// does.
    const DeathWatch *deathWatch = nullptr;
};

/// A running child. It gets its three standard streams and no other descriptor, the default action
/// and no mask for every signal, and SIGTERM should this process die first.
///
/// Owned by whoever started it; start it from the main thread, whose end is what the child takes
/// for this process's death. Destroying the object leaves the child running. Signals reach this
/// very child or nobody: it is held by a process descriptor, not by a number that could be used
/// again.
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

    /// Returns once the new program runs. Throws FileError, naming the file or folder at fault;
    /// then nothing was started.
    static std::unique_ptr<ChildProcess> start(const ChildSpec &spec);

    ~ChildProcess() override;

    pid_t id() const { return m_id; }

    /// Sends SIGTERM; harmless when the child has ended.
    void terminate();
    /// Sends SIGKILL; harmless when the child has ended.
    void kill();

    /// Blocks until the child has ended. For modes without an event loop.
    Ending wait();

signals:
    /// The child has ended. From the event loop, once. Deleting the object here needs deleteLater.
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
