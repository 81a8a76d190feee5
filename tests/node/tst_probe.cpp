// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Probe.h"
#include "platform/files/Files.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QElapsedTimer>
#include <QTcpServer>

#include <csignal>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

/// A listener with a full backlog: it exists but accepts no connections.
class StuckListener
{
public:
    StuckListener()
        : m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
          m_first(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
          m_second(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto *address = reinterpret_cast<sockaddr *>(&m_address);
        socklen_t size = sizeof m_address;
        if (::bind(m_listener.get(), address, size) != 0 || ::listen(m_listener.get(), 0) != 0
            || ::getsockname(m_listener.get(), address, &size) != 0
            || ::connect(m_first.get(), address, size) != 0)
            qFatal("Cannot create a listener");
        // The backlog of one is now full; this connection stays outside it, as will the next.
        (void)::connect(m_second.get(), address, size);
    }
    quint16 port() const { return ntohs(m_address.sin_port); }

private:
    sockaddr_in m_address{};
    UniqueDescriptor m_listener;
    UniqueDescriptor m_first;
    UniqueDescriptor m_second;
};

} // namespace

class TestProbe : public QObject
{
    Q_OBJECT

private slots:
    void portTaken();
    void freePortIsReportedAtOnce();
    void portWithAFullBacklog();
    void portWaitSurvivesSignals();
    void freeSpaceOfTheVolume();
    void freeSpaceOfAMissingPath();
    void sizeCountsAllocatedBlocks();
    void sizeOmitsSkippedNames();
    void sizeDoesNotFollowLinks();
    void sizeOfAStoreBehindALink();
    void sizeOfNothing();
    void sizeOfADeepTree();
};

void TestProbe::portTaken()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QVERIFY(Probe::portInUse(server.serverPort(), 300));
    QTcpServer everywhere;
    QVERIFY(everywhere.listen(QHostAddress::AnyIPv4));
    QVERIFY(Probe::portInUse(everywhere.serverPort(), 300));
}

void TestProbe::freePortIsReportedAtOnce()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    server.close();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!Probe::portInUse(port, 30'000));
    QVERIFY(timer.elapsed() < 10'000);
}

void TestProbe::portWithAFullBacklog()
{
    const StuckListener listener;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!Probe::portInUse(listener.port(), 50));
    QVERIFY(timer.elapsed() >= 50);
    QVERIFY(!Probe::portInUse(listener.port(), 0));
    QVERIFY(!Probe::portInUse(listener.port(), -1)); // does not wait forever
}

void TestProbe::portWaitSurvivesSignals()
{
    struct sigaction action
    {
    };
    action.sa_handler = [](int) {};
    struct sigaction before
    {
    };
    ::sigaction(SIGALRM, &action, &before);
    ::ualarm(5'000, 5'000);
    const StuckListener listener;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!Probe::portInUse(listener.port(), 60));
    QVERIFY(timer.elapsed() >= 60);
    ::ualarm(0, 0);
    ::sigaction(SIGALRM, &before, nullptr);
}

void TestProbe::freeSpaceOfTheVolume()
{
    struct statvfs volume
    {
    };
    QCOMPARE(::statvfs("/", &volume), 0);
    const double expected =
        static_cast<double>(volume.f_bavail) * static_cast<double>(volume.f_frsize) / 1e9;
    const auto seen = Probe::freeGB("/");
    QVERIFY(seen);
    QVERIFY(qAbs(*seen - expected) < 1.0); // other processes write, too
}

void TestProbe::freeSpaceOfAMissingPath()
{
    const TemporaryFolder folder;
    const auto there = Probe::freeGB(folder.path());
    const auto below = Probe::freeGB(folder.path() / "a" / "b" / "c");
    QVERIFY(there && below);
    QVERIFY(qAbs(*there - *below) < 1.0);
    QVERIFY(Probe::freeGB("/no/such/folder"));
}

void TestProbe::sizeCountsAllocatedBlocks()
{
    const TemporaryFolder folder;
    const fs::path &root = folder.path();
    fs::create_directories(root / "a" / ".hidden");
    writeFile(root / "one", QByteArray(1, 'x'));
    writeFile(root / "a" / "large", QByteArray(100'000, 'x'));
    writeFile(root / "a" / ".hidden" / ".file", QByteArray(5'000, 'x'));
    writeFile(root / "sparse", {});
    fs::resize_file(root / "sparse", 1'000'000'000);
    const qint64 expected = allocatedBytes(root / "one") + allocatedBytes(root / "a" / "large")
                            + allocatedBytes(root / "a" / ".hidden" / ".file")
                            + allocatedBytes(root / "sparse");
    QCOMPARE(Probe::directorySize(root), expected);
    QVERIFY(expected < 1'000'000);
}

void TestProbe::sizeOmitsSkippedNames()
{
    const TemporaryFolder folder;
    const fs::path &root = folder.path();
    fs::create_directories(root / "nudb.tpl.d" / "below");
    fs::create_directories(root / "kept");
    writeFile(root / "nudb.tpl.d" / "below" / "file", QByteArray(50'000, 'x'));
    writeFile(root / "kept" / "nudb.tpl1", QByteArray(50'000, 'x'));
    writeFile(root / "kept" / "not.nudb.tpl", QByteArray(9'000, 'x'));
    const auto skip = [](std::string_view name) { return name.starts_with("nudb.tpl"); };
    QCOMPARE(Probe::directorySize(root, skip), allocatedBytes(root / "kept" / "not.nudb.tpl"));
}

void TestProbe::sizeDoesNotFollowLinks()
{
    const TemporaryFolder folder;
    const TemporaryFolder elsewhere;
    const fs::path &root = folder.path();
    writeFile(elsewhere.path() / "file", QByteArray(50'000, 'x'));
    fs::create_directory_symlink(elsewhere.path(), root / "folder");
    fs::create_symlink(elsewhere.path() / "file", root / "file");
    fs::create_directory_symlink(root, root / "loop");
    fs::create_symlink("nothing", root / "dangling");
    QCOMPARE(::mkfifo((root / "pipe").c_str(), 0600), 0);
    QCOMPARE(Probe::directorySize(root), 0);
}

void TestProbe::sizeOfAStoreBehindALink()
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "real");
    writeFile(folder.path() / "real" / "file", QByteArray(50'000, 'x'));
    fs::create_directory_symlink("real", folder.path() / "db");
    QCOMPARE(Probe::directorySize(folder.path() / "db"),
             allocatedBytes(folder.path() / "real" / "file"));
}

void TestProbe::sizeOfNothing()
{
    const TemporaryFolder folder;
    QCOMPARE(Probe::directorySize(folder.path() / "missing"), 0);
    QCOMPARE(Probe::directorySize(folder.path()), 0);
    writeFile(folder.path() / "file", "x");
    QCOMPARE(Probe::directorySize(folder.path() / "file"), 0);
}

void TestProbe::sizeOfADeepTree()
{
    const TemporaryFolder folder;
    fs::path deep = folder.path();
    for (int i = 0; i < 300; ++i)
        deep /= "folder";
    fs::create_directories(deep);
    writeFile(deep / "file", QByteArray(5'000, 'x'));
    QCOMPARE(Probe::directorySize(folder.path()), allocatedBytes(deep / "file"));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestProbe)
#include "tst_probe.moc"
