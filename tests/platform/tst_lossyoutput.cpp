// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/LossyOutput.h"
#include "platform/process/StandardStreams.h"
#include "support/Surroundings.h"

#include <array>

#include <fcntl.h>
#include <unistd.h>

using namespace tidewick;

class TestLossyOutput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writesAtOnce();
    void finishesAPartialWrite();
    void dropsTextWithoutRoom();
    void signalsReadyOnlyAfterItWasFull();
    void closesWithItsReader();
    void survivesAFullDisk();
    void survivesAClosedStandardOutput();

private:
    QByteArray read(qsizetype most = 1 << 20) const;

    UniqueDescriptor m_reader;
    UniqueDescriptor m_writer;
};

void TestLossyOutput::init()
{
    StandardStreams::prepare();
    std::array<int, 2> ends{};
    QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
    m_reader = UniqueDescriptor(ends[0]);
    m_writer = UniqueDescriptor(ends[1]);
    ::fcntl(m_reader.get(), F_SETFL, O_NONBLOCK);
}

QByteArray TestLossyOutput::read(qsizetype most) const
{
    QByteArray bytes(most, '\0');
    const ssize_t count = ::read(m_reader.get(), bytes.data(), std::size_t(most));
    return bytes.first(std::max<ssize_t>(0, count));
}

void TestLossyOutput::writesAtOnce()
{
    LossyOutput output(m_writer.get());
    QVERIFY(output.write("one"));
    QVERIFY(output.write({}));
    QVERIFY(output.write("two"));
    QCOMPARE(read(), QByteArray("onetwo"));
}

void TestLossyOutput::finishesAPartialWrite()
{
    LossyOutput output(m_writer.get());
    const QByteArray text = QByteArray(100'000, 'x') + '\n';
    QVERIFY(output.write(text));
    QVERIFY(!output.write("dropped"));
    QSignalSpy ready(&output, &LossyOutput::ready);
    QByteArray all = read();
    QVERIFY(all.size() < text.size());
    QVERIFY(ready.wait());
    QVERIFY(output.write("next"));
    QCOMPARE(all + read(), text + "next");
}

void TestLossyOutput::dropsTextWithoutRoom()
{
    LossyOutput output(m_writer.get());
    const QByteArray full(::fcntl(m_writer.get(), F_GETPIPE_SZ), 'x');
    QVERIFY(output.write(full));
    QVERIFY(!output.write("dropped"));
    QCOMPARE(read(), full);
    QCOMPARE(read(), QByteArray());
    QVERIFY(output.write("next"));
    QCOMPARE(read(), QByteArray("next"));
}

void TestLossyOutput::signalsReadyOnlyAfterItWasFull()
{
    LossyOutput output(m_writer.get());
    QSignalSpy ready(&output, &LossyOutput::ready);
    QVERIFY(output.write("text"));
    QCoreApplication::processEvents();
    QCOMPARE(ready.count(), 0);
}

void TestLossyOutput::closesWithItsReader()
{
    LossyOutput output(m_writer.get());
    QVERIFY(!output.isClosed());
    m_reader.reset();
    QVERIFY(!output.write("text"));
    QVERIFY(output.isClosed());
    QVERIFY(!output.write("text"));
}

void TestLossyOutput::survivesAFullDisk()
{
    const UniqueDescriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    LossyOutput output(full.get());
    QVERIFY(!output.write("text"));
    QVERIFY(!output.isClosed());
}

/// The program has replaced the closed stream with a descriptor that cannot be written.
void TestLossyOutput::survivesAClosedStandardOutput()
{
    const UniqueDescriptor readable(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    LossyOutput output(readable.get());
    QVERIFY(!output.write("text"));
    QVERIFY(output.isClosed());
}

TIDEWICK_TEST_MAIN(TestLossyOutput)
#include "tst_lossyoutput.moc"
