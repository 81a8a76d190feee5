// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// A program that tests start as a child process. Its first argument selects what it does:
//   exit N       exits with status N
//   signal N     is terminated by signal N
//   report       prints what it inherited, one item per line, and exits
//   wait         prints "ready" and runs until it is terminated
//   ignore-terminate   the same, but ignores SIGTERM
//   count-terminate    prints "ready", then how many SIGTERMs it received; exits when no
//                      more have arrived for half a second
// It links no libraries, so that it reports exactly what it inherited, unchanged by a library.

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

std::string openDescriptors()
{
    std::string list;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) >= 0)
            list += ' ' + std::to_string(descriptor);
    }
    return list;
}

std::string signalsNotDefault()
{
    std::string list;
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action
        {
        };
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_DFL)
            list += ' ' + std::to_string(number);
    }
    return list;
}

std::string signalsBlocked()
{
    sigset_t mask;
    ::sigprocmask(SIG_SETMASK, nullptr, &mask);
    std::string list;
    for (int number = 1; number < NSIG; ++number) {
        if (sigismember(&mask, number) == 1)
            list += ' ' + std::to_string(number);
    }
    return list;
}

void report(int argc, char **argv)
{
    int parentDeathSignal = 0;
    ::prctl(PR_GET_PDEATHSIG, &parentDeathSignal);
    char byte = 0;
    const bool inputEnds = ::read(STDIN_FILENO, &byte, 1) == 0;

    std::cout << "descriptors:" << openDescriptors() << "\n";
    std::cout << "not default:" << signalsNotDefault() << "\n";
    std::cout << "blocked:" << signalsBlocked() << "\n";
    std::cout << "parent death: " << parentDeathSignal << "\n";
    std::cout << "leads its group: " << (::getpgrp() == ::getpid()) << "\n";
    std::cout << "input ends: " << inputEnds << "\n";
    std::cout << "folder: " << std::filesystem::current_path().string() << "\n";
    for (int i = 0; i < argc; ++i)
        std::cout << "argument: " << argv[i] << "\n";
    for (char **entry = environ; *entry != nullptr; ++entry)
        std::cout << "environment: " << *entry << "\n";
    std::cerr << "on standard error\n";
}

void countTerminate()
{
    sigset_t terminate;
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &terminate, nullptr);
    std::cout << "ready" << std::endl;
    int number = 0;
    ::sigwait(&terminate, &number);
    int count = 1;
    constexpr timespec patience{0, 500'000'000};
    while (::sigtimedwait(&terminate, nullptr, &patience) == SIGTERM)
        ++count;
    std::cout << "told " << count << std::endl;
}

[[noreturn]] void waitForEver()
{
    while (true)
        ::pause();
}

} // namespace

int main(int argc, char **argv)
{
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "exit")
        return std::atoi(argv[2]);
    if (what == "signal") {
        const rlimit noCore{};
        ::setrlimit(RLIMIT_CORE, &noCore);
        ::raise(std::atoi(argv[2]));
    }
    if (what == "report") {
        report(argc, argv);
        return EXIT_SUCCESS;
    }
    if (what == "count-terminate") {
        countTerminate();
        return EXIT_SUCCESS;
    }
    if (what == "ignore-terminate")
        ::signal(SIGTERM, SIG_IGN);
    if (what == "wait" || what == "ignore-terminate") {
        std::cout << "ready" << std::endl;
        waitForEver();
    }
    return EXIT_FAILURE;
}
