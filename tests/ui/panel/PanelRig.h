// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/NodePanel.h"

#include <QImage>
#include <QStringList>

class QAbstractButton;
class QLabel;

namespace tidewick {

/// A status for which the menu shows every row except advice.
NodeStatus everyRow();
NodeStatus withDetail(const QString &detail);

/// The same with the node stopped, stopping, or without an error.
NodeStatus stopped();
NodeStatus stopping();
NodeStatus withoutError();

/// The same with three lines of advice for that cause.
NodeStatus withAdvice(Advice::Cause cause = Advice::Cause::NoValidatorList);

/// A path of this many characters, with no opportunity for a line break.
QString pathOf(int length);

/// An active node panel on the screen, and the commands chosen in it.
class PanelRig
{
public:
    explicit PanelRig(const NodeStatus &status = everyRow());

    void show(const NodeStatus &status) { panel.setRows(rowsWithAdvice(status)); }

    /// The visible rows from top to bottom, formatted like rowLines().
    QStringList lines() const;

    /// The visible command or text that begins with `start`. Aborts the test if there is none.
    QAbstractButton *command(const char *start) const;
    QLabel *text(const char *start) const;

    /// The focused command; empty if there is none.
    QString focused() const;

    void click(const char *name) const;
    void key(Qt::Key key) const;

    /// Closes the panel as the window manager does when its close button is clicked.
    void closeByUser();

    NodePanel panel;
    QList<MenuCommand> chosen;
};

/// Rows as lines: "-" for a separator, a command in brackets, "!" before it when disabled.
QStringList rowLines(const QList<MenuRow> &rows);

/// The bounding rectangle of the pixels that differ from the background, which is the first
/// pixel's colour.
QRect drawn(const QImage &picture);

} // namespace tidewick
