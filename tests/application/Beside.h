// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace tidewick {

/// Runs the event loop until the condition holds. Returns false if it does not hold within a
/// generous time.
bool waitUntil(const std::function<bool()> &condition);

/// A program that runs alongside the test, which reads its standard output and error. It is
/// terminated when this object is destroyed or the test ends. If the test waits for its end, start
/// it after creating the application object.
class Beside
{
public:
    explicit Beside(ChildSpec spec);
    /// Looks up the program in PATH.
    Beside(const char *program, std::vector<std::string> arguments);
    Beside(const Beside &) = delete;
    Beside &operator=(const Beside &) = delete;
    ~Beside();

    pid_t id() const { return m_child->id(); }
    void send(int signalNumber);

    /// How the program ended; empty while it is running.
    const std::optional<ChildProcess::Ending> &ending() const { return m_ending; }
    bool waitForEnd() const;

    /// Everything the program has written so far.
    const QByteArray &output();

    /// The first complete line of output that satisfies the predicate, for programs that announce
    /// their readiness there.
    QByteArray readyLine(const std::function<bool(const QByteArray &)> &isTheOne = anyLine);

private:
    static bool anyLine(const QByteArray &) { return true; }
    static std::unique_ptr<ChildProcess> start(ChildSpec &spec, UniqueDescriptor &output);

    UniqueDescriptor m_read;
    std::unique_ptr<ChildProcess> m_child;
    std::optional<ChildProcess::Ending> m_ending;
    QByteArray m_output;
};

} // namespace tidewick
