// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "support/Surroundings.h"

#include <QJsonArray>
#include <QSet>

#include <vector>

using namespace tidewick;
using namespace tidewick::sim;

class TestSimLedgerMessages : public QObject
{
    Q_OBJECT

private slots:
    void ledgerRequests_data();
    void ledgerRequests();
    void ledgerRequestsOfTheNewerForm();
    void ledgerRequestsBeforeAnyIsValidated();
    void ledgerWithoutTransactions();
    void ledgerAgreesWithItsAnnouncement();
    void subscription();
    void closedLedger();
    void transactions_data();
    void transactions();
    void formsAgree();
};

void TestSimLedgerMessages::ledgerRequests_data()
{
    QTest::addColumn<QJsonObject>("request");
    QTest::addColumn<QJsonObject>("answer");
    const std::vector<QJsonObject> requests = session("stream.jsonl", "client");
    const std::vector<QJsonObject> messages = session("stream.jsonl", "node");
    for (const QJsonObject &request : requests) {
        // The first ledger of a private network has no date.
        if (request[u"command"] != QLatin1String("ledger") || request[u"ledger_index"] == 1)
            continue;
        for (const QJsonObject &answer : messages) {
            if (answer[u"id"] == request[u"id"])
                QTest::addRow("%d", request[u"id"].toInt()) << request << answer;
        }
    }
}

void TestSimLedgerMessages::ledgerRequests()
{
    QFETCH(QJsonObject, request);
    QFETCH(QJsonObject, answer);
    // In the recorded session, ledgers 2 to 12 were validated.
    const Answers answers = answersOf();
    const NodeTime time = timeAt(answers, Seconds(100));
    const qint64 asked = request[u"ledger_index"].toInteger();
    if (asked >= 2 && asked <= 13)
        request[u"ledger_index"] = asked - 12 + time.newestLedger;

    const Reply reply = answers.answer(QStringLiteral("ledger"), request, time);
    const QJsonObject served = webSocketEnvelope(reply, request);
    // Some of the recorded ledgers were empty.
    const QString element = QStringLiteral(".result.ledger.transactions[] text");
    QStringList expected = shapeOf(answer);
    expected.removeAll(element);
    QStringList actual = shapeOf(served);
    actual.removeAll(element);
    QCOMPARE(actual, expected);
    for (const QStringView member : {u"error", u"error_code", u"error_message", u"id", u"status"})
        QCOMPARE(served.value(member), answer.value(member));
}

void TestSimLedgerMessages::ledgerRequestsOfTheNewerForm()
{
    const Answers answers = answersOf();
    const NodeTime time = timeAt(answers, Seconds(100));
    const auto ask = [&](const char *index) {
        const QJsonObject request{{QStringLiteral("api_version"), 2},
                                  {QStringLiteral("ledger_index"), QString::fromLatin1(index)}};
        return webSocketEnvelope(answers.answer(QStringLiteral("ledger"), request, time), request);
    };
    QCOMPARE(ask("validated")[u"result"][u"ledger"][u"ledger_index"],
             QJsonValue(qint64{time.newestLedger}));
    QCOMPARE(ask("current")[u"result"][u"ledger"][u"ledger_index"],
             QJsonValue(qint64{time.newestLedger} + 1));
}

void TestSimLedgerMessages::ledgerRequestsBeforeAnyIsValidated()
{
    const Answers answers = answersOf();
    const Reply reply = answers.answer(QStringLiteral("ledger"), {}, timeAt(answers, Seconds(10)));
    QCOMPARE(QLatin1String(std::get<RpcError>(reply).name), QLatin1String("lgrNotFound"));
}

void TestSimLedgerMessages::ledgerWithoutTransactions()
{
    const Answers answers = answersOf();
    const NodeTime time = timeAt(answers, Seconds(100));
    for (const char *index : {"validated", "current"}) {
        const QJsonObject request{{QStringLiteral("ledger_index"), QString::fromLatin1(index)}};
        const Reply reply = answers.answer(QStringLiteral("ledger"), request, time);
        const QJsonObject ledger = std::get<QJsonObject>(reply)[u"ledger"].toObject();
        QVERIFY(!ledger.isEmpty());
        QVERIFY(!ledger.contains(u"transactions"));
    }
}

