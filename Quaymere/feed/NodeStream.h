// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/StreamSocket.h"

#include <QStringList>
#include <QTimer>
#include <QWebSocket>

#include <chrono>

namespace tidewick {

/// The real connection, to the node's WebSocket port on 127.0.0.1, without a proxy. It ends if a
/// message exceeds 16 MiB, if the node does not read and 1 MiB is waiting to be sent, or if the
/// node accepts the connection but does not complete the handshake within a minute.
class NodeStream final : public StreamSocket
{
    Q_OBJECT

public:
    static constexpr std::chrono::seconds usualHandshakeLimit{60};

    explicit NodeStream(std::chrono::milliseconds handshakeLimit = usualHandshakeLimit);
    ~NodeStream() override;

    void send(const QString &text) override;
    void goAway() override;

private:
    void open();
    void shakenHands();
    void checkBacklog();
    void take(const QString &text);
    void finish();
    void fail();

    QWebSocket m_socket;
    /// Messages sent before the connection was established.
    QStringList m_waiting;
    QTimer m_opener;
    QTimer m_handshakeTimer;
    bool m_over = false;
};

} // namespace tidewick
