// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/menu/Explorers.h"

using namespace tidewick;

class TestExplorers : public QObject
{
    Q_OBJECT

private slots:
    void bases();
    void pages_data();
    void pages();
    void staysOneSegment_data();
    void staysOneSegment();
    void hasNoPage_data();
    void hasNoPage();
};

void TestExplorers::bases()
{
    for (const char *base : {Explorers::menu, Explorers::window}) {
        const QUrl url(QString::fromLatin1(base), QUrl::StrictMode);
        QVERIFY(url.isValid());
        QCOMPARE(url.scheme(), QStringLiteral("https"));
        QCOMPARE(url.path(), QStringLiteral("/"));
    }
    QCOMPARE(Explorers::menu, "https://xrpscan.com/");
    QCOMPARE(Explorers::window, "https://xrplexplorer.com/");
}

void TestExplorers::pages_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("segment");
    const auto row = [](const QString &name, const char *segment) {
        QTest::addRow("%s", segment) << name << QByteArray(segment);
    };
    const QString hash(64, u'A');
    row(QStringLiteral("98765432"), "98765432");
    row(QStringLiteral("-5"), "-5");
    row(hash, hash.toLatin1().constData());
    row(QStringLiteral("../../x"), "..%2F..%2Fx");
    row(QStringLiteral("a/b?c#d"), "a%2Fb%3Fc%23d");
    row(QStringLiteral("@evil"), "%40evil");
    row(QStringLiteral("a@evil.example:80"), "a%40evil.example%3A80");
    row(QStringLiteral("a b%2f%"), "a%20b%252f%25");
    row(QStringLiteral("%2e%2e"), "%252e%252e");
    row(QStringLiteral("..."), "...");
    row(QStringLiteral("..;"), "..%3B");
    row(QStringLiteral("a\\b"), "a%5Cb");
    row(QStringLiteral("a\nb\r\t"), "a%0Ab%0D%09");
    row(QStringLiteral("ключ"), "%D0%BA%D0%BB%D1%8E%D1%87");
    row(QString::fromUtf8("\xf0\x9f\x8c\x8a"), "%F0%9F%8C%8A");
    row(QString(1, QChar(u'\0')), "%00");
}

void TestExplorers::pages()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, segment);
    const auto page = Explorers::page(Explorers::window, "tx", name);
    QVERIFY(page);
    QCOMPARE(page->toEncoded(), Explorers::window + QByteArray("tx/") + segment);
}

void TestExplorers::staysOneSegment_data()
{
    QTest::addColumn<QString>("name");
    const auto row = [](const char *title, const QString &name) { QTest::newRow(title) << name; };
    for (const char *name : {"/",
                             "//evil.example",
                             "/../..",
                             "?",
                             "#",
                             "?a=b&c=d",
                             ":",
                             "user:key@host",
                             "[::1]",
                             "https://evil.example/",
                             "javascript:alert(1)",
                             "\\\\evil",
                             "%",
                             "%zz",
                             "%2f..%2f",
                             "+",
                             "'\"<>",
                             "{}|^`",
                             "~._-",
                             ".. ",
                             " ..",
                             "\x7f"})
        row(name, QString::fromUtf8(name));
    row("NUL", QStringLiteral("a") + QChar(u'\0') + QStringLiteral("/b"));
    row("high surrogate alone", QStringLiteral("a") + QChar(0xd83d));
    row("low surrogate alone", QChar(0xdc00) + QStringLiteral("/.."));
    row("line separator", QString(QChar(0x2028)));
    row("bidi override", QChar(0x202e) + QStringLiteral("moc.live"));
    row("full-width dots and slash", QString::fromUtf8("\uff0e\uff0e\uff0f"));
    row("128 characters", QString(128, u'/'));
    row("very long", QString(100'000, u'#'));
}

void TestExplorers::staysOneSegment()
{
    QFETCH(QString, name);
    for (const char *base : {Explorers::menu, Explorers::window}) {
        const QUrl home(QString::fromLatin1(base));
        const auto page = Explorers::page(base, "tx", name);
        QVERIFY(page);
        QCOMPARE(page->scheme(), home.scheme());
        QCOMPARE(page->authority(), home.authority());
        QVERIFY(!page->hasQuery() && !page->hasFragment());
        const QByteArray path = page->toEncoded().mid(QByteArray(base).size());
        QVERIFY(path.startsWith("tx/"));
        const QByteArray segment = path.mid(3);
        QVERIFY(!segment.isEmpty());
        for (const char letter : segment)
            QVERIFY(std::isalnum(uchar(letter)) || QByteArray("%-._~").contains(letter));
        // A browser that normalises the path ends up at the same page.
        QCOMPARE(page->adjusted(QUrl::NormalizePathSegments), *page);
    }
}

void TestExplorers::hasNoPage_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("null") << QString();
    QTest::newRow("this folder") << QStringLiteral(".");
    QTest::newRow("the folder above") << QStringLiteral("..");
}

void TestExplorers::hasNoPage()
{
    QFETCH(QString, name);
    QVERIFY(!Explorers::page(Explorers::window, "tx", name));
}

TIDEWICK_TEST_MAIN(TestExplorers)
#include "tst_explorers.moc"
