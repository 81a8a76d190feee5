// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "PrivateBus.h"
#include "desktop/Notifier.h"
#include "support/NotificationService.h"
#include "support/Surroundings.h"

#include <QDBusArgument>
#include <QSignalSpy>

#include <memory>

using namespace tidewick;
using namespace std::chrono_literals;

class TestNotifier : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void sendsAllArguments();
    void bodies_data();
    void bodies();
    void laterReplacesEarlier();
    void laterReplacesPending();
    void actions();
    void noActionsWithoutSupport();
    void noService();
    void serviceReturnsErrors();
    void serviceNeverAnswers();
    void newServiceIsAskedAgain();
    void serviceLeavesTheBus();
    void busDies();
    void notifierIsDestroyed();
    void noBus();

private:
    using Mood = NotificationService::Mood;

    void startService() { m_service = std::make_unique<NotificationService>(m_bus->connect()); }
    QVariant body(int call) const { return m_service->calls.at(call).at(4); }
    QVariant replaced(int call) const { return m_service->calls.at(call).at(1); }

    /// Whether no call is waiting for a reply.
    static bool isDone(const Notifier &notifier) { return notifier.children().isEmpty(); }

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<NotificationService> m_service;
};

void TestNotifier::init()
{
    m_bus = std::make_unique<PrivateBus>();
    startService();
}

void TestNotifier::cleanup()
{
    m_service.reset();
    m_bus.reset();
}

void TestNotifier::sendsAllArguments()
{
    Notifier notifier(m_bus->connect());
    notifier.notify(QStringLiteral("Node stopped"), QStringLiteral("Exited with status 1"));
    QCOMPARE(m_service->calls.size(), 0);
    QTRY_COMPARE(m_service->calls.size(), 1);
    QVariantList arguments = m_service->calls[0];
    QCOMPARE(arguments.size(), 8);
    QCOMPARE(
        qdbus_cast<QVariantMap>(arguments.takeAt(6)),
        (QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("org.tidewick.Tidewick")}}));
    QCOMPARE(arguments,
             (QVariantList{QStringLiteral("Tidewick"), 0U, QStringLiteral("org.tidewick.Tidewick"),
                           QStringLiteral("Node stopped"), QStringLiteral("Exited with status 1"),
                           QStringList(), -1}));
}

void TestNotifier::bodies_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("markup");
    const auto row = [](const char *name, const QString &text, const QString &plain,
                        const QString &markup) { QTest::newRow(name) << text << plain << markup; };
    row("empty", {}, {}, {});
    row("markup", QStringLiteral("<b>\"R&D\" &lt;</b>"), QStringLiteral("<b>\"R&D\" &lt;</b>"),
        QStringLiteral("&lt;b&gt;\"R&amp;D\" &amp;lt;&lt;/b&gt;"));
    row("lines and codes", QStringLiteral("a\nb\x1b[31m\u202e"), QStringLiteral("a b [31m"),
        QStringLiteral("a b [31m"));
    row("NUL and lone surrogate", QStringLiteral("a") + QChar(u'\0') + QChar(0xd800) + u'b',
        QStringLiteral("a ?b"), QStringLiteral("a ?b"));
    row("emoji", QStringLiteral("👩‍🚀"), QStringLiteral("👩‍🚀"),
        QStringLiteral("👩‍🚀"));
    row("huge", QString(1 << 20, u'<'), QString(499, u'<') + u'…',
        QStringLiteral("&lt;").repeated(499) + u'…');
}

void TestNotifier::bodies()
{
    QFETCH(QString, text);
    for (const bool markup : {false, true}) {
        if (markup)
            m_service->capabilities.append(QStringLiteral("body-markup"));
        m_service->calls.clear();
        Notifier notifier(m_bus->connect());
        notifier.notify(text, text);
        QTRY_COMPARE(m_service->calls.size(), 1);
        QTEST(m_service->calls[0][3].toString(), "plain");
        QTEST(body(0).toString(), markup ? "markup" : "plain");
    }
}

void TestNotifier::laterReplacesEarlier()
{
    Notifier notifier(m_bus->connect());
    for (int call = 0; call < 3; ++call) {
        notifier.notify({}, QString::number(call));
        QTRY_COMPARE(m_service->calls.size(), call + 1);
    }
    QCOMPARE(replaced(0), 0U);
    QCOMPARE(replaced(1), 41U);
    QCOMPARE(replaced(2), 42U);
    QCOMPARE(m_service->asked, 1);
}

void TestNotifier::laterReplacesPending()
{
    Notifier notifier(m_bus->connect());
    for (int i = 0; i < 1000; ++i)
        notifier.notify({}, QString::number(i));
    QTRY_COMPARE(m_service->calls.size(), 1);
    QCOMPARE(body(0), QStringLiteral("999"));
    notifier.notify({}, QStringLiteral("last"));
    QTRY_COMPARE(m_service->calls.size(), 2);
}

