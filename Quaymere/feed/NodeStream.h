// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/StreamSocket.h"

#include <QStringList>
#include <QTimer>
#include <QWebSocket>

namespace tidewick {

/// The real connection, to the node's WebSocket port on 127.0.0.1 and through no proxy. A message
/// over 16 MiB ends it, and so does a node that accepts and does not shake hands within a minute.
class NodeStream final : public StreamSocket
{
    Q_OBJECT

public:
    NodeStream();
    ~NodeStream() override;

    void send(const QString &text) override;
    void goAway() override;

private:
    void open();
    void shakenHands();
    void fail();

    QWebSocket m_socket;
    /// What was sent before the connection stood.
    QStringList m_waiting;
    QTimer m_handshakeLimit;
};

} // namespace tidewick
