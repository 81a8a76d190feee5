// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace tidewick {

/// One connection to the node's stream, made when it is created; a new one is needed for each
/// attempt. Destroying it ends it without a word, and no signal comes any more.
class StreamSocket : public QObject
{
    Q_OBJECT

public:
    /// Sends a text message, once the connection stands. Whether it arrives is not told.
    virtual void send(const QString &text) = 0;

    /// Tells the other side that nobody listens any more (close code 1001, no reason).
    virtual void goAway() = 0;

signals:
    /// Messages in the order in which they came. Binary ones are passed over.
    void received(const QString &text);

    /// There is no connection, or none any more, whatever the reason. Comes once, and last.
    void failed();
};

} // namespace tidewick