void TestSimLedgerMessages::ledgerAgreesWithItsAnnouncement()
{
    const Answers answers = answersOf();
    const NodeTime time = timeAt(answers, Seconds(100));
    const Ledger ledger = answers.ledgers().ledger(time.newestLedger - 3);
    const QJsonObject announced = answers.ledgers().closed(ledger, {1, time.newestLedger});
    const QJsonObject request{{QStringLiteral("ledger_index"), qint64{ledger.index}},
                              {QStringLiteral("transactions"), true}};
    const QJsonObject result =
        std::get<QJsonObject>(answers.answer(QStringLiteral("ledger"), request, time));
    const QJsonObject told = result[u"ledger"].toObject();

    QCOMPARE(result[u"ledger_index"], announced[u"ledger_index"]);
    QCOMPARE(told[u"ledger_hash"], announced[u"ledger_hash"]);
    QCOMPARE(told[u"close_time"], announced[u"ledger_time"]);
    QSet<QString> hashes;
    for (const LedgerTransaction &transaction : ledger.transactions)
        hashes.insert(transaction.hash);
    QCOMPARE(announced[u"txn_count"].toInteger(), qint64{hashes.size()});
    for (const QJsonValue hash : told[u"transactions"].toArray())
        QVERIFY(hashes.remove(hash.toString()));
    QVERIFY(hashes.isEmpty());
}

void TestSimLedgerMessages::subscription()
{
    const Answers answers = answersOf();
    const NodeTime time = timeAt(answers, Seconds(100));
    const QJsonObject request{{QStringLiteral("id"), 1}};
    const Reply reply = answers.ledgers().subscribed(answers.validated(time).value());
    QCOMPARE(shapeOf(webSocketEnvelope(reply, request)),
             shapeOf(session("stream.jsonl", "node").front()));
}

void TestSimLedgerMessages::closedLedger()
{
    const Answers answers = answersOf();
    const Ledger ledger = answers.ledgers().ledger(99'000'000);
    const QJsonObject served = answers.ledgers().closed(ledger, {98'999'000, 99'000'000});
    for (const char *file : {"stream.jsonl", "stream-tx_json.jsonl"}) {
        for (const QJsonObject &message : session(file, "node")) {
            if (message[u"type"] == QLatin1String("ledgerClosed"))
                QCOMPARE(shapeOf(served), shapeOf(message));
        }
    }
    QCOMPARE(served[u"validated_ledgers"].toString(), QStringLiteral("98999000-99000000"));
}

void TestSimLedgerMessages::transactions_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("newer");
    QTest::newRow("classic") << QStringLiteral("stream.jsonl") << false;
    QTest::newRow("newer") << QStringLiteral("stream-tx_json.jsonl") << true;
}

void TestSimLedgerMessages::transactions()
{
    QFETCH(QString, file);
    QFETCH(bool, newer);
    QSet<QStringList> shapes;
    for (const QJsonObject &message : session(qPrintable(file), "node")) {
        if (message[u"type"] == QLatin1String("transaction"))
            shapes.insert(shapeOf(message));
    }

    const Answers answers = answersOf();
    QSet<QStringList> served;
    for (quint32 index = 99'000'000; index < 99'000'010; ++index) {
        const Ledger ledger = answers.ledgers().ledger(index);
        for (std::size_t i = 0; i < ledger.transactions.size(); ++i) {
            const QJsonObject message =
                answers.ledgers().transaction(ledger, i, newer ? ApiForm::Newer : ApiForm::Classic);
            served.insert(shapeOf(message));
            QCOMPARE(message[u"ledger_hash"].toString(), ledger.hash);
            QCOMPARE(message[u"ledger_index"].toInteger(), qint64{index});
            QCOMPARE(message[u"meta"][u"TransactionIndex"].toInteger(), static_cast<qint64>(i));
        }
    }
    QVERIFY(served.size() > 10);
    QVERIFY(shapes.contains(served));
}

void TestSimLedgerMessages::formsAgree()
{
    const Answers answers = answersOf();
    const Ledger ledger = answers.ledgers().ledger(99'000'000);
    for (std::size_t i = 0; i < ledger.transactions.size(); ++i) {
        const QJsonObject classic = answers.ledgers().transaction(ledger, i, ApiForm::Classic);
        const QJsonObject newer = answers.ledgers().transaction(ledger, i, ApiForm::Newer);
        QCOMPARE(newer[u"hash"], classic[u"transaction"][u"hash"]);
        QCOMPARE(newer[u"hash"].toString(), ledger.transactions[i].hash);
        for (const QStringView member : {u"TransactionType", u"Account", u"Sequence", u"date"})
            QCOMPARE(newer[u"tx_json"][member], classic[u"transaction"][member]);
        for (const QStringView member : {u"engine_result", u"close_time_iso", u"meta"})
            QCOMPARE(newer[member], classic[member]);
    }
}

TIDEWICK_TEST_MAIN(TestSimLedgerMessages)
#include "tst_simledgermessages.moc"
