// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "RawClient.h"
#include "SimulatedNode.h"
#include "platform/json/JsonRead.h"
#include "platform/process/ProcessMemory.h"
#include "support/Surroundings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QWebSocket>

#include <algorithm>
#include <csignal>

using namespace tidewick;

namespace {

constexpr int patience = 10'000;

/// A client of the node's WebSocket that records the messages it receives.
class Client
{
public:
    explicit Client(const SimulatedNode &node)
    {
        QObject::connect(&m_socket, &QWebSocket::textMessageReceived, &m_socket,
                         [this](const QString &text) { m_texts += text; });
        m_socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/").arg(node.streamPort())));
        if (!QTest::qWaitFor([this] { return isOpen(); }, patience))
            qFatal("Cannot open the WebSocket");
    }

    bool isOpen() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    const QStringList &texts() const { return m_texts; }
    void send(const QString &text) { m_socket.sendTextMessage(text); }

    /// All messages so far, including answers.
    QList<QJsonObject> messages() const
    {
        QList<QJsonObject> messages;
        for (const QString &text : m_texts)
            messages += JsonRead::parseObject(text.toUtf8()).value();
        return messages;
    }

    /// Sends this command and returns the answer to it.
    QJsonObject ask(const char *command, QJsonObject request = {})
    {
        const int id = ++m_lastId;
        request[u"id"] = id;
        request[u"command"] = QString::fromLatin1(command);
        send(QString::fromUtf8(QJsonDocument(request).toJson(QJsonDocument::Compact)));
        if (!QTest::qWaitFor([&] { return !answerTo(id).isEmpty(); }, patience))
            qFatal("No answer to %s", command);
        return answerTo(id);
    }

    QJsonObject subscribe(std::initializer_list<const char *> streams, QJsonObject request = {})
    {
        QJsonArray names;
        for (const char *stream : streams)
            names.append(QString::fromLatin1(stream));
        request[u"streams"] = names;
        return ask("subscribe", request);
    }

    bool waitForLedgers(int count) const
    {
        return QTest::qWaitFor([&] { return countOf("ledgerClosed") >= count; }, patience);
    }

    int countOf(const char *type) const
    {
        int count = 0;
        for (const QJsonObject &message : messages())
            count += message[u"type"] == QLatin1String(type) ? 1 : 0;
        return count;
    }

private:
    /// Empty until there is an answer.
    QJsonObject answerTo(int id) const
    {
        const QList<QJsonObject> all = messages();
        const auto answer = std::find_if(all.begin(), all.end(), [id](const QJsonObject &message) {
            return message[u"id"] == id;
        });
        return answer == all.end() ? QJsonObject() : *answer;
    }

    QWebSocket m_socket;
    QStringList m_texts;
    int m_lastId = 0;
};

QJsonObject newerForm()
{
    return {{QStringLiteral("api_version"), 2}};
}

} // namespace

class TestSimStream : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_node.reset(); }
    void sendsLedgersAndTransactions_data();
    void sendsLedgersAndTransactions();
    void sendsTheSameInBothForms();
    void sendsOnlySubscribedStreams();
    void unsubscribes();
    void waitsForTheFirstValidatedLedger();
    void sendsTheFirstValidatedLedger();
    void answersCommands();
    void refusesOddRequests();
    void closesOnStop();
    void endsOnKill();
    void dropsASlowReader();

private:
    void start(const QByteArray &scenario = "state=full txns=3-9");

    std::unique_ptr<SimulatedNode> m_node;
};

void TestSimStream::init()
{
    m_node = std::make_unique<SimulatedNode>();
}

/// Starts a node that closes a ledger every 0.2 s.
void TestSimStream::start(const QByteArray &scenario)
{
    m_node->start("start-delay=0 speed=20 stop-delay=0.1 " + scenario);
    QVERIFY(m_node->waitUntilOpen());
}

