// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeLog.h"
#include "support/PeakMemory.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QFile>

#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tidewick;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

class TestNodeLog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void tail_data();
    void tail();
    void tailMatchesAFullRead();
    void tailBeginsAtTheRun();
    void tailOfLongLines();
    void tailOfGigabytes_data();
    void tailOfGigabytes();
    void tailWithoutALog();
    void tailOfAShortenedLog();
    void appends();
    void rotates_data();
    void rotates();
    void rotationKeepsOneCopy();
    void notes();
    void notesNeedALog();

private:
    std::optional<TemporaryFolder> m_folder;
    fs::path m_path;
    std::optional<NodeLog> m_log;
};

void TestNodeLog::init()
{
    m_folder.emplace();
    m_log.emplace(m_folder->path());
    m_path = m_folder->path() / "xrpld.stdout.log";
    QCOMPARE(m_log->path(), m_path);
}

namespace {

QByteArray numberedLines(int first, int last)
{
    QByteArrayList lines;
    for (int i = first; i <= last; ++i)
        lines += "line " + QByteArray::number(i);
    return lines.join('\n');
}

/// The expected tail, computed by splitting the complete text.
QString plainTail(const QByteArray &text)
{
    const QByteArrayList pieces = text.split('\n');
    return QString::fromUtf8(pieces.mid(qMax<qsizetype>(0, pieces.size() - 20)).join('\n'));
}

} // namespace

void TestNodeLog::tail_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &content, const QByteArray &expected) {
        QTest::newRow(name) << content << QString::fromUtf8(expected);
    };
    row("empty", "", "");
    row("one line", "a", "a");
    row("line feed at the end", "a\n", "a\n");
    row("only a line feed", "\n", "\n");
    row("empty lines count", "\n\n\n", "\n\n\n");
    row("twenty pieces", numberedLines(1, 20), numberedLines(1, 20));
    row("twenty-one pieces", numberedLines(1, 21), numberedLines(2, 21));
    row("nineteen lines and the end", numberedLines(1, 30) + '\n', numberedLines(12, 30) + '\n');
    row("thirty line feeds", QByteArray(30, '\n'), QByteArray(19, '\n'));
    row("CR LF stays", "a\r\nb\r\n", "a\r\nb\r\n");
    row("damaged text",
        "a\xE2\x82"
        "b",
        "a\xEF\xBF\xBD"
        "b");
}

void TestNodeLog::tail()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);
    writeFile(m_path, content);
    QCOMPARE(m_log->tail(0), expected);
}

