// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeStatus.h"
#include "platform/process/LossyOutput.h"
#include "ui/terminal/LiveRows.h"

#include <QList>
#include <QObject>

#include <optional>

namespace tidewick {

/// Shows the menu's rows on standard output when there is no display.
///
/// On a terminal in the foreground, the rows stay in place and change there; a new error text is
/// printed above them. Everywhere else (a file, a pipe, the journal, a terminal that cannot move
/// its cursor or that currently belongs to another program) a line is written each time the title,
/// detail, cause of advice or storage line changes, followed by the whole text of a new error. The
/// size of the terminal is queried at each show().
///
/// A reader that is slow or gone costs nothing. Output that does not fit is dropped, and the latest
/// status is shown again when there is room or at the next show(), whichever comes first. A dropped
/// error is shown then too, unless it has been resolved. A line has at most 1,000 characters, an
/// error text 500 lines and 64 KiB.
///
/// Main thread only. Uses no widgets. SIGPIPE has to be ignored.
class TerminalFace final : public QObject
{
    Q_OBJECT

public:
    /// The file descriptor remains the caller's and has to outlive this object.
    explicit TerminalFace(int descriptor, QObject *parent = nullptr);
    /// Leaves the cursor of a terminal on a fresh line below the rows.
    ~TerminalFace() override;

    void show(const NodeStatus &status);

private:
    bool isLive() const;
    TerminalSize size() const;
    void showRows(const QList<QString> &error);
    void showLine(const QList<QString> &error);
    void showAgain();

    int m_descriptor;
    bool m_movesCursor;
    LossyOutput m_output;

    NodeStatus m_status;
    bool m_missed = false;
    /// The error and occasion that were written, as opposed to dropped.
    std::optional<QString> m_toldError;
    QString m_toldOccasion;
    LiveRows m_rows;
};

} // namespace tidewick