void TestSimStream::sendsLedgersAndTransactions_data()
{
    QTest::addColumn<QJsonObject>("request");
    QTest::newRow("classic") << QJsonObject();
    QTest::newRow("newer") << newerForm();
}

void TestSimStream::sendsLedgersAndTransactions()
{
    QFETCH(QJsonObject, request);
    start();
    Client client(*m_node);
    const QJsonObject subscribed = client.subscribe({"ledger", "transactions"}, request);
    QCOMPARE(subscribed[u"status"].toString(), QStringLiteral("success"));
    const qint64 first = subscribed[u"result"][u"ledger_index"].toInteger();
    QVERIFY(first > 1'000'000);
    QVERIFY(client.waitForLedgers(4));

    const bool newer = !request.isEmpty();
    qint64 index = first;
    qint64 expected = 0;
    for (const QString &text : client.texts().mid(1)) {
        QVERIFY(text.endsWith(u'\n'));
        const QJsonObject message = JsonRead::parseObject(text.toUtf8()).value();
        if (message[u"type"] == QLatin1String("ledgerClosed")) {
            QCOMPARE(expected, 0);
            QCOMPARE(message[u"ledger_index"].toInteger(), ++index);
            expected = message[u"txn_count"].toInteger();
        } else {
            QCOMPARE(message[u"ledger_index"].toInteger(), index);
            QCOMPARE(message.contains(u"tx_json"), newer);
            QCOMPARE(message.contains(u"transaction"), !newer);
            --expected;
        }
    }
}

void TestSimStream::sendsTheSameInBothForms()
{
    start();
    Client classic(*m_node);
    Client newer(*m_node);
    classic.subscribe({"ledger", "transactions"});
    newer.subscribe({"ledger", "transactions"}, newerForm());
    QVERIFY(classic.waitForLedgers(3));
    QVERIFY(newer.waitForLedgers(3));

    // A ledger that both clients received: compares what each was sent with the requested ledger.
    const qint64 index = newer.messages().at(1)[u"ledger_index"].toInteger() + 1;
    const QJsonObject ledger = classic.ask("ledger", {{QStringLiteral("ledger_index"), index},
                                                      {QStringLiteral("transactions"), true}});
    QSet<QString> asked;
    for (const QJsonValue hash : ledger[u"result"][u"ledger"][u"transactions"].toArray())
        asked.insert(hash.toString());
    QVERIFY(asked.size() >= 3);
    QSet<QString> toClassic;
    QSet<QString> toNewer;
    for (const QJsonObject &message : classic.messages()) {
        if (message[u"ledger_index"].toInteger() == index)
            toClassic.insert(message[u"transaction"][u"hash"].toString());
    }
    for (const QJsonObject &message : newer.messages()) {
        if (message[u"ledger_index"].toInteger() == index)
            toNewer.insert(message[u"hash"].toString());
    }
    toClassic.remove({});
    toNewer.remove({});
    QCOMPARE(toClassic, asked);
    QCOMPARE(toNewer, asked);
}

void TestSimStream::sendsOnlySubscribedStreams()
{
    start();
    Client ledgers(*m_node);
    Client transactions(*m_node);
    Client nothing(*m_node);
    ledgers.subscribe({"ledger"});
    const QJsonObject answer = transactions.subscribe({"transactions"});
    QCOMPARE(answer[u"result"].toObject(), QJsonObject());
    nothing.subscribe({});
    QVERIFY(ledgers.waitForLedgers(2));
    QTRY_VERIFY(transactions.countOf("transaction") > 0);
    QCOMPARE(ledgers.countOf("transaction"), 0);
    QCOMPARE(transactions.countOf("ledgerClosed"), 0);
    QCOMPARE(nothing.texts().size(), 1);
}

void TestSimStream::unsubscribes()
{
    start();
    Client client(*m_node);
    client.subscribe({"ledger", "transactions"});
    QVERIFY(client.waitForLedgers(1));
    client.ask("unsubscribe",
               {{QStringLiteral("streams"), QJsonArray{QStringLiteral("transactions")}}});
    const int before = client.countOf("transaction");
    QVERIFY(client.waitForLedgers(client.countOf("ledgerClosed") + 2));
    QCOMPARE(client.countOf("transaction"), before);
}

