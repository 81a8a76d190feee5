// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/NodeRig.h"
#include "support/RawServer.h"

#include <QPointer>
#include <QTcpSocket>

#include <optional>

namespace tidewick {

/// A node whose answers a test writes itself: a process that only waits, and a server in this one.
class ScriptedNode
{
public:
    explicit ScriptedNode(NodeRig &rig);

    /// The object "info" that server_info is answered with.
    void setInfo(const QByteArray &info) { m_info = info; }
    /// The result that get_counts is answered with; nothing: a refusal without any.
    void setCounts(const std::optional<QByteArray> &counts) { m_counts = counts; }

    /// Leaves questions open until released; only those for this method, if one is given.
    void hold(const QByteArray &method = {});
    /// Answers the oldest question that is open, as things are now; later ones stay open.
    void releaseOne();
    /// Answers all that are open, and all later ones at once.
    void release();
    /// How many questions are open.
    qsizetype held() const { return m_held.size(); }

    /// The methods asked for so far.
    QByteArrayList methods() const;

private:
    struct Question
    {
        QPointer<QTcpSocket> connection;
        QByteArray method;
    };

    QByteArray reply(const QByteArray &method) const;
    void take(const Question &question);
    void answer(const Question &question) const;

    QByteArray m_info = R"({"server_state":"full"})";
    std::optional<QByteArray> m_counts = "{}";
    /// Which questions are left open: all for the empty name.
    std::optional<QByteArray> m_holding;
    QList<Question> m_held;
    RawServer m_server;
};

} // namespace tidewick
