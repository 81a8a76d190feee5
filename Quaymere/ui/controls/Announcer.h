// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

namespace tidewick {

/// Tells screen readers about a change that the user should know of at once, wherever the focus is.
/// They see a notification that appears and disappears; on the screen there is nothing.
class Announcer final : public QWidget
{
    Q_OBJECT

public:
    explicit Announcer(QWidget *parent);

    /// Has a text said once, if the window is the active one. A later text replaces one that has
    /// not been passed on yet.
    void say(const QString &text);
};

} // namespace tidewick
