// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tidewick {

/// Texts for a reader that may be slow or gone: never waits, never grows. A text is taken whole or
/// not at all. Of one that the reader has room for in part, the rest is kept and goes out first, so
/// that no line and no control sequence stays half; until then further texts are refused. After
/// room was missing, ready() tells when it may be worth another try. A full disk refuses a text; a
/// reader that is gone ends the output for good.
///
/// Pipes and terminals are opened a second time for this, because a descriptor that does not block
/// would not block for the other programs that share it either. Where that is not allowed, the
/// descriptor itself is used, in pieces for which the system has promised room.
///
/// SIGPIPE has to be ignored. Main thread only.
class LossyOutput final : public QObject
{
    Q_OBJECT

public:
    /// The descriptor stays the caller's and has to outlive this object.
    explicit LossyOutput(int descriptor, QObject *parent = nullptr);
    ~LossyOutput() override;

    /// False when the text was dropped, all of it.
    bool write(const QByteArray &text);

    /// Whether nothing can be written any more.
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
