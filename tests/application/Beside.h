// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace tidewick {

/// Lets the event loop turn until the condition holds; false when it does not within a time that is
/// ample.
bool waitUntil(const std::function<bool()> &condition);

/// A program that runs beside the test, its standard output and error being read by the test. It is
/// told to end with its object, and with the test. One that is to be waited for is started after
/// the application object.
class Beside
{
public:
    explicit Beside(ChildSpec spec);
    /// One that is looked for where programs are.
    Beside(const char *program, std::vector<std::string> arguments);
    Beside(const Beside &) = delete;
    Beside &operator=(const Beside &) = delete;
    ~Beside();

    pid_t id() const { return m_child->id(); }
    void send(int signalNumber);

    /// How it ended; nothing while it runs.
    const std::optional<ChildProcess::Ending> &ending() const { return m_ending; }
    bool waitForEnd() const;

    /// Everything it has written so far.
    const QByteArray &output();

    /// The first whole line it writes that is the one, for programs that say there that they are
    /// ready.
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