void TestNodeLog::tailMatchesAFullRead()
{
    // Line lengths close to multiples of the step in which the log is read backwards.
    for (const int lineLength : {1, 100, 203, 204, 205, 206, 3275, 3276, 3277, 3278, 50'000}) {
        QByteArray content;
        for (int i = 0; i < 60; ++i)
            content += QByteArray(lineLength, static_cast<char>('a' + i % 26)) + '\n';
        writeFile(m_path, content);
        QCOMPARE(m_log->tail(0), plainTail(content));
        content.chop(1);
        writeFile(m_path, content);
        QCOMPARE(m_log->tail(0), plainTail(content));
    }
}

void TestNodeLog::tailBeginsAtTheRun()
{
    const QByteArray before = numberedLines(1, 100) + '\n';
    writeFile(m_path, before + "a\nb");
    QCOMPARE(m_log->tail(before.size()), QStringLiteral("a\nb"));
    QCOMPARE(m_log->tail(before.size() + 2), QStringLiteral("b"));
    QCOMPARE(m_log->tail(before.size() + 3), QString());
    const QByteArray run = numberedLines(101, 200);
    writeFile(m_path, before + run);
    QCOMPARE(m_log->tail(before.size()), plainTail(run));
}

void TestNodeLog::tailOfLongLines()
{
    constexpr qsizetype mebibyte = qsizetype{1024} * 1024;
    // Exactly at the limit: everything is kept.
    QByteArray content(mebibyte, 'x');
    writeFile(m_path, content);
    QCOMPARE(m_log->tail(0).size(), mebibyte);
    // Beyond the limit: only the end is kept. Twenty lines of 100 kB also exceed the limit.
    content = "beginning" + content;
    writeFile(m_path, content);
    QCOMPARE(m_log->tail(0), QString(mebibyte, u'x'));
    content.clear();
    for (int i = 0; i < 20; ++i)
        content += QByteArray(100'000, static_cast<char>('a' + i)) + '\n';
    writeFile(m_path, content);
    QCOMPARE(m_log->tail(0), QString::fromLatin1(content.right(mebibyte)));
    // A character cut by the limit is omitted entirely.
    content = QByteArray();
    while (content.size() < mebibyte)
        content += "€";
    content += "xy";
    writeFile(m_path, content);
    const QString tail = m_log->tail(0);
    QVERIFY(tail.startsWith(u'€'));
    QVERIFY(tail.endsWith(u"xy"));
}

void TestNodeLog::tailOfGigabytes_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("lines at the end") << QByteArray('\n' + numberedLines(1, 20));
    QTest::newRow("no line feed anywhere") << QByteArray();
}

/// Only the end of a log is read, however long the log is.
void TestNodeLog::tailOfGigabytes()
{
    QFETCH(QByteArray, end);
    writeFile(m_path, {});
    fs::resize_file(m_path, 2'000'000'000); // takes up no disk space
    {
        const UniqueDescriptor log = m_log->open();
        QVERIFY(Files::writeAll(log.get(), end.constData(), static_cast<std::size_t>(end.size())));
    }
    const PeakMemory memory;
    const QString tail = m_log->tail(0);
    QVERIFY2(memory.grown() < 50'000'000, qPrintable(QString::number(memory.grown())));
    if (end.isEmpty())
        QCOMPARE(tail, QString(qsizetype{1024} * 1024, u'\0'));
    else
        QCOMPARE(tail, QString::fromUtf8(end.mid(1)));
}

void TestNodeLog::tailWithoutALog()
{
    QCOMPARE(m_log->tail(0), QString());
    fs::create_directory(m_path);
    QCOMPARE(m_log->tail(0), QString());
}

void TestNodeLog::tailOfAShortenedLog()
{
    writeFile(m_path, "abc");
    QCOMPARE(m_log->tail(100), QString());
}

void TestNodeLog::appends()
{
    writeFile(m_path, "before\n");
    {
        const UniqueDescriptor log = m_log->open();
        QCOMPARE(NodeLog::length(log), 7);
        const int flags = ::fcntl(log.get(), F_GETFL);
        QCOMPARE(flags & O_ACCMODE, O_WRONLY);
        QVERIFY(flags & O_APPEND);
        QVERIFY(::fcntl(log.get(), F_GETFD) & FD_CLOEXEC);
        QVERIFY(Files::writeAll(log.get(), "a\n", 2));
        // Another process writes in between; nothing is overwritten.
        QFile other(m_path);
        QVERIFY(other.open(QIODevice::Append));
        other.write("b\n");
        other.close();
        QVERIFY(Files::writeAll(log.get(), "c\n", 2));
    }
    QCOMPARE(contentOf(m_path), QByteArray("before\na\nb\nc\n"));

    fs::remove(m_path);
    const mode_t mask = ::umask(0);
    (void)m_log->open();
    ::umask(mask);
    QCOMPARE(fs::status(m_path).permissions(), fs::perms(0644));
    fs::remove(m_path);
    fs::create_directory(m_path);
    QVERIFY_THROWS_EXCEPTION(FileError, (void)m_log->open());
}

void TestNodeLog::rotates_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("rotated");
    QTest::newRow("empty") << qint64(0) << false;
    QTest::newRow("64 MiB") << qint64(67'108'864) << false;
    QTest::newRow("one more") << qint64(67'108'865) << true;
}

void TestNodeLog::rotates()
{
    QFETCH(qint64, size);
    QFETCH(bool, rotated);
    writeFile(m_path, {});
    fs::resize_file(m_path, static_cast<std::uintmax_t>(size));
    NodeLog::rotate(m_path);
    QCOMPARE(fs::exists(m_path), !rotated);
    QCOMPARE(fs::exists(m_path.string() + ".1"), rotated);
}

void TestNodeLog::rotationKeepsOneCopy()
{
    NodeLog::rotate(m_path); // without a log, nothing happens
    writeFile(m_path.string() + ".1", "older");
    writeFile(m_path, "old");
    NodeLog::rotate(m_path);
    QCOMPARE(contentOf(m_path.string() + ".1"), QByteArray("older"));
    fs::resize_file(m_path, 70'000'000);
    NodeLog::rotate(m_path);
    QCOMPARE(fs::file_size(m_path.string() + ".1"), 70'000'000U);
    QVERIFY(!fs::exists(m_path));
}

void TestNodeLog::notes()
{
    writeFile(m_path, "node\n");
    m_log->note(QStringLiteral("first – é"), WallClock::time_point(0s));
    m_log->note(QStringLiteral("second"), WallClock::time_point(978307200s + 999ms));
    QCOMPARE(contentOf(m_path), QByteArray("node\n"
                                           "[Tidewick] 1970-01-01 00:00:00 +0000 first – é\n"
                                           "[Tidewick] 2001-01-01 00:00:00 +0000 second\n"));
}

void TestNodeLog::notesNeedALog()
{
    m_log->note(QStringLiteral("x"), WallClock::now());
    QVERIFY(!fs::exists(m_path));
}

TIDEWICK_TEST_MAIN(TestNodeLog)
#include "tst_nodelog.moc"
