// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Beside.h"

#include <QStandardPaths>
#include <QtTest>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// Operations can be slow on a heavily loaded machine; a test that has to wait this long has
/// failed.
constexpr int ampleMs = 60'000;
constexpr int patienceMs = 5'000;

std::filesystem::path found(const char *program)
{
    const QString path = QStandardPaths::findExecutable(QString::fromLatin1(program));
    if (path.isEmpty())
        qFatal("%s is not installed", program);
    return path.toStdString();
}

ChildSpec specOf(const char *program, std::vector<std::string> arguments)
{
    ChildSpec spec;
    spec.executable = found(program);
    spec.arguments = std::move(arguments);
    return spec;
}

} // namespace

bool waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, ampleMs);
}

Beside::Beside(const char *program, std::vector<std::string> arguments)
    : Beside(specOf(program, std::move(arguments)))
{
}

Beside::Beside(ChildSpec spec) : m_child(start(spec, m_read))
{
    QObject::connect(m_child.get(), &ChildProcess::exited, m_child.get(),
                     [this](int status, bool signaled) {
                         m_ending = {status, signaled};
                     });
}

std::unique_ptr<ChildProcess> Beside::start(ChildSpec &spec, UniqueDescriptor &output)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        qFatal("Cannot create a pipe");
    output = UniqueDescriptor(ends[0]);
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    const UniqueDescriptor write(ends[1]);
    const UniqueDescriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    spec.standardInput = nothing.get();
    spec.standardOutput = write.get();
    spec.standardError = write.get();
    return ChildProcess::start(spec);
}

Beside::~Beside()
{
    if (m_ending)
        return;
    // Ask it to exit first, so that it can stop what it has started; kill it if it does not
    // respond.
    m_child->terminate();
    const UniqueDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, m_child->id(), 0U)));
    pollfd end{process.get(), POLLIN, 0};
    if (::poll(&end, 1, patienceMs) <= 0)
        m_child->kill();
    m_child->wait();
}

void Beside::send(int signalNumber)
{
    if (!m_ending)
        ::kill(m_child->id(), signalNumber);
}

bool Beside::waitForEnd() const
{
    return waitUntil([this] { return m_ending.has_value(); });
}

const QByteArray &Beside::output()
{
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = ::read(m_read.get(), buffer.data(), buffer.size())) > 0)
        m_output.append(buffer.data(), count);
    return m_output;
}

QByteArray Beside::readyLine(const std::function<bool(const QByteArray &)> &isTheOne)
{
    qsizetype begin = 0;
    while (true) {
        const qsizetype end = output().indexOf('\n', begin);
        if (end >= 0) {
            QByteArray line = m_output.mid(begin, end - begin);
            if (isTheOne(line))
                return line;
            begin = end + 1;
            continue;
        }
        pollfd more{m_read.get(), POLLIN, 0};
        if (::poll(&more, 1, ampleMs) <= 0 || (more.revents & POLLIN) == 0)
            qFatal("The program did not become ready: %s", m_output.constData());
    }
}

} // namespace tidewick
