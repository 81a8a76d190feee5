// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "bench/LedgerTraffic.h"

#include "support/TestFiles.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace tidewick::bench {

namespace {

using namespace std::chrono_literals;

constexpr auto flushInterval = 400ms;
constexpr int flushesPerLedger = 10;
constexpr int transactionsPerFlush = 80;
constexpr qint64 transactionsPerLedger = 800;

} // namespace

LedgerTraffic::LedgerTraffic()
{
    for (const char *name : {"stream.jsonl", "stream-tx_json.jsonl"}) {
        const QByteArray file =
            contentOf(std::filesystem::path(TIDEWICK_TEST_DATA) / "wire" / name);
        for (const QByteArray &line : file.split('\n')) {
            const QString text = QJsonDocument::fromJson(line)[u"text"].toString();
            if (text.contains(QLatin1String(R"("type":"transaction")")))
                m_recorded += text;
        }
    }
}

void LedgerTraffic::run(std::chrono::seconds time)
{
    const auto end = m_stream.clock().continuousNow() + time;
    for (int flush = 0; m_stream.clock().continuousNow() < end; ++flush) {
        if (flush % flushesPerLedger == 0)
            close();
        transact(transactionsPerFlush);
        m_stream.clock().advance(flushInterval);
        QCoreApplication::processEvents();
    }
}

void LedgerTraffic::close()
{
    ++m_ledger;
    m_stream.close(m_ledger, transactionsPerLedger, m_ledger * 4);
}

void LedgerTraffic::transact(int count)
{
    static const QRegularExpression index(QStringLiteral(R"("ledger_index":\d+)"));
    for (int i = 0; i < count; ++i) {
        QString text = m_recorded.at(m_next++ % m_recorded.size());
        // The first match is the message's own index; those of the affected ledger entries follow.
        const auto found = index.match(text);
        text.replace(found.capturedStart(), found.capturedLength(),
                     QStringLiteral(R"("ledger_index":%1)").arg(m_ledger));
        m_stream.say(text);
    }
}

} // namespace tidewick::bench