void TestNotifier::actions()
{
    m_service->capabilities.append(QStringLiteral("actions"));
    Notifier notifier(m_bus->connect());
    QSignalSpy chosen(&notifier, &Notifier::actionChosen);
    notifier.notify({}, QStringLiteral("one"), QStringLiteral("Help…"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    const QStringList actions = m_service->calls[0].at(5).toStringList();
    QCOMPARE(actions.size(), 2);
    QCOMPARE(actions[1], QStringLiteral("Help…"));
    QTRY_VERIFY(isDone(notifier));

    // Ignores other programs' notifications and other actions.
    m_service->choose(40, actions[0]);
    m_service->choose(41, QStringLiteral("default"));
    m_service->choose(41, actions[0]);
    QTRY_COMPARE(chosen.size(), 1);
    m_service->choose(41, actions[0]);
    QTRY_COMPARE(chosen.size(), 2);

    notifier.notify({}, QStringLiteral("two"));
    QTRY_COMPARE(m_service->calls.size(), 2);
    QCOMPARE(m_service->calls[1].at(5).toStringList(), QStringList());
}

void TestNotifier::noActionsWithoutSupport()
{
    Notifier notifier(m_bus->connect());
    notifier.notify({}, QStringLiteral("one"), QStringLiteral("Help…"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    QCOMPARE(m_service->calls[0].at(5).toStringList(), QStringList());
}

void TestNotifier::noService()
{
    m_service.reset();
    Notifier notifier(m_bus->connect());
    notifier.notify({}, QStringLiteral("unseen"));
    QTRY_VERIFY(isDone(notifier));
    startService();
    notifier.notify({}, QStringLiteral("seen"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    QCOMPARE(body(0), QStringLiteral("seen"));
}

void TestNotifier::serviceReturnsErrors()
{
    Notifier notifier(m_bus->connect());
    m_service->capabilitiesMood = Mood::Errs;
    notifier.notify({}, QStringLiteral("one"));
    QTRY_VERIFY(isDone(notifier));
    QCOMPARE(m_service->calls.size(), 0);
    m_service->capabilitiesMood = Mood::Answers;
    m_service->notifyMood = Mood::Errs;
    notifier.notify({}, QStringLiteral("two"));
    QTRY_VERIFY(isDone(notifier));
    QCOMPARE(m_service->calls.size(), 1);
    m_service->notifyMood = Mood::Answers;
    notifier.notify({}, QStringLiteral("three"));
    QTRY_COMPARE(m_service->calls.size(), 2);
    QCOMPARE(body(1), QStringLiteral("three"));
    QCOMPARE(replaced(1), 0U);
}

void TestNotifier::serviceNeverAnswers()
{
    Notifier notifier(m_bus->connect(), nullptr, 100ms);
    m_service->capabilitiesMood = Mood::Silent;
    notifier.notify({}, QStringLiteral("one"));
    QTRY_VERIFY(isDone(notifier));
    QCOMPARE(m_service->calls.size(), 0);
    m_service->capabilitiesMood = Mood::Answers;
    m_service->notifyMood = Mood::Silent;
    notifier.notify({}, QStringLiteral("two"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    notifier.notify({}, QStringLiteral("three"));
    QTRY_COMPARE(m_service->calls.size(), 2);
    QCOMPARE(body(1), QStringLiteral("three"));
}

void TestNotifier::newServiceIsAskedAgain()
{
    Notifier notifier(m_bus->connect());
    notifier.notify({}, QStringLiteral("<1>"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    m_service.reset();
    startService();
    m_service->capabilities.append(QStringLiteral("body-markup"));
    notifier.notify({}, QStringLiteral("<2>"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    QCOMPARE(m_service->asked, 1);
    QCOMPARE(body(0), QStringLiteral("&lt;2&gt;"));
    QCOMPARE(replaced(0), 0U);
}

void TestNotifier::serviceLeavesTheBus()
{
    Notifier notifier(m_bus->connect());
    m_service->notifyMood = Mood::Silent;
    notifier.notify({}, QStringLiteral("one"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    m_service.reset();
    startService();
    QTRY_VERIFY(isDone(notifier));
    notifier.notify({}, QStringLiteral("two"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    QCOMPARE(body(0), QStringLiteral("two"));
}

void TestNotifier::busDies()
{
    const QDBusConnection connection = m_bus->connect();
    Notifier notifier(connection);
    m_service->capabilitiesMood = Mood::Silent;
    notifier.notify({}, QStringLiteral("one"));
    QTRY_COMPARE(m_service->asked, 1);
    m_bus->stop();
    QTRY_VERIFY(!connection.isConnected());
    QTRY_VERIFY(isDone(notifier));
    notifier.notify({}, QStringLiteral("two"));
    QTRY_VERIFY(isDone(notifier));
}

void TestNotifier::notifierIsDestroyed()
{
    m_service->capabilitiesMood = Mood::Silent;
    {
        Notifier notifier(m_bus->connect(), nullptr, 1ms);
        notifier.notify({}, QStringLiteral("one"));
        QTRY_COMPARE(m_service->asked, 1);
    }
    m_service->capabilitiesMood = Mood::Answers;
    Notifier notifier(m_bus->connect());
    notifier.notify({}, QStringLiteral("two"));
    QTRY_COMPARE(m_service->calls.size(), 1);
    QCOMPARE(body(0), QStringLiteral("two"));
}

void TestNotifier::noBus()
{
    Notifier notifier(QDBusConnection(QStringLiteral("nowhere")));
    notifier.notify({}, QStringLiteral("one"));
    QTRY_VERIFY(isDone(notifier));
}

TIDEWICK_TEST_MAIN(TestNotifier)
#include "tst_notifier.moc"
