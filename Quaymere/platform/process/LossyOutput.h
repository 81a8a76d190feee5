// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tidewick {

/// Output to a reader that may be slow or gone. Never blocks and never buffers more than one text.
/// A text is accepted whole or not at all. If the reader has room for only part of a text, the rest
/// is kept and written first, so that no line or control sequence is left incomplete; until then,
/// further texts are refused. After room has run out, ready() signals when another attempt may
/// succeed. A full disk refuses a text; a reader that has gone closes the output for good.
///
/// Pipes and terminals are opened a second time for this, because making the descriptor itself
/// non-blocking would affect the other programs that share it. If that is not allowed, the
/// descriptor itself is used, in pieces for which the system guarantees room.
///
/// SIGPIPE must be ignored. Main thread only.
class LossyOutput final : public QObject
{
    Q_OBJECT

public:
    /// The descriptor remains the caller's and must outlive this object.
    explicit LossyOutput(int descriptor, QObject *parent = nullptr);
    ~LossyOutput() override;

    /// Returns false if the text was dropped as a whole.
    bool write(const QByteArray &text);

    /// Whether the output has closed for good.
    bool isClosed() const { return m_closed; }

signals:
    void ready();

private:
    qsizetype writeSome(const QByteArray &text);
    bool writeRest();
    bool mayWriteNow() const;
    void awaitRoom();
    void retry();

    UniqueDescriptor m_own;
    int m_descriptor;
    QByteArray m_rest;
    quint64 m_written = 0;
    bool m_closed = false;
    std::unique_ptr<QSocketNotifier> m_room;
};

} // namespace tidewick
