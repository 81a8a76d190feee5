// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/ScriptedNode.h"

#include "platform/NodePorts.h"

#include <utility>

namespace tidewick {

namespace {

QByteArray methodOf(const QByteArray &request)
{
    for (const char *method : {"server_info", "get_counts", "validator_list_sites", "stop"}) {
        if (request.contains('"' + QByteArray(method) + '"'))
            return method;
    }
    return request;
}

} // namespace

ScriptedNode::ScriptedNode(NodeRig &rig)
    : m_server(
        [this](QTcpSocket *connection) {
            take({connection, methodOf(m_server.requests().constLast())});
        },
        NodePorts::rpc)
{
    rig.setNode(TIDEWICK_CHILD_PATH, {"wait"});
    rig.setPortInUse([](quint16) { return false; });
}

void ScriptedNode::hold(const QByteArray &method)
{
    m_holding = method;
}

void ScriptedNode::releaseOne()
{
    answer(m_held.takeFirst());
}

void ScriptedNode::release()
{
    m_holding.reset();
    for (const Question &question : std::exchange(m_held, {}))
        answer(question);
}

QByteArrayList ScriptedNode::methods() const
{
    QByteArrayList methods;
    for (const QByteArray &request : m_server.requests())
        methods += methodOf(request);
    return methods;
}

QByteArray ScriptedNode::reply(const QByteArray &method) const
{
    if (method == "get_counts") {
        return m_counts ? RawServer::http("{\"result\":" + *m_counts + '}')
                        : RawServer::http("not now", "503 Service Unavailable");
    }
    if (method == "server_info")
        return RawServer::http("{\"result\":{\"info\":" + m_info + "}}");
    return RawServer::http("{\"result\":{}}");
}

void ScriptedNode::take(const Question &question)
{
    if (m_holding && (m_holding->isEmpty() || *m_holding == question.method))
        m_held += question;
    else
        answer(question);
}

void ScriptedNode::answer(const Question &question) const
{
    if (question.connection)
        question.connection->write(reply(question.method));
}

} // namespace tidewick
