// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "PrivateBus.h"
#include "desktop/FileBrowser.h"
#include "support/FileManagerService.h"
#include "support/Surroundings.h"

#include <memory>

using namespace tidewick;

class TestFileBrowser : public QObject
{
    Q_OBJECT

private slots:
    void urls_data();
    void urls();
    void showsTheItem();
    void noBrowser();
    void browserReturnsAnError();
    void noBus();
    void contextIsDestroyed();
};

void TestFileBrowser::urls_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("url");
    const auto row = [](const char *path, const char *url) {
        QTest::newRow(path) << QByteArray(path) << QByteArray(url);
    };
    row("/home/a/.local/share/Tidewick", "file:///home/a/.local/share/Tidewick");
    row("/a b/c%20d", "file:///a%20b/c%2520d");
    row("/a?b#c", "file:///a%3Fb%23c");
    row("/\xc3\xa9", "file:///%C3%A9");
    row("/\xff", "file:///%FF");
}

void TestFileBrowser::urls()
{
    QFETCH(QByteArray, path);
    QTEST(FileBrowser::url(path.toStdString()).toEncoded(), "url");
}

void TestFileBrowser::showsTheItem()
{
    PrivateBus bus;
    const FileManagerService service(bus.connect());
    QObject context;
    FileBrowser::reveal(bus.connect(), "/a b/\xff", &context,
                        [] { QFAIL("The fallback was called"); });
    QVERIFY(!context.children().isEmpty());
    QTRY_VERIFY(context.children().isEmpty());
    QCOMPARE(service.shown, QList({QStringList(QStringLiteral("file:///a%20b/%FF"))}));
}

void TestFileBrowser::noBrowser()
{
    PrivateBus bus;
    QObject context;
    int otherwise = 0;
    FileBrowser::reveal(bus.connect(), "/a", &context, [&] { ++otherwise; });
    QTRY_COMPARE(otherwise, 1);
    QTRY_VERIFY(context.children().isEmpty());
}

void TestFileBrowser::browserReturnsAnError()
{
    PrivateBus bus;
    FileManagerService service(bus.connect());
    service.errs = true;
    QObject context;
    int otherwise = 0;
    FileBrowser::reveal(bus.connect(), "/a", &context, [&] { ++otherwise; });
    QTRY_COMPARE(otherwise, 1);
    QCOMPARE(service.shown.size(), 1);
}

void TestFileBrowser::noBus()
{
    QObject context;
    int otherwise = 0;
    FileBrowser::reveal(QDBusConnection(QStringLiteral("none")), "/a", &context,
                        [&] { ++otherwise; });
    QCOMPARE(otherwise, 1);
}

void TestFileBrowser::contextIsDestroyed()
{
    PrivateBus bus;
    const QDBusConnection connection = bus.connect();
    int gone = 0;
    auto context = std::make_unique<QObject>();
    FileBrowser::reveal(connection, "/a", context.get(), [&] { ++gone; });
    context.reset();
    // Replies arrive in the order of the calls.
    QObject other;
    int otherwise = 0;
    FileBrowser::reveal(connection, "/a", &other, [&] { ++otherwise; });
    QTRY_COMPARE(otherwise, 1);
    QCOMPARE(gone, 0);
}

TIDEWICK_TEST_MAIN(TestFileBrowser)
#include "tst_filebrowser.moc"
