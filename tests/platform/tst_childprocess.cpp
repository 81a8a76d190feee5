// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/ChildProcess.h"
#include "support/NoDescriptorsLeft.h"
#include "support/Processes.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QScopeGuard>

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

ChildSpec specOf(std::vector<std::string> arguments)
{
    ChildSpec spec;
    spec.executable = TIDEWICK_CHILD_PATH;
    spec.arguments = std::move(arguments);
    return spec;
}

/// Whether the process id is in use, even if only by a zombie.
bool exists(pid_t process)
{
    return ::kill(process, 0) == 0;
}

} // namespace

class TestChildProcess : public QObject
{
    Q_OBJECT

private slots:
    void reportsItsEnding_data();
    void reportsItsEnding();
    void waitsWithoutAnEventLoop();
    void childStartsWithCleanState();
    void passesWhatWasRequested();
    void streamsMaySwapPlaces();
    void failures_data();
    void failures();
    void failsWithoutDescriptors();
    void terminateAndKill();
    void callerMayIgnoreChildSignals();
    void outlivesItsObject();
    void endsWithItsParent();

private:
    /// Runs "report" and returns its lines.
    QByteArrayList reportOf(ChildSpec spec);

    TemporaryFolder m_folder;
};

QByteArrayList TestChildProcess::reportOf(ChildSpec spec)
{
    const fs::path output = m_folder.path() / "report";
    const UniqueDescriptor file(
        ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0644));
    const UniqueDescriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    spec.standardInput = nothing.get();
    spec.standardOutput = spec.standardError = file.get();
    const auto child = ChildProcess::start(spec);
    if (child->wait().status != 0)
        qFatal("The child failed");
    return contentOf(output).split('\n');
}

void TestChildProcess::reportsItsEnding_data()
{
    QTest::addColumn<QByteArrayList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("signaled");
    QTest::newRow("0") << QByteArrayList{"exit", "0"} << 0 << false;
    QTest::newRow("3") << QByteArrayList{"exit", "3"} << 3 << false;
    QTest::newRow("255") << QByteArrayList{"exit", "255"} << 255 << false;
    QTest::newRow("256") << QByteArrayList{"exit", "256"} << 0 << false;
    for (const int number : {SIGTERM, SIGKILL, SIGSEGV, SIGABRT, SIGHUP}) {
        QTest::addRow("signal %d", number)
            << QByteArrayList{"signal", QByteArray::number(number)} << number << true;
    }
}

void TestChildProcess::reportsItsEnding()
{
    QFETCH(QByteArrayList, arguments);
    QFETCH(int, status);
    QFETCH(bool, signaled);
    const auto child =
        ChildProcess::start(specOf({arguments[0].toStdString(), arguments[1].toStdString()}));
    QSignalSpy spy(child.get(), &ChildProcess::exited);
    QVERIFY(spy.wait());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][0].toInt(), status);
    QCOMPARE(spy[0][1].toBool(), signaled);
    QVERIFY(!exists(child->id())); // no zombie
}

void TestChildProcess::waitsWithoutAnEventLoop()
{
    const ChildProcess::Ending ending = ChildProcess::start(specOf({"exit", "7"}))->wait();
    QCOMPARE(ending.status, 7);
    QVERIFY(!ending.signaled);
}

void TestChildProcess::childStartsWithCleanState()
{
    // Everything that a child could inherit: an open descriptor, a mask, an ignored signal, a
    // handler.
    const UniqueDescriptor leaked(::open("/dev/null", O_RDONLY));
    QVERIFY(leaked);
    sigset_t mask;
    sigset_t before;
    sigemptyset(&mask);
    sigaddset(&mask, SIGTERM);
    sigaddset(&mask, SIGUSR2);
    ::pthread_sigmask(SIG_BLOCK, &mask, &before);
    ::signal(SIGINT, SIG_IGN);
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGUSR1, [](int) {});

    ChildSpec spec = specOf({"report"});
    spec.ownProcessGroup = true;
    const QByteArrayList report = reportOf(spec);

    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    for (const int number : {SIGINT, SIGPIPE, SIGUSR1})
        ::signal(number, SIG_DFL);

    QVERIFY(report.contains("descriptors: 0 1 2"));
    QVERIFY(report.contains("not default:"));
    QVERIFY(report.contains("blocked:"));
    QVERIFY(report.contains("parent death: 15"));
    QVERIFY(report.contains("leads its group: 1"));
    QVERIFY(report.contains("input ends: 1"));
    QVERIFY(report.contains("on standard error"));
}

void TestChildProcess::passesWhatWasRequested()
{
    ChildSpec spec = specOf({"report", "", "two words", "--conf", "\xFF"});
    spec.environment = {{"NAME", "a=b"}, {"", "empty name"}, {"EMPTY", ""}};
    spec.workingDirectory = m_folder.path();
    const QByteArrayList report = reportOf(spec);

    QVERIFY(report.contains("leads its group: 0"));
    QVERIFY(report.contains("folder: " + QByteArray::fromStdString(m_folder.path().string())));
    QByteArrayList arguments;
    QByteArrayList environment;
    for (const QByteArray &line : report) {
        if (line.startsWith("argument: "))
            arguments += line.mid(10);
        else if (line.startsWith("environment: "))
            environment += line.mid(13);
    }
    QCOMPARE(arguments,
             (QByteArrayList{TIDEWICK_CHILD_PATH, "report", "", "two words", "--conf", "\xFF"}));
    QCOMPARE(environment, (QByteArrayList{"=empty name", "EMPTY=", "NAME=a=b"}));
}