void TestSimStream::waitsForTheFirstValidatedLedger()
{
    start("state=syncing txns=1-2");
    Client client(*m_node);
    const QJsonObject answer = client.subscribe({"ledger", "transactions"});
    QCOMPARE(answer[u"status"].toString(), QStringLiteral("success"));
    QCOMPARE(answer[u"result"].toObject(), QJsonObject());
    QCOMPARE(client
                 .ask("ledger",
                      {{QStringLiteral("ledger_index"), QStringLiteral("validated")}})[u"error"]
                 .toString(),
             QStringLiteral("lgrNotFound"));
    QCOMPARE(client.countOf("ledgerClosed"), 0);
}

void TestSimStream::sendsTheFirstValidatedLedger()
{
    start("speed=10 txns=1-2");
    Client client(*m_node);
    client.subscribe({"ledger", "transactions"});
    QVERIFY(client.waitForLedgers(1));
}

void TestSimStream::answersCommands()
{
    start();
    Client client(*m_node);
    QCOMPARE(client.ask("ping")[u"status"].toString(), QStringLiteral("success"));
    QCOMPARE(client.ask("server_info")[u"result"][u"info"][u"server_state"].toString(),
             QStringLiteral("full"));
    QVERIFY(!client.texts().last().endsWith(u'\n'));
    QVERIFY(m_node->waitForLog("RPCHandler:NFO ping"));
}

void TestSimStream::refusesOddRequests()
{
    start();
    Client client(*m_node);
    const QJsonObject unknown = client.ask("no_such_command");
    QCOMPARE(unknown[u"error"].toString(), QStringLiteral("unknownCmd"));
    QCOMPARE(unknown[u"request"][u"command"].toString(), QStringLiteral("no_such_command"));
    QCOMPARE(client.subscribe({"ledger", "no_such_stream"})[u"error"].toString(),
             QStringLiteral("malformedStream"));
    // The failed request has not subscribed to anything.
    QCOMPARE(client.subscribe({"ledger"})[u"result"][u"fee_base"].toInt(), 10);

    client.send(QStringLiteral("{not JSON"));
    QTRY_COMPARE(client.countOf("error"), 1);
    QVERIFY(client.isOpen());
}

void TestSimStream::closesOnStop()
{
    start();
    Client client(*m_node);
    client.subscribe({"ledger"});
    m_node->signal(SIGTERM);
    QTRY_VERIFY(!client.isOpen());
    QCOMPARE(m_node->waitForEnd(), (SimulatedNode::Ending{0, false}));
}

void TestSimStream::endsOnKill()
{
    start();
    Client client(*m_node);
    m_node->signal(SIGKILL);
    QTRY_VERIFY(!client.isOpen());
}

void TestSimStream::dropsASlowReader()
{
    start("state=full txns=10000-10000 speed=10 ledger-interval=1");
    RawClient client(m_node->streamPort());
    client.send("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nUpgrade: websocket\r\n"
                "Connection: Upgrade\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n"
                "Sec-WebSocket-Version: 13\r\n\r\n");
    client.read([](const QByteArray &sofar) { return sofar.contains("\r\n\r\n"); });
    // A text frame of less than 126 bytes, with a zero mask.
    const QByteArray request = R"({"command":"subscribe","streams":["transactions"]})";
    client.send("\x81" + QByteArray(1, static_cast<char>(0x80 | request.size()))
                + QByteArray(4, '\0') + request);
    // It takes a while to generate that much data.
    QVERIFY(m_node->waitForLog("reads too slowly", std::chrono::seconds(60)));
    QVERIFY(client.readAway() < 64LL * 1024 * 1024);
    QVERIFY(ProcessMemory::of(m_node->id()).has_value());
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestSimStream)
#include "tst_simstream.moc"
