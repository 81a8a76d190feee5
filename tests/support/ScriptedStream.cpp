// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/ScriptedStream.h"

#include "feed/StreamSocket.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>

namespace tidewick {

namespace {

QString textOf(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + u'\n';
}

} // namespace

struct ScriptedStream::State
{
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    QPointer<StreamSocket> socket;
    int connections = 0;
    QStringList sent;
    bool wentAway = false;
};

class ScriptedStream::Socket final : public StreamSocket
{
public:
    explicit Socket(std::shared_ptr<State> state) : m_state(std::move(state))
    {
        m_state->socket = this;
        ++m_state->connections;
        m_state->sent.clear();
        m_state->wentAway = false;
    }

    void send(const QString &text) override { m_state->sent += text; }
    void goAway() override { m_state->wentAway = true; }

private:
    std::shared_ptr<State> m_state;
};

ScriptedStream::ScriptedStream() : m_state(std::make_shared<State>()) {}

LedgerFeedHost ScriptedStream::host() const
{
    LedgerFeedHost host;
    host.clock = m_state->clock;
    host.connect = [state = m_state] { return std::make_unique<Socket>(state); };
    return host;
}

FakeClock &ScriptedStream::clock() const
{
    return *m_state->clock;
}

int ScriptedStream::connections() const
{
    return m_state->connections;
}

bool ScriptedStream::isOpen() const
{
    return !m_state->socket.isNull();
}

QStringList ScriptedStream::sent() const
{
    return m_state->sent;
}

bool ScriptedStream::wentAway() const
{
    return m_state->wentAway;
}

void ScriptedStream::say(const QString &text) const
{
    if (m_state->socket)
        emit m_state->socket->received(text);
}

void ScriptedStream::close(qint64 index, qint64 txns, qint64 seconds) const
{
    say(textOf({{QStringLiteral("type"), QStringLiteral("ledgerClosed")},
                {QStringLiteral("ledger_index"), index},
                {QStringLiteral("txn_count"), txns},
                {QStringLiteral("ledger_time"), seconds}}));
}

void ScriptedStream::transact(const QString &hash, const QString &type, qint64 ledger,
                              const QString &result, const QString &account) const
{
    say(textOf({{QStringLiteral("type"), QStringLiteral("transaction")},
                {QStringLiteral("hash"), hash},
                {QStringLiteral("ledger_index"), ledger},
                {QStringLiteral("engine_result"), result},
                {QStringLiteral("tx_json"), QJsonObject{{QStringLiteral("TransactionType"), type},
                                                        {QStringLiteral("Account"), account}}}}));
}

void ScriptedStream::fail() const
{
    if (m_state->socket)
        emit m_state->socket->failed();
}

} // namespace tidewick
