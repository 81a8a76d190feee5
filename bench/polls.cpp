// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The cost of polling for the application compared with the bare tray program, in instructions
// counted by callgrind. These do not depend on the machine's speed or load.

#include "application/LaunchedApplication.h"
#include "application/WholeDesktop.h"
#include "bench/Measure.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <array>
#include <csignal>
#include <cstring>
#include <utility>

#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

/// Five of them request the counts, too.
constexpr int polls = 25;

/// Opens process file descriptors for programs under valgrind: receives a process id and sends the
/// file descriptor back. Works while the event loop runs.
class DescriptorServer
{
public:
    explicit DescriptorServer(const QString &path)
    {
        QLocalServer::removeServer(path);
        if (!m_server.listen(path))
            qFatal("No server: %s", qPrintable(m_server.errorString()));
        QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] { serve(); });
    }

    std::string path() const { return m_server.fullServerName().toStdString(); }

private:
    void serve()
    {
        const std::unique_ptr<QLocalSocket> client(m_server.nextPendingConnection());
        pid_t process = 0;
        while (client->bytesAvailable() < qint64{sizeof process})
            if (!client->waitForReadyRead())
                return;
        client->read(reinterpret_cast<char *>(&process), sizeof process);
        const UniqueDescriptor opened(static_cast<int>(::syscall(SYS_pidfd_open, process, 0U)));
        if (opened)
            hand(static_cast<int>(client->socketDescriptor()), opened.get());
    }

    static void hand(int socket, int descriptor)
    {
        char byte = 0;
        iovec bytes{&byte, 1};
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof descriptor)> control{};
        msghdr message{};
        message.msg_iov = &bytes;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        cmsghdr *const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof descriptor);
        std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
        if (::sendmsg(socket, &message, MSG_NOSIGNAL) != 1)
            qWarning("A descriptor was not taken");
    }

    QLocalServer m_server;
};

/// A program under callgrind, which counts only between begin() and instructions().
class Counted
{
public:
    Counted(const QTemporaryDir &folder, const char *name, ChildSpec spec)
        : m_results(folder.filePath(QString::fromUtf8(name))),
          m_program(under(m_results, std::move(spec)))
    {
    }

    pid_t id() const { return m_program.id(); }

    void begin() const { control("--instr=on"); }

    /// The number of instructions since begin().
    double instructions() const
    {
        control("--dump");
        control("--instr=off");
        const QByteArray dump = contentOf((m_results + QStringLiteral(".1")).toStdString());
        static const QRegularExpression totals(QStringLiteral("^(?:totals|summary): (\\d+)"),
                                               QRegularExpression::MultilineOption);
        const auto match = totals.match(QString::fromUtf8(dump));
        if (!match.hasMatch())
            qFatal("callgrind reports no totals");
        return match.captured(1).toDouble();
    }

    void end()
    {
        m_program.send(SIGTERM);
        if (!m_program.waitForEnd())
            qFatal("A program under callgrind does not end");
    }

private:
    static ChildSpec under(const QString &results, ChildSpec spec)
    {
        spec.arguments = {"--tool=callgrind", "--instr-atstart=no", "--quiet",
                          "--callgrind-out-file=" + results.toStdString(),
                          spec.executable.string()};
        spec.executable = "/usr/bin/valgrind";
        return spec;
    }

    void control(const char *command) const
    {
        ChildSpec spec;
        spec.executable = "/usr/bin/callgrind_control";
        spec.arguments = {command, std::to_string(id())};
        (void)processorTime(spec);
    }

    QString m_results;
    Beside m_program;
};

ChildSpec ours(const TestBundle &bundle, const DescriptorServer &descriptors)
{
    ChildSpec spec;
    spec.executable = bundle.application();
    spec.environment["TIDEWICK_SIMNODE"] = "state=full";
    spec.environment["TIDEWICK_DESCRIPTORS"] = descriptors.path();
    spec.environment["LD_PRELOAD"] = preloadable(
        PROCESS_DESCRIPTORS_PATH, std::filesystem::path(descriptors.path()).parent_path());
    return spec;
}

ChildSpec bareTray()
{
    ChildSpec spec;
    spec.executable = BARE_TRAY_PATH;
    return spec;
}

} // namespace

int main(int argc, char *argv[])
{
    const WholeDesktop desktop(argc, argv);
    const TestBundle bundle;
    const QTemporaryDir folder;

    const DescriptorServer descriptors(folder.filePath(QStringLiteral("descriptors")));

    Counted tidewick(folder, "ours", ours(bundle, descriptors));
    if (!waitUntil([] { return LaunchedApplication::noted("get_counts") > 0; }))
        qFatal("The application does not poll the node");
    Counted bare(folder, "bare", bareTray());
    const qsizetype alone = LaunchedApplication::noted("server_info");
    // The bare program's first requests, and then both at their usual pace.
    if (!waitUntil([&] { return LaunchedApplication::noted("server_info") >= alone + 8; }))
        qFatal("The bare tray program does not poll the node");

    tidewick.begin();
    bare.begin();
    const qsizetype before = LaunchedApplication::noted("server_info");
    // Both poll every 2 s.
    if (!QTest::qWaitFor(
            [&] {
                return LaunchedApplication::noted("server_info") >= before + qsizetype{2} * polls;
            },
            10 * 2'000 * polls))
        qFatal("The polls make no progress");
    const double seen = tidewick.instructions();
    const double least = bare.instructions();
    printCounts("instructions a poll / bare tray program", seen / polls, least / polls, "<= 2");
    tidewick.end();
    bare.end();
    return 0;
}
