// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/NodePanel.h"

#include <QImage>
#include <QStringList>

class QAbstractButton;
class QLabel;

namespace tidewick {

/// A status that every row of the menu is shown for.
NodeStatus everyRow();
NodeStatus withDetail(const QString &detail);

/// The same where the node is stopped, is stopping, or has no error to tell of.
NodeStatus stopped();
NodeStatus stopping();
NodeStatus withoutError();

/// The same with advice that takes three lines, for that cause.
NodeStatus withAdvice(Advice::Cause cause = Advice::Cause::NoValidatorList);

/// A path of so many characters, which has no place to be broken at.
QString pathOf(int length);

/// A node panel on the screen, active, and what is chosen in it.
class PanelRig
{
public:
    explicit PanelRig(const NodeStatus &status = everyRow());

    void show(const NodeStatus &status) { panel.setRows(rowsWithAdvice(status)); }

    /// The rows as people see them, from top to bottom, in the way of rowLines().
    QStringList lines() const;

    /// The shown command or text that begins like that; the test fails where there is none.
    QAbstractButton *command(const char *start) const;
    QLabel *text(const char *start) const;

    /// The command in focus, empty where none is.
    QString focused() const;

    void click(const char *name) const;
    void key(Qt::Key key) const;

    /// The mouse's way of closing it, through the window manager.
    void closeByUser();

    NodePanel panel;
    QList<MenuCommand> chosen;
};

/// Rows as lines: "-" for a separator, a command in brackets, "!" before it when disabled.
QStringList rowLines(const QList<MenuRow> &rows);

/// The rectangle that differs from the ground, which is the picture's first point.
QRect drawn(const QImage &picture);

} // namespace tidewick
