// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/NodeRig.h"
#include "support/RawServer.h"

#include <QPointer>
#include <QTcpSocket>

#include <optional>

namespace tidewick {

/// A node whose answers come from the test: an idle child process and a server in this process.
class ScriptedNode
{
public:
    explicit ScriptedNode(NodeRig &rig);

    /// Sets the "info" object returned by server_info.
    void setInfo(const QByteArray &info) { m_info = info; }
    /// Sets the result returned by get_counts; without a value the node refuses the request.
    void setCounts(const std::optional<QByteArray> &counts) { m_counts = counts; }

    /// Holds back the answers until they are released; if a method is given, only those to that
    /// method.
    void hold(const QByteArray &method = {});
    /// Answers the oldest pending request with the current data; later ones stay pending.
    void releaseOne();
    /// Answers all pending requests, and all later ones at once.
    void release();
    /// The number of pending requests.
    qsizetype held() const { return m_held.size(); }

    /// The methods requested so far.
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
    /// The method whose answers are held back; an empty name means all methods.
    std::optional<QByteArray> m_holding;
    QList<Question> m_held;
    RawServer m_server;
};

} // namespace tidewick
