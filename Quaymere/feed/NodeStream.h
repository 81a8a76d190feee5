// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/StreamSocket.h"

#include <QStringList>
#include <QTimer>
#include <QWebSocket>

#include <chrono>

namespace tidewick {

/// The real connection, to the node's WebSocket port on 127.0.0.1 and through no proxy. A message
/// over 16 MiB ends it, and so does a node that accepts and does not shake hands within a minute.
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
    /// What was sent before the connection stood.
    QStringList m_waiting;
    QTimer m_opener;
    QTimer m_handshakeTimer;
    bool m_over = false;
};

} // namespace tidewick
