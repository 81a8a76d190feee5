// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/SignalListener.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace tidewick {

namespace {

// Global, for the signal handler: the end it writes to, and the end the notifier reads from.
std::array<int, 2> sockets{-1, -1};

extern "C" void forwardSignal(int signalNumber)
{
    const int error = errno;
    const auto byte = static_cast<unsigned char>(signalNumber);
    // If the buffer is full, signals are already waiting to be read, and this one may be dropped.
    (void)!::write(sockets[0], &byte, 1);
    errno = error;
}

int openSockets()
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets.data()) != 0)
        qFatal("No descriptors for the signal handler's socket pair");
    return sockets[1];
}

bool isIgnored(int signalNumber)
{
    struct sigaction action
    {
    };
    return ::sigaction(signalNumber, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

SignalListener::SignalListener(std::initializer_list<int> signalNumbers, QObject *parent)
    : QObject(parent), m_notifier(openSockets(), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &SignalListener::readSignal);
    for (const int number : signalNumbers) {
        if (number == SIGHUP && isIgnored(number))
            continue;
        m_numbers.push_back(number);
        struct sigaction action
        {
        };
        action.sa_handler = forwardSignal;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
}

SignalListener::~SignalListener()
{
    for (const int number : m_numbers)
        ::signal(number, SIG_DFL);
    m_notifier.setEnabled(false);
    for (int &end : sockets) {
        ::close(end);
        end = -1;
    }
}

void SignalListener::readSignal()
{
    unsigned char byte = 0;
    if (::read(sockets[1], &byte, 1) == 1)
        emit received(byte);
}

} // namespace tidewick
