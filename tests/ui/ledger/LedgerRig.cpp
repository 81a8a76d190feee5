// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/ledger/LedgerRig.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <QtTest>

namespace tidewick {

LedgerRig::LedgerRig(QSize size)
    : window(
        [this](const QUrl &url) {
            opened += QString::fromUtf8(url.toEncoded());
            return opens;
        },
        stream.host())
{
    window.setStill(true);
    window.resize(size);
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("The ledger window does not become active");
}

void LedgerRig::close(qint64 txns)
{
    stream.close(firstLedger + m_ledgers, txns, 800'000'000 + m_ledgers * 4);
    ++m_ledgers;
}

void LedgerRig::close(std::initializer_list<qint64> txns)
{
    for (const qint64 count : txns)
        close(count);
}

void LedgerRig::closeMany(int ledgers)
{
    for (int i = 1; i <= ledgers; ++i)
        close(200 + i * 10);
}

void LedgerRig::transact(int count)
{
    for (int i = 0; i < count; ++i)
        stream.transact(nameOf(m_transactions++), QStringLiteral("Payment"), firstLedger);
    flush();
}

void LedgerRig::transact(const QString &hash, const QString &type, const QString &result,
                         const QString &account) const
{
    stream.transact(hash, type, firstLedger, result, account);
    flush();
}

void LedgerRig::fill()
{
    closeMany(60);
    for (const char *result : {"tesSUCCESS", "tecUNFUNDED_OFFER"})
        for (const char *type : {"Payment", "OfferCreate", "PaymentChannelCreate", "NFTokenMint",
                                 "AMMDeposit", "EscrowFinish", "Batch", "TrustSet"})
            stream.transact(QString::fromLatin1(type), QString::fromLatin1(type),
                            firstLedger + m_ledgers - 1, QString::fromLatin1(result));
    flush();
    close(7);
}

QWidget &LedgerRig::named(const char *accessibleName) const
{
    for (QWidget *widget : window.findChildren<QWidget *>())
        if (widget->accessibleName().startsWith(QString::fromUtf8(accessibleName)))
            return *widget;
    qFatal("Nothing is named '%s'", accessibleName);
}

QPoint LedgerRig::bar(qsizetype place) const
{
    return histogram().mapTo(&window, histogram().column(place).center());
}

QPoint LedgerRig::row(int place) const
{
    const QModelIndex index = list().model()->index(place, 0);
    return list().viewport()->mapTo(&window, list().visualRect(index).center());
}

QString LedgerRig::hashAt(const QPoint &point) const
{
    const QModelIndex index = list().indexAt(list().viewport()->mapFrom(&window, point));
    return index.isValid() ? list().row(index).hash : QString();
}

void LedgerRig::pointAt(const QPoint &point)
{
    QTest::mouseMove(window.windowHandle(), point);
}

void LedgerRig::press(const QPoint &point)
{
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, point);
}

void LedgerRig::release(const QPoint &point)
{
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, point);
}

void LedgerRig::click(const QPoint &point)
{
    press(point);
    release(point);
}

void LedgerRig::key(Qt::Key key)
{
    QTest::keyClick(window.windowHandle(), key);
}

QImage LedgerRig::screen() const
{
    QCoreApplication::processEvents();
    return window.screen()->grabWindow(window.winId()).toImage();
}

EventCount::EventCount(QObject *watched, QEvent::Type type) : m_type(type)
{
    (watched ? watched : QCoreApplication::instance())->installEventFilter(this);
}

bool EventCount::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == m_type)
        ++m_count;
    return false;
}

} // namespace tidewick
