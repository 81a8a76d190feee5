// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"

#include "feed/PlainReading.h"
#include "platform/json/JsonRead.h"
#include "support/TestFiles.h"

namespace tidewick {

QStringList recordedTexts(const char *file)
{
    QStringList texts;
    const QByteArray recording =
        contentOf(std::filesystem::path(TIDEWICK_TEST_DATA) / "wire" / file);
    for (const QByteArray &line : recording.split('\n')) {
        const auto frame = JsonRead::parseObject(line);
        if (frame && (*frame)[u"from"] == QLatin1String("node"))
            texts += (*frame)[u"text"].toString();
    }
    return texts;
}

QString json(const char *text)
{
    return QString::fromUtf8(text).replace(u'\'', u'"');
}

QString subscriptionText()
{
    return json("{'id':1,'command':'subscribe','streams':['ledger','transactions']}");
}

QString subscribedText(qint64 index)
{
    return json("{'id':1,'result':{'ledger_index':%1}}").arg(index);
}

QString pastText(qint64 index, qint64 txns, qint64 seconds)
{
    const QString text = json("{'id':1001,'result':{'ledger':{'ledger_index':'%1',"
                              "'close_time':%2,'transactions':[%3]}}}");
    return text.arg(index).arg(seconds).arg(QStringList(txns, json("'A'")).join(u','));
}

LedgerFeed::Time ledgerTime(double seconds)
{
    return LedgerFeed::Time(LedgerFeed::Time::duration(946684800 + seconds));
}

QList<qint64> indexes(const LedgerFeed &feed)
{
    QList<qint64> indexes;
    for (const LedgerFeed::Ledger &ledger : feed.ledgers())
        indexes += ledger.id;
    return indexes;
}

QList<qint64> fromTo(qint64 first, qint64 last)
{
    QList<qint64> list;
    for (qint64 i = first; i <= last; ++i)
        list += i;
    return list;
}

QString said(const QString &text)
{
    return described(StreamReader().read(text));
}

} // namespace tidewick
