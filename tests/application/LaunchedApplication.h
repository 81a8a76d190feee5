// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Beside.h"
#include "support/TestBundle.h"

#include <QByteArray>

namespace tidewick {

/// The application as a user launches it: the real program from a test bundle, with the simulated
/// node, in the test's home.
class LaunchedApplication
{
public:
    /// The variables override those of the test; an empty value removes one.
    explicit LaunchedApplication(const TestBundle &bundle, const QByteArray &scenario,
                                 const ProcessEnvironment &variables = {});

    /// The launched process, which supervises the application.
    Beside &process() { return m_process; }
    const QByteArray &output() { return m_process.output(); }

    /// Ends it with a signal, as a terminal, a session or a user would. Returns false if it does
    /// not exit with status 0.
    bool endsWell(int signalNumber);

    /// The process of the application itself; 0 if there is none.
    pid_t application() const;
    /// Sends a signal to that process alone.
    void signalApplication(int signalNumber) const;
    /// Kills the application and the launched process.
    void killBoth();

    /// The process of its node, if there is one.
    std::optional<pid_t> node() const;

    /// The node's debug log, and how often an event appears in it.
    static QByteArray debugLog();
    static qsizetype noted(const QByteArray &event) { return debugLog().count(event); }

private:
    Beside m_process;
};

/// The application's data folder in the test's home.
std::filesystem::path applicationData();

} // namespace tidewick
