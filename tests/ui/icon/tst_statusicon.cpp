// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/icon/MarkBundle.h"
#include "ui/icon/StatusIcon.h"

#include <QApplication>

#include <sys/wait.h>
#include <unistd.h>

using namespace tidewick;

namespace {

const QString pauseBadge = QStringLiteral("pause.fill");
const QString stopBadge = QStringLiteral("stop.fill");
const QString ellipsisBadge = QStringLiteral("ellipsis");

} // namespace

class TestStatusIcon : public QObject
{
    Q_OBJECT

private slots:
    void badge_data();
    void badge();
    void phasesWithTheSameBadgeShareTheImage();
    void composesOnce();
    void badgeThatCannotBeLoaded();
    void markThatCannotBeRead_data();
    void markThatCannotBeRead();
    void noMarkAtAllIsFatal();
    void takesTheColor_data();
    void takesTheColor();
    void changesColorWithoutComposing();
    void isMaskOfSixSizes();
};

void TestStatusIcon::badge_data()
{
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<QString>("expected");
    QTest::newRow("stopped") << Phase::Stopped << "pause.fill";
    QTest::newRow("starting") << Phase::Starting << "ellipsis";
    QTest::newRow("bootstrapping") << Phase::Bootstrapping << "arrow.down";
    QTest::newRow("connecting") << Phase::Connecting << "ellipsis";
    QTest::newRow("syncing") << Phase::Syncing << "arrow.triangle.2.circlepath";
    QTest::newRow("full") << Phase::Full << QString();
    QTest::newRow("stopping") << Phase::Stopping << "stop.fill";
    QTest::newRow("error") << Phase::Error << "exclamationmark.triangle.fill";
}

void TestStatusIcon::badge()
{
    QFETCH(Phase, phase);
    QFETCH(QString, expected);
    const StatusIcon::Badge found = StatusIcon::badge(phase);
    QCOMPARE(found.has_value(), !expected.isEmpty());
    QCOMPARE(found.value_or(QString()), expected);
}

void TestStatusIcon::phasesWithTheSameBadgeShareTheImage()
{
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    const QIcon starting = icon.image(StatusIcon::badge(Phase::Starting));
    const QIcon connecting = icon.image(StatusIcon::badge(Phase::Connecting));
    QCOMPARE(starting.cacheKey(), connecting.cacheKey());
    QVERIFY(starting.cacheKey() != icon.image(pauseBadge).cacheKey());
}

void TestStatusIcon::composesOnce()
{
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    const StatusImage *first = &icon.composed(stopBadge).wide;
    const qint64 key = icon.image(stopBadge).cacheKey();
    icon.image(pauseBadge);

    // Composing it again would pick up this other mark.
    writeFile(bundle.path(), MarkBundle::block(90, 30));
    QCOMPARE(&icon.composed(stopBadge).wide, first);
    QCOMPARE(icon.image(stopBadge).cacheKey(), key);
    QCOMPARE(icon.composed(pauseBadge).wide.size(), QSize(32, 16));
    QCOMPARE(icon.composed(ellipsisBadge).wide.size(), QSize(60, 16));
}

void TestStatusIcon::badgeThatCannotBeLoaded()
{
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    const QString unknown = QStringLiteral("no.such.symbol");
    QCOMPARE(icon.composed(unknown).wide.size(), QSize(20, 16));
    QCOMPARE(picture(icon.image(unknown), 32), picture(icon.image(std::nullopt), 32));
    QCOMPARE(icon.image(unknown).name(), QString());

    const TemporaryFolder symbols;
    writeFile(symbols.path() / "pause.fill.svg", "this is no drawing");
    StatusIcon broken(bundle.bundle(), QString::fromStdString(symbols.path().string()));
    QCOMPARE(broken.composed(pauseBadge).wide.size(), QSize(20, 16));
}

void TestStatusIcon::markThatCannotBeRead_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("not a drawing") << QByteArray("this is no drawing");
    QTest::newRow("no size") << QByteArray(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"0\" height=\"0\"/>");
}

