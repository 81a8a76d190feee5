// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/AppDelegate.h"
#include "desktop/SingleInstance.h"
#include "ui/terminal/TerminalFace.h"

#include <QCoreApplication>

#include <optional>

namespace tidewick {

/// The application without a display. Writes the node's rows to standard output until a signal or
/// the desktop entry's "quit" action ends it. The node stops first, then the event loop ends with
/// 0.
class TerminalApp final : public QCoreApplication
{
    Q_OBJECT

public:
    TerminalApp(int &argc, char **argv);
    ~TerminalApp() override;

    /// Runs as the only instance until it is asked to quit. Returns the exit status of the process.
    int run(SingleInstance &instance, const Guards &guards);

private:
    std::optional<AppDelegate> m_appDelegate;
    std::optional<TerminalFace> m_face;
};

} // namespace tidewick
