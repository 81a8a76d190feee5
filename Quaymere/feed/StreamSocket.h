// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace tidewick {

/// One connection to the node's stream, started when the object is created; each attempt needs a
/// new object. Destroying it ends the connection silently: no more signals are emitted.
class StreamSocket : public QObject
{
    Q_OBJECT

public:
    /// Sends a text message as soon as the connection is established. Does not report whether it
    /// arrives.
    virtual void send(const QString &text) = 0;

    /// Closes the connection, with the close code for "going away" (1001) and no reason.
    virtual void goAway() = 0;

signals:
    /// Emitted for each text message, in the order of arrival. Binary messages are ignored.
    void received(const QString &text);

    /// The connection could not be established or has ended, whatever the reason. Emitted once, as
    /// the last signal.
    void failed();
};

} // namespace tidewick
