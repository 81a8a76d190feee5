// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/StandardStreams.h"
#include "support/Surroundings.h"
#include "ui/SampleStatus.h"
#include "ui/terminal/TerminalFace.h"

#include <array>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace tidewick;

/// The face when its output is not a terminal: files, pipes, the journal.
class TestTerminalFaceLines : public QObject
{
    Q_OBJECT

private slots:
    void init() { StandardStreams::prepare(); }
    void linesOfARun();
    void adviceOfARun();
    void errorsOfARun();
    void plainAndBounded();
    void closedReader();
    void fullDisk();
    void slowReader_data();
    void slowReader();
    void readerThatNeverReads();
};

namespace {

struct Pipe
{
    explicit Pipe(bool isSocket = false)
    {
        std::array<int, 2> ends{};
        const int failed = isSocket
                               ? ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data())
                               : ::pipe2(ends.data(), O_CLOEXEC);
        if (failed)
            qFatal("No pipe");
        reader = UniqueDescriptor(ends[0]);
        writer = UniqueDescriptor(ends[1]);
        ::fcntl(reader.get(), F_SETFL, O_NONBLOCK);
    }

    /// Everything that has arrived since the last call.
    QByteArray read() const
    {
        QByteArray all;
        QByteArray some(65536, '\0');
        for (ssize_t count = 0;
             (count = ::read(reader.get(), some.data(), std::size_t(some.size()))) > 0;)
            all += some.first(count);
        return all;
    }

    UniqueDescriptor reader;
    UniqueDescriptor writer;
};

} // namespace

void TestTerminalFaceLines::linesOfARun()
{
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "output";
    const UniqueDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    {
        TerminalFace face(file.get());
        NodeStatus status;
        face.show(status);
        status.phase = Phase::Syncing;
        status.detail = QStringLiteral("Catching up (tracking)");
        face.show(status);
        status.ledger = QStringLiteral("#5");
        status.ledgerSeq = 5;
        status.peers = 3;
        status.timeLeft = QStringLiteral("1h");
        face.show(status);
        status.storage = QStringLiteral("Storage: trimming");
        face.show(status);
        face.show(status);
        status.detail.clear();
        face.show(status);
        status.detail = QStringLiteral("Catching up (tracking)");
        face.show(status);
    }
    QCOMPARE(contentOf(path),
             QByteArray("Stopped\n"
                        "Syncing… · Catching up (tracking)\n"
                        "Syncing… · Catching up (tracking) · Storage: trimming\n"
                        "Syncing… · Storage: trimming\n"
                        "Syncing… · Catching up (tracking) · Storage: trimming\n"));
}

/// A line for each cause, but none for each change of the seconds in its text.
void TestTerminalFaceLines::adviceOfARun()
{
    const Pipe pipe;
    TerminalFace face(pipe.writer.get());
    NodeStatus status = sampleStatus();
    status.storage.reset();
    face.show(status);
    (void)pipe.read();
    for (const char *text : {"No answer for 30 s.", "No answer for 40 s.", "No answer for 50 s."}) {
        status.advice = Advice{Advice::Cause::NoAnswer, QString::fromLatin1(text)};
        face.show(status);
    }
    QCOMPARE(pipe.read(), QByteArray("Full · Following mainnet · No answer for 30 s.\n"));
    status.advice = Advice{Advice::Cause::WrongClock, QStringLiteral("Look at\x1b[2J the clock.")};
    face.show(status);
    QCOMPARE(pipe.read(), QByteArray("Full · Following mainnet · Look at [2J the clock.\n"));
    status.advice.reset();
    face.show(status);
    QCOMPARE(pipe.read(), QByteArray("Full · Following mainnet\n"));
}

