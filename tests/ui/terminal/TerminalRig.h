// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/PseudoTerminal.h"
#include "ui/SampleStatus.h"
#include "ui/terminal/TerminalFace.h"

#include <memory>

namespace tidewick {

inline const QList<QString> prompt{QStringLiteral("$ tidewick")};

/// A terminal in which a shell has started the program.
struct Started
{
    explicit Started(int columns = 80, int rows = 24) : terminal(columns, rows)
    {
        terminal.write("$ tidewick\r\n");
        face = std::make_unique<TerminalFace>(terminal.descriptor());
    }

    QList<QString> shown(const NodeStatus &status)
    {
        face->show(status);
        return terminal.screen().everything();
    }

    PseudoTerminal terminal;
    std::unique_ptr<TerminalFace> face;
};

/// The rows for sampleStatus() if there is room for all of them.
inline QList<QString> sampleRows()
{
    return {QStringLiteral("Full"),
            QStringLiteral("Following mainnet"),
            QString(),
            QStringLiteral("Validated ledger: #98765432 (3s ago)"),
            QStringLiteral("Peers: 21"),
            QStringLiteral("Uptime: 27h 3m"),
            QStringLiteral("Memory: 1.24 GB · peak 2.31 GB"),
            QStringLiteral("Store: 14.21 GB · 212.4 GB free"),
            QStringLiteral("Storage: next trim after 2.0 GB"),
            QString(),
            QStringLiteral("Ctrl-C quits")};
}

} // namespace tidewick
