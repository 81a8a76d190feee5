// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/DefaultsWatch.h"
#include "platform/files/Files.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QSignalSpy>

#include <optional>

using namespace tidewick;
namespace fs = std::filesystem;

class TestDefaultsWatch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writtenInPlace();
    void replaced();
    void removedAndBack();
    void foldersCreatedLater();
    void behindALink();
    void otherFilesAreIgnored();

private:
    qint64 value() const { return Defaults(m_file).integer(QStringLiteral("key")); }

    std::optional<TemporaryFolder> m_folder;
    fs::path m_file;
};

void TestDefaultsWatch::init()
{
    m_folder.emplace();
    m_file = m_folder->path() / "settings.ini";
}

void TestDefaultsWatch::writtenInPlace()
{
    writeFile(m_file, "[General]\nkey=1\n");
    DefaultsWatch watch{Defaults(m_file)};
    QSignalSpy changes(&watch, &DefaultsWatch::changed);
    for (const int number : {22, 333, 4444}) {
        writeFile(m_file, "[General]\nkey=" + QByteArray::number(number) + '\n');
        QTRY_VERIFY(!changes.isEmpty());
        QCOMPARE(value(), number);
        changes.clear();
    }
}

void TestDefaultsWatch::replaced()
{
    writeFile(m_file, "[General]\nkey=1\n");
    DefaultsWatch watch{Defaults(m_file)};
    QSignalSpy changes(&watch, &DefaultsWatch::changed);
    for (const int number : {22, 333, 4444}) {
        changes.clear();
        Files::writeAtomically(m_file, "[General]\nkey=" + QByteArray::number(number) + '\n');
        QTRY_VERIFY(!changes.isEmpty());
        QCOMPARE(value(), number);
    }
    // The new file is watched, too.
    writeFile(m_file, "[General]\nkey=55555\n");
    QTRY_COMPARE(value(), 55555);
}

void TestDefaultsWatch::removedAndBack()
{
    writeFile(m_file, "[General]\nkey=1\n");
    DefaultsWatch watch{Defaults(m_file)};
    QSignalSpy changes(&watch, &DefaultsWatch::changed);
    fs::remove(m_file);
    QTRY_COMPARE(changes.size(), 1);
    QVERIFY(!Defaults(m_file).contains(QStringLiteral("key")));
    writeFile(m_file, "[General]\nkey=22\n");
    QTRY_COMPARE(value(), 22);
}

void TestDefaultsWatch::foldersCreatedLater()
{
    m_file = m_folder->path() / "a" / "b" / "settings.ini";
    DefaultsWatch watch{Defaults(m_file)};
    const QSignalSpy changes(&watch, &DefaultsWatch::changed);
    QVERIFY(!fs::exists(m_folder->path() / "a"));
    fs::create_directories(m_file.parent_path());
    writeFile(m_file, "[General]\nkey=22\n");
    QTRY_VERIFY(!changes.isEmpty());
    QCOMPARE(value(), 22);
    fs::remove_all(m_folder->path() / "a");
    QTRY_VERIFY(!Defaults(m_file).contains(QStringLiteral("key")));
    fs::create_directories(m_file.parent_path());
    writeFile(m_file, "[General]\nkey=333\n");
    QTRY_COMPARE(value(), 333);
}

void TestDefaultsWatch::behindALink()
{
    const fs::path target = m_folder->path() / "kept" / "settings.ini";
    fs::create_directory(target.parent_path());
    writeFile(target, "[General]\nkey=1\n");
    fs::create_symlink(target, m_file);
    DefaultsWatch watch{Defaults(m_file)};
    writeFile(target, "[General]\nkey=22\n");
    QTRY_COMPARE(value(), 22);
    Files::writeAtomically(target, "[General]\nkey=333\n");
    QTRY_COMPARE(value(), 333);
}

void TestDefaultsWatch::otherFilesAreIgnored()
{
    writeFile(m_file, "[General]\nkey=1\n");
    DefaultsWatch watch{Defaults(m_file)};
    const QSignalSpy changes(&watch, &DefaultsWatch::changed);
    writeFile(m_folder->path() / "settings.ini.tmp", "");
    writeFile(m_folder->path() / "other.ini", "");
    // The first notification is for the change after these two.
    QVERIFY(Defaults(m_file).setInteger(QStringLiteral("key"), 22));
    QTRY_VERIFY(!changes.isEmpty());
    QCOMPARE(changes.size(), 1);
}

TIDEWICK_TEST_MAIN(TestDefaultsWatch)
#include "tst_defaultswatch.moc"
