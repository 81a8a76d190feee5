// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/SpeechLog.h"

#include "support/ScreenReaderService.h"

#include <QCoreApplication>
#include <QMetaEnum>
#include <QtTest>

#include <utility>

namespace tidewick {

namespace {

struct Notes
{
    QStringList spoken;
    QStringList renamed;
};

Notes &notes()
{
    static Notes notes;
    return notes;
}

} // namespace

QString spokenName(const QAccessibleInterface &object)
{
    QStringList parts{
        QLatin1String(QMetaEnum::fromType<QAccessible::Role>().valueToKey(int(object.role())))};
    for (const auto kind : {QAccessible::Name, QAccessible::Value}) {
        if (const QString text = object.text(kind); !text.isEmpty())
            parts += text;
    }
    return parts.join(u' ');
}

ScreenReaderDesktop::ScreenReaderDesktop()
{
    qputenv("QT_QPA_PLATFORM", "xcb");
}

ScreenReaderDesktop::~ScreenReaderDesktop()
{
    m_thread.quit();
    m_thread.wait();
}

void ScreenReaderDesktop::startReader()
{
    m_reader = std::make_unique<ScreenReaderService>(
        m_bus.connection(), QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")));
    m_reader->moveToThread(&m_thread);
    m_thread.start();
    if (!QTest::qWaitFor([] { return QAccessible::isActive(); }))
        qFatal("The windows do not report to the screen reader");
}

SpeechLog::SpeechLog() : m_before(QAccessible::installUpdateHandler(note))
{
    notes() = {};
}

SpeechLog::~SpeechLog()
{
    QAccessible::installUpdateHandler(m_before);
}

QStringList SpeechLog::spoken()
{
    QCoreApplication::processEvents();
    return std::exchange(notes().spoken, {});
}

QStringList SpeechLog::renamed()
{
    QCoreApplication::processEvents();
    return std::exchange(notes().renamed, {});
}

void SpeechLog::note(QAccessibleEvent *event)
{
    const QAccessibleInterface *object = event->accessibleInterface();
    if (!object || !object->isValid())
        return;
    QStringList &spoken = notes().spoken;
    if (event->type() == QAccessible::Focus) {
        const QString focus = QLatin1String("focus ") + spokenName(*object);
        if (spoken.isEmpty() || spoken.constLast() != focus)
            spoken += focus;
    } else if (event->type() == QAccessible::ObjectShow
               && object->role() == QAccessible::Notification) {
        spoken += QLatin1String("notice ") + object->text(QAccessible::Name);
    } else if (event->type() == QAccessible::NameChanged) {
        notes().renamed += object->text(QAccessible::Name);
    }
}

} // namespace tidewick
