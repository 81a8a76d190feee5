// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/NodeStream.h"

#include <QStringList>

#include <memory>

namespace tidewick {

/// A stream under test and the signals it has emitted.
class StreamClient
{
public:
    explicit StreamClient(
        std::chrono::milliseconds handshakeLimit = NodeStream::usualHandshakeLimit)
        : m_stream(std::make_unique<NodeStream>(handshakeLimit))
    {
        QObject::connect(m_stream.get(), &StreamSocket::received, m_stream.get(),
                         [this](const QString &text) { m_texts += text; });
        QObject::connect(m_stream.get(), &StreamSocket::failed, m_stream.get(),
                         [this] { ++m_failures; });
    }

    NodeStream &stream() { return *m_stream; }
    void destroy() { m_stream.reset(); }

    const QStringList &texts() const { return m_texts; }
    int failures() const { return m_failures; }

private:
    std::unique_ptr<NodeStream> m_stream;
    QStringList m_texts;
    int m_failures = 0;
};

} // namespace tidewick
