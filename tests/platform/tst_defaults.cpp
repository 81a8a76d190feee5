// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Defaults.h"
#include "platform/files/Files.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <limits>
#include <optional>

using namespace tidewick;
namespace fs = std::filesystem;

class TestDefaults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void readsWhatIsStored_data();
    void readsWhatIsStored();
    void absentIsNotZero();
    void writesAreSeenAtOnceAndOnDisk();
    void seesExternalWrites();
    void realsKeepTheirValue();
    void anyTextMayBeAKey_data();
    void anyTextMayBeAKey();
    void suitesAreSeparate();
    void suitesThatCannotBeOpened();
    void readingWritesNothing();
    void failedWritesAreReported();

private:
    std::optional<TemporaryFolder> m_folder;
    fs::path m_file;
};

void TestDefaults::init()
{
    m_folder.emplace();
    m_file = m_folder->path() / "settings.ini";
}

void TestDefaults::readsWhatIsStored_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<qint64>("integer");
    QTest::addColumn<double>("real");
    const auto row = [](const char *stored, qint64 integer, double real) {
        QTest::addRow("'%s'", stored) << QByteArray(stored) << integer << real;
    };
    row("5", 5, 5);
    row("-5", -5, -5);
    row("12.34", 12, 12.34);
    row("12.9", 12, 12.9);
    row("-12.9", -12, -12.9);
    row("true", 1, 1);
    row("false", 0, 0);
    row("12abc", 12, 12);
    row("abc", 0, 0);
    row("", 0, 0);
    row("\" 7\"", 7, 0);
    row("+123", 123, 123);
    row("++123", 0, 0);
    row("1e3", 1, 1000);
    row("1E3", 1, 1000);
    row("0x10", 0, 0);
    row("1.2.3.4", 1, 1.2);
    row(".e12", 0, 0);
    row("1, 5", 1, 1);
    row("20,5", 20, 20);
    row("@Invalid()", 0, 0);
    row("@ByteArray(12)", 12, 12);
    row("999999999999999999999999999999", std::numeric_limits<qint64>::max(), 1e30);
    row("-999999999999999999999999999999", std::numeric_limits<qint64>::min(), -1e30);
}

void TestDefaults::readsWhatIsStored()
{
    QFETCH(QByteArray, stored);
    QFETCH(qint64, integer);
    QFETCH(double, real);
    writeFile(m_file, "[General]\nkey=" + stored + '\n');
    const Defaults defaults(m_file);
    QVERIFY(defaults.contains(QStringLiteral("key")));
    QCOMPARE(defaults.integer(QStringLiteral("key")), integer);
    QCOMPARE(defaults.real(QStringLiteral("key")), real);
}

void TestDefaults::absentIsNotZero()
{
    Defaults defaults(m_file);
    const QString key = QStringLiteral("key");
    QVERIFY(!defaults.contains(key));
    QCOMPARE(defaults.integer(key), 0);
    QCOMPARE(defaults.real(key), 0.0);
    defaults.setInteger(key, 0);
    QVERIFY(defaults.contains(key));
    defaults.remove(key);
    QVERIFY(!defaults.contains(key));
}

void TestDefaults::writesAreSeenAtOnceAndOnDisk()
{
    Defaults first(m_file);
    const Defaults second(m_file);
    first.setInteger(QStringLiteral("roundGrowthMiB"), 4096);
    QCOMPARE(second.integer(QStringLiteral("roundGrowthMiB")), 4096);
    QVERIFY(contentOf(m_file).contains("roundGrowthMiB=4096"));
    // A real number must not be rounded before it is saved, either.
    first.setReal(QStringLiteral("x"), 12.9);
    QCOMPARE(first.integer(QStringLiteral("x")), 12);
}

void TestDefaults::seesExternalWrites()
{
    writeFile(m_file, "[General]\nkey=1\n");
    Defaults defaults(m_file);
    QCOMPARE(defaults.integer(QStringLiteral("key")), 1);
    writeFile(m_file, "[General]\nkey=23\nother=4\n");
    defaults.refresh();
    QCOMPARE(defaults.integer(QStringLiteral("key")), 23);
    // Values written by others survive a write of ours.
    defaults.setInteger(QStringLiteral("key"), 5);
    QVERIFY(contentOf(m_file).contains("other=4"));
}

