// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QtEndian>

#include <limits>

namespace tidewick::sim {

/// The frames of a server as bytes, for sending invalid sequences: QWebSocket sends only valid
/// ones.
struct WebSocketFrames
{
    // First bytes: the final bit and the opcode.
    static constexpr quint8 text = 0x81;
    static constexpr quint8 binary = 0x82;
    static constexpr quint8 close = 0x88;
    static constexpr quint8 ping = 0x89;
    static constexpr quint8 pong = 0x8a;
    /// The first, a middle and the last fragment of a text.
    static constexpr quint8 textBegin = 0x01;
    static constexpr quint8 middle = 0x00;
    static constexpr quint8 end = 0x80;

    /// A frame with this payload, its length in the shortest form.
    static QByteArray frame(quint8 firstByte, const QByteArray &payload)
    {
        constexpr qsizetype longestShort = 125;
        constexpr char twoBytesFollow = 126;
        constexpr char eightBytesFollow = 127;
        QByteArray head(1, static_cast<char>(firstByte));
        if (payload.size() <= longestShort)
            head += static_cast<char>(payload.size());
        else if (payload.size() <= std::numeric_limits<quint16>::max())
            head += twoBytesFollow + bigEndian(static_cast<quint16>(payload.size()));
        else
            head += eightBytesFollow + bigEndian(static_cast<quint64>(payload.size()));
        return head + payload;
    }

    /// The payload of a close frame.
    static QByteArray closing(quint16 code, const QByteArray &reason = {})
    {
        return bigEndian(code) + reason;
    }

private:
    template <typename Number>
    static QByteArray bigEndian(Number number)
    {
        QByteArray bytes(sizeof number, '\0');
        qToBigEndian(number, bytes.data());
        return bytes;
    }
};

} // namespace tidewick::sim
