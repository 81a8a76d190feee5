// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/Beside.h"
#include "support/TestBundle.h"

#include <QByteArray>

namespace tidewick {

/// The application as a user launches it: the real program from a bundle of its own, with the
/// simulated node, in the home of the test.
class LaunchedApplication
{
public:
    /// Variables are laid over the test's own; an empty value takes one away.
    explicit LaunchedApplication(const TestBundle &bundle, const QByteArray &scenario,
                                 const ProcessEnvironment &variables = {});

    Beside &process() { return m_process; }
    const QByteArray &output() { return m_process.output(); }

    /// Ends it as a terminal, a session or a user would; false when it does not end with 0.
    bool endsWell(int signalNumber);

    /// Its node's process; nothing while there is none.
    std::optional<pid_t> node() const;

    /// What the node has noted in its own log, and how often it has noted an event.
    static QByteArray debugLog();
    static qsizetype noted(const QByteArray &event) { return debugLog().count(event); }

private:
    Beside m_process;
};

/// Where the application keeps its data in the home of the test.
std::filesystem::path applicationData();

} // namespace tidewick
