// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Files.h"
#include "support/Failures.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <array>
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

/// While it exists, writing a file beyond this size fails, as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};

} // namespace

class TestFiles : public QObject
{
    Q_OBJECT

private slots:
    void readsWhatWasWritten();
    void errorsNameFileAndReason();
    void readTextRefusesWhatIsNotUtf8_data();
    void readTextRefusesWhatIsNotUtf8();
    void readTextKeepsTheByteOrderMark();
    void replacesInOneStep();
    void failedWriteLeavesTheOldContent();
    void namesNeedNotBeUtf8();
    void descriptorsAreClosed();

private:
    TemporaryFolder m_folder;
    fs::path m_path = m_folder.path();
};

void TestFiles::readsWhatWasWritten()
{
    QByteArray content(300'000, 'x');
    content[0] = '\0';
    content.back() = '\xFF';
    Files::writeAtomically(m_path / "large", content);
    QCOMPARE(Files::read(m_path / "large"), content);
    Files::writeAtomically(m_path / "empty", {});
    QCOMPARE(Files::read(m_path / "empty"), QByteArray());
}

void TestFiles::errorsNameFileAndReason()
{
    const fs::path missing = m_path / "missing";
    QCOMPARE(failureOf([&] { Files::read(missing); }),
             failureWith(missing, "No such file or directory"));
    QCOMPARE(failureOf([&] { Files::read(m_path); }), failureWith(m_path, "Is a directory"));
    QCOMPARE(failureOf([&] { Files::writeAtomically(missing / "file", "x"); }),
             failureWith(missing / "file", "No such file or directory"));
    writeFile(m_path / "file", "x");
    QCOMPARE(failureOf([&] { Files::writeAtomically(m_path / "file" / "below", "x"); }),
             failureWith(m_path / "file" / "below", "Not a directory"));
    fs::create_directory(m_path / "folder");
    QCOMPARE(failureOf([&] { Files::writeAtomically(m_path / "folder", "x"); }),
             failureWith(m_path / "folder", "Is a directory"));
}

void TestFiles::readTextRefusesWhatIsNotUtf8_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("invalid byte") << QByteArray("a\xFF");
    QTest::newRow("cut at the end") << QByteArray("a\xE2\x82");
    QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80");
}

void TestFiles::readTextRefusesWhatIsNotUtf8()
{
    QFETCH(QByteArray, content);
    const fs::path path = m_path / "text";
    writeFile(path, content);
    QCOMPARE(failureOf([&] { Files::readText(path); }), failureWith(path, "not UTF-8 text"));
}

void TestFiles::readTextKeepsTheByteOrderMark()
{
    writeFile(m_path / "mark", "\xEF\xBB\xBFé");
    QCOMPARE(Files::readText(m_path / "mark").toUtf8(), QByteArray("\xEF\xBB\xBFé"));
}

void TestFiles::replacesInOneStep()
{
    const fs::path path = m_path / "replaced";
    writeFile(path, "old");
    const UniqueDescriptor reader(::open(path.c_str(), O_RDONLY | O_CLOEXEC));

    const mode_t mask = ::umask(027);
    Files::writeAtomically(path, "new content");
    ::umask(mask);

    QCOMPARE(contentOf(path), QByteArray("new content"));
    std::array<char, 16> seen{};
    QCOMPARE(::read(reader.get(), seen.data(), seen.size()),
             ssize_t(3)); // still reads the old file
    struct stat status
    {
    };
    QCOMPARE(::stat(path.c_str(), &status), 0);
    QCOMPARE(status.st_mode & 07777, mode_t(0640));
}

void TestFiles::failedWriteLeavesTheOldContent()
{
    TemporaryFolder folder;
    const fs::path path = folder.path() / "file";
    writeFile(path, "old");
    {
        const FileSizeLimit limit(4096);
        QCOMPARE(failureOf([&] { Files::writeAtomically(path, QByteArray(10'000, 'x')); }),
                 failureWith(path, "File too large"));
    }
    QCOMPARE(contentOf(path), QByteArray("old"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("file")});
}

void TestFiles::namesNeedNotBeUtf8()
{
    const fs::path path = m_path / "name \xFF";
    Files::writeAtomically(path, "x");
    QCOMPARE(Files::read(path), QByteArray("x"));
    QVERIFY(Files::display(path).endsWith(u"name \xFFFD"));
}

void TestFiles::descriptorsAreClosed()
{
    int number = -1;
    {
        UniqueDescriptor first(::open("/dev/null", O_RDONLY));
        number = first.get();
        UniqueDescriptor second = std::move(first);
        QVERIFY(!first); // NOLINT(bugprone-use-after-move): this is what the test checks
        QCOMPARE(second.get(), number);
        QVERIFY(::fcntl(number, F_GETFD) >= 0);
    }
    QVERIFY(::fcntl(number, F_GETFD) < 0);
}

TIDEWICK_TEST_MAIN(TestFiles)
#include "tst_files.moc"