void TestDefaults::realsKeepTheirValue()
{
    Defaults defaults(m_file);
    for (const double value : {0.0, 0.1, 1200.0, 1e-300, 1e300, 123456789.123456789}) {
        defaults.setReal(QStringLiteral("key"), value);
        QCOMPARE(Defaults(m_file).real(QStringLiteral("key")), value);
    }
}

void TestDefaults::anyTextMayBeAKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("plain") << QStringLiteral("lastBuildSeconds.major");
    QTest::newRow("nothing after the dot") << QStringLiteral("lastBuildSeconds.");
    QTest::newRow("slashes") << QStringLiteral("lastBuildSeconds./a//b/");
    QTest::newRow("backslash") << QStringLiteral("a\\b");
    QTest::newRow("percent") << QStringLiteral("a%20b");
    QTest::newRow("equals and bracket") << QStringLiteral("[a]=b;c");
    QTest::newRow("line feed") << QStringLiteral("a\nb=1");
    QTest::newRow("not ASCII") << QStringLiteral("é😀");
}

void TestDefaults::anyTextMayBeAKey()
{
    QFETCH(QString, key);
    Defaults defaults(m_file);
    defaults.setInteger(key, 7);
    defaults.setInteger(QStringLiteral("other"), 8);
    // Read as another process would: the same file under another name.
    const fs::path copy = m_folder->path() / "copy.ini";
    fs::copy_file(m_file, copy);
    const Defaults later(copy);
    QCOMPARE(later.integer(key), 7);
    QCOMPARE(later.integer(QStringLiteral("other")), 8);
}

void TestDefaults::suitesAreSeparate()
{
    Defaults standard = Defaults::standard();
    auto suite = Defaults::suite(QStringLiteral("quaymere-describe-storage"));
    QVERIFY(suite);
    suite->setInteger(QStringLiteral("key"), 1);
    QVERIFY(!standard.contains(QStringLiteral("key")));
    const fs::path folder = fs::path(qgetenv("XDG_CONFIG_HOME").toStdString()) / "Tidewick";
    QVERIFY(fs::exists(folder / "quaymere-describe-storage.ini"));
    standard.setInteger(QStringLiteral("key"), 2);
    QVERIFY(fs::exists(folder / "settings.ini"));
    QCOMPARE(suite->integer(QStringLiteral("key")), 1);
}

void TestDefaults::suitesThatCannotBeOpened()
{
    QVERIFY(!Defaults::suite(QString()));
    QVERIFY(!Defaults::suite(QStringLiteral("a/b")));
    const fs::path folder = fs::path(qgetenv("XDG_CONFIG_HOME").toStdString()) / "Tidewick";
    fs::create_directories(folder / "taken.ini");
    QVERIFY(!Defaults::suite(QStringLiteral("taken")));
}

void TestDefaults::readingWritesNothing()
{
    Defaults defaults(m_file);
    (void)defaults.integer(QStringLiteral("key"));
    defaults.refresh();
    QVERIFY(!fs::exists(m_file));
}

void TestDefaults::failedWritesAreReported()
{
    // A file in place of the folder, which prevents even root from writing.
    const fs::path folder = m_folder->path() / "folder";
    writeFile(folder, "");
    Defaults defaults(folder / "settings.ini");
    const QString key = QStringLiteral("key");
    const auto expectWord = [&defaults] {
        const QString word = Files::display(defaults.file()) + QLatin1String(" cannot be written");
        QTest::ignoreMessage(QtWarningMsg, word.toUtf8().constData());
    };
    expectWord();
    QVERIFY(!defaults.setInteger(key, 1));
    expectWord();
    QVERIFY(!defaults.setReal(key, 1.5));
    expectWord();
    QVERIFY(!defaults.remove(QStringLiteral("other")));
    QCOMPARE(defaults.real(key), 1.5);

    fs::remove(folder);
    QVERIFY(defaults.setInteger(QStringLiteral("third"), 3));
    QVERIFY(contentOf(defaults.file()).contains("third=3"));
    QVERIFY(contentOf(defaults.file()).contains("key=1.5"));
    QVERIFY(defaults.remove(key));
    QVERIFY(!contentOf(defaults.file()).contains("key"));
}

TIDEWICK_TEST_MAIN(TestDefaults)
#include "tst_defaults.moc"