void TestStatusIcon::markThatCannotBeRead()
{
    QFETCH(QByteArray, mark);
    const MarkBundle bundle;
    if (!mark.isEmpty())
        writeFile(bundle.path(), mark);
    StatusIcon icon(bundle.bundle());
    QCOMPARE(icon.composed(std::nullopt).wide.size(), QSize(16, 16));
    QCOMPARE(icon.composed(pauseBadge).wide.size(), QSize(28, 16));
    // A cross of discs: ink in the middle and at each side, none in the corners.
    const QImage drawn = picture(icon.image(std::nullopt), 64);
    for (const QPoint point : {QPoint(32, 32), QPoint(32, 11), QPoint(11, 32), QPoint(52, 32)})
        QCOMPARE(drawn.pixelColor(point).alpha(), 255);
    QCOMPARE(drawn.pixelColor(5, 5).alpha(), 0);
}

void TestStatusIcon::noMarkAtAllIsFatal()
{
    constexpr int fatal = 42;
    const MarkBundle bundle;
    const TemporaryFolder symbols;
    const pid_t child = ::fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        // The child must neither dump core nor clean up what belongs to the test.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
            ::_exit(type == QtFatalMsg && text.contains(QStringLiteral("MenuBarIcon")) ? fatal : 1);
        });
        StatusIcon(bundle.bundle(), QString::fromStdString(symbols.path().string()))
            .image(std::nullopt);
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), fatal);
}

void TestStatusIcon::takesTheColor_data()
{
    QTest::addColumn<QColor>("color");
    QTest::newRow("light") << StatusIcon::onLightPanel();
    QTest::newRow("dark") << StatusIcon::onDarkPanel();
}

void TestStatusIcon::takesTheColor()
{
    QFETCH(QColor, color);
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    icon.setColor(color);
    const QImage drawn = icon.image(stopBadge).pixmap(QSize(64, 32), 1.0).toImage();
    const auto near = [](const QColor &found, const QColor &wanted) {
        return std::abs(found.red() - wanted.red()) <= 1
               && std::abs(found.green() - wanted.green()) <= 1
               && std::abs(found.blue() - wanted.blue()) <= 1
               && std::abs(found.alpha() - wanted.alpha()) <= 1;
    };
    // Crest of the upper wave, dot, badge; at two pixels per point.
    for (const QPoint point : {QPoint(11, 2), QPoint(20, 28), QPoint(54, 16)})
        QVERIFY(near(drawn.pixelColor(point), color));
    // The crest of the lower wave is translucent.
    QColor fainter = color;
    fainter.setAlphaF(0.55F);
    QVERIFY(near(drawn.pixelColor(11, 14), fainter));
    QCOMPARE(drawn.pixelColor(0, 0).alpha(), 0);
}

void TestStatusIcon::changesColorWithoutComposing()
{
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    const StatusImage *composed = &icon.composed(stopBadge).wide;
    const QIcon light = icon.image(stopBadge);
    const QImage before = picture(light, 64);

    icon.setColor(StatusIcon::onLightPanel());
    QCOMPARE(icon.image(stopBadge).cacheKey(), light.cacheKey());

    icon.setColor(StatusIcon::onDarkPanel());
    QCOMPARE(&icon.composed(stopBadge).wide, composed);
    // The tray detects a new icon by its cache key.
    QVERIFY(icon.image(stopBadge).cacheKey() != light.cacheKey());
    QCOMPARE(picture(icon.image(stopBadge), 64).pixelColor(47, 47), StatusIcon::onDarkPanel());
    QCOMPARE(picture(light, 64), before);
}

void TestStatusIcon::isMaskOfSixSizes()
{
    const MarkBundle bundle(MarkBundle::shipped());
    StatusIcon icon(bundle.bundle());
    QList<QSize> expected;
    for (const int size : {16, 22, 24, 32, 48, 64})
        expected += QSize(size, size);
    for (const StatusIcon::Badge &badge : {StatusIcon::Badge(), StatusIcon::Badge(pauseBadge)}) {
        QVERIFY(!icon.image(badge).isNull());
        QVERIFY(icon.image(badge).isMask());
        QCOMPARE(icon.image(badge).availableSizes(), expected);
    }
    QIcon copy = icon.image(pauseBadge);
    copy.setIsMask(false); // detaches the copy's engine from the original's
    QVERIFY(icon.image(pauseBadge).isMask());
    QCOMPARE(picture(copy, 32), picture(icon.image(pauseBadge), 32));
}

TIDEWICK_GUI_TEST_MAIN(TestStatusIcon)
#include "tst_statusicon.moc"