/// Uses the output as the child's error stream and vice versa: neither stream overwrites the other.
void TestChildProcess::streamsMaySwapPlaces()
{
    const fs::path first = m_folder.path() / "first";
    const fs::path second = m_folder.path() / "second";
    const auto create = [](const fs::path &path) {
        return UniqueDescriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    };
    const UniqueDescriptor firstFile = create(first);
    const UniqueDescriptor secondFile = create(second);
    const UniqueDescriptor savedOutput(::fcntl(1, F_DUPFD_CLOEXEC, 10));
    const UniqueDescriptor savedError(::fcntl(2, F_DUPFD_CLOEXEC, 10));
    ::dup2(firstFile.get(), 1);
    ::dup2(secondFile.get(), 2);
    ChildSpec spec = specOf({"report"});
    spec.standardOutput = 2;
    spec.standardError = 1;
    const auto ending = ChildProcess::start(spec)->wait();
    ::dup2(savedOutput.get(), 1);
    ::dup2(savedError.get(), 2);

    QCOMPARE(ending.status, 0);
    QCOMPARE(contentOf(first), QByteArray("on standard error\n"));
    QVERIFY(contentOf(second).startsWith("descriptors:"));
}

void TestChildProcess::failures_data()
{
    QTest::addColumn<QString>("executable");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("message");
    const QString path = QString::fromStdString(m_folder.path().string());
    const QString child = QStringLiteral(TIDEWICK_CHILD_PATH);
    writeFile(m_folder.path() / "text", "not a program");
    ::chmod((m_folder.path() / "text").c_str(), 0755);
    writeFile(m_folder.path() / "plain", "not executable");
    ::chmod((m_folder.path() / "plain").c_str(), 0644);

    QTest::newRow("missing") << path + QStringLiteral("/none") << QString()
                             << path + QStringLiteral("/none: No such file or directory");
    QTest::newRow("a folder") << path << QString() << path + QStringLiteral(": Permission denied");
    QTest::newRow("not executable") << path + QStringLiteral("/plain") << QString()
                                    << path + QStringLiteral("/plain: Permission denied");
    QTest::newRow("no program") << path + QStringLiteral("/text") << QString()
                                << path + QStringLiteral("/text: Exec format error");
    QTest::newRow("no such folder") << child << path + QStringLiteral("/none")
                                    << path + QStringLiteral("/none: No such file or directory");
    QTest::newRow("file as folder") << child << path + QStringLiteral("/text")
                                    << path + QStringLiteral("/text: Not a directory");
}

void TestChildProcess::failures()
{
    QFETCH(QString, executable);
    QFETCH(QString, folder);
    QFETCH(QString, message);
    ChildSpec spec = specOf({"exit", "0"});
    spec.executable = executable.toStdString();
    spec.workingDirectory = folder.toStdString();
    QString seen;
    try {
        (void)ChildProcess::start(spec);
    } catch (const FileError &error) {
        seen = QString::fromUtf8(error.what());
    }
    QCOMPARE(seen, message);
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1); // no child is left over
}

void TestChildProcess::failsWithoutDescriptors()
{
    NoDescriptorsLeft exhausted;
    // From zero free descriptors up to enough: each attempt either succeeds or reports the reason,
    // and leaves nothing over.
    int failures = 0;
    while (true) {
        try {
            const auto child = ChildProcess::start(specOf({"exit", "0"}));
            QCOMPARE(child->wait().status, 0);
            break;
        } catch (const FileError &error) {
            QVERIFY(QByteArray(error.what()).endsWith(": Too many open files"));
            QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
            ++failures;
            exhausted.giveBackOne();
        }
    }
    QVERIFY(failures > 0);
}

void TestChildProcess::terminateAndKill()
{
    for (const int number : {SIGTERM, SIGKILL}) {
        const auto child = ChildProcess::start(specOf({"wait"}));
        QSignalSpy spy(child.get(), &ChildProcess::exited);
        QVERIFY(exists(child->id()));
        if (number == SIGTERM)
            child->terminate();
        else
            child->kill();
        QVERIFY(spy.wait());
        QCOMPARE(spy[0][0].toInt(), number);
        QCOMPARE(spy[0][1].toBool(), true);
    }
}

void TestChildProcess::callerMayIgnoreChildSignals()
{
    ::signal(SIGCHLD, SIG_IGN);
    const auto child = ChildProcess::start(specOf({"exit", "5"}));
    QSignalSpy spy(child.get(), &ChildProcess::exited);
    QVERIFY(spy.wait());
    QCOMPARE(spy[0][0].toInt(), 5);
}

void TestChildProcess::outlivesItsObject()
{
    auto child = ChildProcess::start(specOf({"wait"}));
    const pid_t id = child->id();
    child.reset();
    QVERIFY(exists(id));
    ::kill(id, SIGTERM);
    int status = 0;
    QCOMPARE(::waitpid(id, &status, 0), id);
    QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

void TestChildProcess::endsWithItsParent()
{
    const fs::path idFile = m_folder.path() / "grandchild";
    ChildSpec spec = specOf({TIDEWICK_CHILD_PATH, "wait", idFile.string()});
    spec.executable = TIDEWICK_PARENT_PATH;
    const auto parent = ChildProcess::start(spec);
    QTRY_VERIFY(fs::exists(idFile) && !contentOf(idFile).isEmpty());
    const pid_t grandchild = contentOf(idFile).toInt();
    QVERIFY(grandchild > 0 && runs(grandchild));
    const auto end = qScopeGuard([grandchild] {
        if (runs(grandchild))
            ::kill(grandchild, SIGKILL);
    });

    QSignalSpy spy(parent.get(), &ChildProcess::exited);
    parent->kill();
    QVERIFY(spy.wait());
    QTRY_VERIFY(!runs(grandchild));
}

TIDEWICK_TEST_MAIN(TestChildProcess)
#include "tst_childprocess.moc"
