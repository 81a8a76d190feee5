// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerTexts.h"

#include "platform/text/NumberText.h"
#include "ui/menu/Explorers.h"

#include <QUrl>

#include <algorithm>

namespace tidewick::LedgerTexts {

namespace {

const QString missing = QStringLiteral("—");

const QString whereFrom = QStringLiteral("Everything here comes from your node's own stream.");

QString whereToGo()
{
    return QStringLiteral("Click a ledger or a transaction to open it on %1.")
        .arg(QUrl(QLatin1String(Explorers::window)).host());
}

/// Returns the integer part of the average. Counts may be arbitrary, so their sum could overflow.
qint64 wholeAverage(const Ledgers &ledgers)
{
    qint64 whole = 0;
    qint64 rest = 0;
    for (const LedgerFeed::Ledger &ledger : ledgers) {
        whole += ledger.txns / ledgers.size();
        rest += ledger.txns % ledgers.size();
    }
    return whole + rest / ledgers.size();
}

} // namespace

const LedgerFeed::Ledger *latest(const Ledgers &ledgers)
{
    return ledgers.isEmpty() ? nullptr : &ledgers.last();
}

const LedgerFeed::Ledger *busiest(const Ledgers &ledgers)
{
    const auto most = std::max_element(ledgers.begin(), ledgers.end(),
                                       [](auto &a, auto &b) { return a.txns < b.txns; });
    return most == ledgers.end() ? nullptr : &*most;
}

double average(const Ledgers &ledgers)
{
    if (ledgers.isEmpty())
        return 0;
    double sum = 0;
    for (const LedgerFeed::Ledger &ledger : ledgers)
        sum += double(ledger.txns);
    return sum / double(ledgers.size());
}

QString latestIndex(const Ledgers &ledgers)
{
    const auto *ledger = latest(ledgers);
    return ledger ? QString::number(ledger->id) : QStringLiteral("waiting…");
}

QString figure(std::optional<qint64> number)
{
    return number ? QString::number(*number) : missing;
}

QString rate(std::optional<double> perSecond)
{
    return perSecond ? NumberText::fixed(*perSecond, 1) : missing;
}

QString status(bool connected)
{
    return connected ? QStringLiteral("Live") : QStringLiteral("Connecting…");
}

QString age(std::chrono::seconds since)
{
    using namespace std::chrono_literals;
    constexpr std::chrono::hours day = 24h;
    const auto said = [](auto count, const char *unit) {
        return QStringLiteral("last ledger %1 %2 ago").arg(count).arg(QLatin1String(unit));
    };
    if (since < 1min)
        return said(since / 1s, "s");
    if (since < 1h)
        return said(since / 1min, "min");
    if (since < 2 * day)
        return said(since / 1h, "h");
    return said(since / day, "days");
}

QString oldFigures()
{
    return QStringLiteral("Not current: no ledger has arrived since the connection was lost");
}

QString busiestIndex(const Ledgers &ledgers)
{
    const auto *ledger = busiest(ledgers);
    return ledger ? QLatin1String("ledger #") + QString::number(ledger->id) : QString();
}

QString longestTileText()
{
    return QLatin1String("ledger #000000000");
}

QString bar(const LedgerFeed::Ledger &ledger)
{
    return QStringLiteral("#%1 · %2 transactions").arg(ledger.id).arg(ledger.txns);
}

QString summary(const Ledgers &ledgers)
{
    if (ledgers.isEmpty())
        return {};
    return QStringLiteral("last %1 ledgers · avg %2")
        .arg(ledgers.size())
        .arg(wholeAverage(ledgers));
}

QString barName(const LedgerFeed::Ledger &ledger)
{
    return QStringLiteral("Ledger %1, %2 transactions").arg(ledger.id).arg(ledger.txns);
}

QString waiting()
{
    return QStringLiteral("Waiting for transactions…");
}

QString moreTypes(qsizetype types)
{
    if (types <= mostTypes)
        return {};
    const qsizetype more = types - mostTypes;
    return QStringLiteral("and %1 more %2")
        .arg(more)
        .arg(more == 1 ? QLatin1String("type") : QLatin1String("types"));
}

QString account(const QString &account)
{
    if (account.size() < 15)
        return account;
    return account.first(6) + u'…' + account.last(4);
}

QString rowName(const LedgerFeed::Tx &tx)
{
    QStringList parts{tx.type};
    if (!tx.account.isEmpty())
        parts += tx.account;
    if (!tx.result.isEmpty())
        parts += tx.result;
    return parts.join(QLatin1String(", "));
}

QString footnote()
{
    return whereToGo() + u' ' + whereFrom;
}

QString footnoteOnTwoLines()
{
    return whereToGo() + u'\n' + whereFrom;
}

} // namespace tidewick::LedgerTexts