void TestTerminalFaceLines::errorsOfARun()
{
    const Pipe pipe;
    TerminalFace face(pipe.writer.get());
    NodeStatus status;
    status.phase = Phase::Error;
    status.detail = QStringLiteral("Exited with status 1");
    status.errorText = QStringLiteral("first\n\n  \x1b[31mred\tline\r\n");
    face.show(status);
    QCOMPARE(pipe.read(), QByteArray("Error · Exited with status 1\n"
                                     "first\n"
                                     "\n"
                                     "   [31mred line\n"));
    status.peers = 1;
    face.show(status);
    QCOMPARE(pipe.read(), QByteArray());

    status.errorText = QStringLiteral("another");
    face.show(status);
    QCOMPARE(pipe.read(), QByteArray("another\n"));
    status.errorText.reset();
    face.show(status);
    status.errorText = QStringLiteral("another");
    face.show(status);
    QCOMPARE(pipe.read(), QByteArray("another\n"));
}

void TestTerminalFaceLines::plainAndBounded()
{
    const Pipe pipe;
    TerminalFace face(pipe.writer.get());
    NodeStatus status;
    status.detail = QStringLiteral("a\nb\u202e\x1b]0;title\x07") + QString(1 << 20, u'x');
    face.show(status);
    const QByteArray line = pipe.read();
    QVERIFY(line.startsWith("Stopped · a b ]0;title xxx"));
    QVERIFY(line.endsWith("xxx…\n"));
    QVERIFY(line.size() < 1100);

    status.errorText = QString(1 << 20, u'日');
    face.show(status);
    QCOMPARE(pipe.read(), QString(999, u'日').toUtf8() + "…\n");

    status.errorText = (QString(900, u'x') + u'\n').repeated(1000);
    face.show(status);
    const QByteArray error = pipe.read();
    QVERIFY(error.size() < 65536 + 10);
    QVERIFY(error.endsWith("xxx\n…\n"));
}

void TestTerminalFaceLines::closedReader()
{
    Pipe pipe;
    TerminalFace face(pipe.writer.get());
    face.show({});
    pipe.reader.reset();
    face.show(sampleStatus());
    face.show({});
}

void TestTerminalFaceLines::fullDisk()
{
    const UniqueDescriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    TerminalFace face(full.get());
    face.show({});
    face.show(sampleStatus());
}

void TestTerminalFaceLines::slowReader_data()
{
    QTest::addColumn<bool>("isSocket");
    QTest::newRow("pipe") << false;
    QTest::newRow("socket, which cannot be opened again") << true;
}

/// Some lines may be dropped, but those written are complete and the last one is current.
void TestTerminalFaceLines::slowReader()
{
    QFETCH(bool, isSocket);
    const Pipe pipe(isSocket);
    TerminalFace face(pipe.writer.get());
    NodeStatus status;
    for (int i = 0; i < 3000; ++i) {
        status.detail = QStringLiteral("%1 ").arg(i) + QString(700, u'x');
        face.show(status);
    }
    status.detail = QStringLiteral("the end");
    status.errorText = QStringLiteral("an error");
    face.show(status);
    QCOMPARE(::fcntl(pipe.writer.get(), F_GETFL) & O_NONBLOCK, 0);

    QByteArray all;
    QTRY_VERIFY((all += pipe.read()).endsWith("Stopped · the end\nan error\n"));
    const QByteArrayList lines = all.split('\n');
    QVERIFY(lines.size() > 10);
    QVERIFY(lines.size() < 3000);
    for (const QByteArray &line : lines.first(lines.size() - 3))
        QVERIFY2(line.startsWith("Stopped · ") && line.endsWith(" " + QByteArray(700, 'x')), line);
}

void TestTerminalFaceLines::readerThatNeverReads()
{
    const Pipe pipe;
    NodeStatus status;
    {
        TerminalFace face(pipe.writer.get());
        for (int i = 0; i < 100; ++i) {
            status.detail = QString::number(i);
            status.errorText = (QString::number(i) + QString(900, u'x') + u'\n').repeated(70);
            face.show(status);
        }
        QCoreApplication::processEvents();
    }
    QVERIFY(pipe.read().size() <= 65536);
}

TIDEWICK_TEST_MAIN(TestTerminalFaceLines)
#include "tst_terminalface_lines.moc"
