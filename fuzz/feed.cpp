// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Checks.h"
#include "feed/PlainReading.h"
#include "support/ScriptedStream.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>

using namespace tidewick;
using namespace std::chrono_literals;
using Fuzzing::require;

namespace {

/// In bytes of UTF-8.
constexpr qsizetype longestText = 128;
/// The types counted separately, and the rest.
constexpr qsizetype mostTypes = qsizetype(TypesByLedger::mostTypes) + 1;
/// The subscription, and a request for each earlier ledger.
constexpr qsizetype mostSent = LedgerFeed::mostLedgers;

/// Creates the application object, which only deferred deletion needs.
void needApplication()
{
    static int argc = 1;
    static std::array<char, 5> name{"fuzz"};
    static std::array<char *, 2> argv{name.data(), nullptr};
    static const QCoreApplication application(argc, argv.data());
}

void deleteDeferred()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // Sending events of one type leaves gaps in the queue, which only processing all of it closes.
    QCoreApplication::sendPostedEvents();
}

void requireShort(const QString &text)
{
    require(text.toUtf8().size() <= longestText, "texts are short");
    Fuzzing::requireShowable(text);
}

/// The feed under test, checked after each event.
class FeedRun
{
public:
    FeedRun()
    {
        QObject::connect(&m_feed, &LedgerFeed::txsChanged, &m_feed, [this](qsizetype arrived) {
            require(arrived >= 1 && arrived <= m_feed.txs().size(), "arrivals are listed");
        });
        QObject::connect(&m_feed, &LedgerFeed::typesChanged, &m_feed, [this] {
            require(m_feed.types() != m_types, "a change is signalled only if there is one");
            m_types = m_feed.types();
        });
        m_feed.start();
    }

    void take(const QByteArray &line)
    {
        if (line.isEmpty())
            m_stream.clock().advance(400ms);
        else if (line == "fail")
            m_stream.fail();
        else if (line == "wait")
            m_stream.clock().advance(3s);
        else if (line == "stop")
            m_feed.stop();
        else if (line == "start")
            m_feed.start();
        else
            say(QString::fromUtf8(line));
        if (line == "fail" || line == "stop")
            deleteDeferred();
        requireSound();
    }

    /// Waits until everything pending is listed, and returns all that is listed, as text.
    QString finish()
    {
        m_stream.clock().advance(400ms);
        requireSound();
        QString all;
        for (const LedgerFeed::Ledger &ledger : m_feed.ledgers())
            all += described(LedgerClosedMessage{ledger}) + u'\n';
        for (const LedgerFeed::Tx &tx : m_feed.txs())
            all += described(TransactionMessage{tx}) + u'\n';
        for (const LedgerFeed::TypeCount &type : m_feed.types())
            all += type.type + QString::number(type.count) + u'\n';
        return all;
    }

    void requireShortTexts() const
    {
        for (const LedgerFeed::Tx &tx : m_feed.txs()) {
            for (const QString &text : {tx.id, tx.type, tx.account, tx.result})
                requireShort(text);
        }
        for (const LedgerFeed::TypeCount &type : m_feed.types())
            requireShort(type.type);
    }

private:
    void say(const QString &text)
    {
        requireReadAlike(text);
        m_stream.say(text);
    }

    /// Requires that both parsers agree. The fast one accepts numbers too small to distinguish from
    /// zero, which Qt's rejects.
    void requireReadAlike(const QString &text)
    {
        static const QRegularExpression tinyNumber(QStringLiteral("[eE]-[0-9]{3}|\\.0{300}"));
        const QString says = described(m_reader.read(text));
        const PlainReading plain = PlainReading::of(text);
        require(says == plain.says || (!plain.accepted && text.contains(tinyNumber)),
                "both parsers agree");
    }

    void requireSound() const
    {
        require(m_feed.ledgers().size() <= LedgerFeed::mostLedgers, "ledgers are bounded");
        require(m_feed.txs().size() <= LedgerFeed::mostTxs, "transactions are bounded");
        require(m_feed.types().size() <= mostTypes, "types are bounded");
        require(m_stream.sent().size() <= mostSent, "requests are bounded");
        require(m_stream.clock().alarms() <= 2, "alarms are bounded");
        const auto &ledgers = m_feed.ledgers();
        require(std::all_of(ledgers.cbegin(), ledgers.cend(),
                            [](const LedgerFeed::Ledger &ledger) { return ledger.txns >= 0; }),
                "the number of transactions is not negative");
        const auto &types = m_feed.types();
        require(std::is_sorted(types.cbegin(), types.cend(),
                               [](const auto &a, const auto &b) { return a.count > b.count; }),
                "the most frequent type comes first");
        require(types.isEmpty() || types.last().count > 0, "listed types have a count");
        const auto rate = m_feed.txRate();
        require(!rate || (*rate >= 0 && std::isfinite(*rate)), "a rate is a finite number");
    }

    ScriptedStream m_stream;
    StreamReader m_reader;
    LedgerFeed m_feed{m_stream.host()};
    QList<LedgerFeed::TypeCount> m_types;
};

} // namespace

/// Fuzzes messages of the stream, one per line. An empty line lets time pass, and the lines "fail",
/// "wait", "stop" and "start" are events around the stream.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    needApplication();
    const QByteArrayList lines = Fuzzing::bytesOf(data, size).split('\n');
    FeedRun first;
    FeedRun second;
    for (const QByteArray &line : lines) {
        first.take(line);
        second.take(line);
    }
    require(first.finish() == second.finish(), "the same each time");
    first.requireShortTexts();
    return 0;
}
