// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Files.h"
#include "platform/files/Folders.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <unistd.h>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

/// Changes a variable, or unsets it if the value is nullptr, for as long as the object exists.
class Variable
{
public:
    Variable(const char *name, const char *value)
        : m_name(name), m_before(qgetenv(name)), m_wasSet(qEnvironmentVariableIsSet(name))
    {
        if (value != nullptr)
            qputenv(name, value);
        else
            qunsetenv(name);
    }
    ~Variable()
    {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }

private:
    const char *m_name;
    QByteArray m_before;
    bool m_wasSet;
};

} // namespace

class TestFolders : public QObject
{
    Q_OBJECT

private slots:
    void fromEnvironment_data();
    void fromEnvironment();
    void fallsBackToTheUsersHome();
    void temporary_data();
    void temporary();
    void lockFile();
    void fromOperand_data();
    void fromOperand();
    void currentFolderGone();
};

void TestFolders::fromEnvironment_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("expected"); // relative to the home folder
    QTest::newRow("absolute") << QByteArray("/x/y") << QByteArray("/x/y");
    QTest::newRow("trailing slash") << QByteArray("/x/y//") << QByteArray("/x/y");
    QTest::newRow("relative") << QByteArray("x/y") << QByteArray();
    QTest::newRow("empty") << QByteArray("") << QByteArray();
    QTest::newRow("not UTF-8") << QByteArray("/x\xFF") << QByteArray("/x\xFF");
}

void TestFolders::fromEnvironment()
{
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, expected);
    const fs::path home = qgetenv("HOME").toStdString();
    const Variable data("XDG_DATA_HOME", value);
    const Variable configuration("XDG_CONFIG_HOME", value);
    const fs::path named = expected.toStdString();
    QCOMPARE(Folders::applicationSupport(), named.empty() ? home / ".local/share" : named);
    QCOMPARE(Folders::configuration(), named.empty() ? home / ".config" : named);
}

void TestFolders::fallsBackToTheUsersHome()
{
    const Variable home("HOME", nullptr);
    const Variable data("XDG_DATA_HOME", nullptr);
    QVERIFY(Folders::applicationSupport().is_absolute());
    QVERIFY(Folders::applicationSupport().string().ends_with("/.local/share"));
}

void TestFolders::temporary_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("named") << QByteArray("/x") << QByteArray("/x");
    QTest::newRow("missing folder")
        << QByteArray("/no/such/folder/") << QByteArray("/no/such/folder");
    QTest::newRow("empty") << QByteArray("") << QByteArray("/tmp");
}

void TestFolders::temporary()
{
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, expected);
    const Variable variable("TMPDIR", value);
    QCOMPARE(Folders::temporary(), fs::path(expected.toStdString()));
    const Variable unset("TMPDIR", nullptr);
    QCOMPARE(Folders::temporary(), fs::path("/tmp"));
}

void TestFolders::lockFile()
{
    const Variable runtime("XDG_RUNTIME_DIR", "/run/user/1/");
    QCOMPARE(Folders::lockFile("x"), fs::path("/run/user/1/x.lock"));
    const fs::path besideTheSettings = Folders::configuration() / "Tidewick";
    for (const char *none : {"", "relative"}) {
        const Variable unnamed("XDG_RUNTIME_DIR", none);
        QCOMPARE(Folders::lockFile("x"), besideTheSettings / "x.lock");
        QVERIFY(fs::is_directory(besideTheSettings));
    }
}

void TestFolders::fromOperand_data()
{
    QTest::addColumn<QByteArray>("operand");
    QTest::addColumn<QByteArray>("expected"); // relative to the working directory
    const auto row = [](const char *operand, const char *expected) {
        QTest::addRow("'%s'", operand) << QByteArray(operand) << QByteArray(expected);
    };
    row("/tmp/x/", "/tmp/x");
    row("/tmp/x", "/tmp/x");
    row("/", "/");
    row("//", "/");
    row("/a/../b", "/a/../b");
    row("out", "out");
    row("./out", "out");
    row("a/../b", "b");
    row("a/b/", "a/b");
    row(".", "");
    row("", "");
    row("~", "~");
    row("~/x", "~/x");
    row("a b%20é", "a b%20é");
    row("--smoke", "--smoke");
    row("\xFF", "\xFF");
}

void TestFolders::fromOperand()
{
    QFETCH(QByteArray, operand);
    QFETCH(QByteArray, expected);
    fs::path path = expected.toStdString();
    if (path.is_relative())
        path = path.empty() ? fs::current_path() : fs::current_path() / path;
    QCOMPARE(Folders::fromOperand(operand.toStdString()).string(), path.string());
    QCOMPARE(Folders::fromOperand(".."), fs::current_path().parent_path());
}

void TestFolders::currentFolderGone()
{
    const fs::path before = fs::current_path();
    {
        const TemporaryFolder folder;
        fs::current_path(folder.path());
    }
    QVERIFY_THROWS_EXCEPTION(FileError, Folders::fromOperand("x"));
    QCOMPARE(Folders::fromOperand("/x"), fs::path("/x"));
    fs::current_path(before);
}

TIDEWICK_TEST_MAIN(TestFolders)
#include "tst_folders.moc"
