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

/// The menu's rows where there is no display, on standard output.
///
/// On a terminal in the foreground the rows stand at one place and change there; a new error text
/// is printed above them. Everywhere else (a file, a pipe, the journal, a terminal that cannot move
/// its cursor or that belongs to another program just now) there is one line each time title,
/// detail, the cause of the advice or the storage line change, and the whole text of a new error
/// below it. The size of the terminal is asked at each show().
///
/// A reader that is slow or gone costs nothing: what it has no room for is dropped, and the latest
/// status is shown again when there is room or at the next show(), whichever is first. An error
/// that was dropped is told then, unless it has gone away. A line has at most 1,000 characters, an
/// error text 500 lines and 64 KiB.
///
/// Main thread only. No widgets. SIGPIPE has to be ignored.
class TerminalFace final : public QObject
{
    Q_OBJECT

public:
    /// The descriptor stays the caller's and has to outlive this object.
    explicit TerminalFace(int descriptor, QObject *parent = nullptr);
    /// Leaves a terminal's cursor on a fresh line below the rows.
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
    /// What has been told, as opposed to what was dropped.
    std::optional<QString> m_toldError;
    QString m_toldOccasion;
    LiveRows m_rows;
};

} // namespace tidewick
