// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/LaunchedApplication.h"

#include "support/Processes.h"
#include "support/TestFiles.h"

#include <csignal>

namespace tidewick {

namespace {

ChildSpec specOf(const TestBundle &bundle, const QByteArray &scenario,
                 const ProcessEnvironment &variables)
{
    ChildSpec spec;
    spec.executable = bundle.application();
    spec.environment["TIDEWICK_SIMNODE"] = scenario.toStdString();
    for (const auto &[name, value] : variables) {
        if (value.empty())
            spec.environment.erase(name);
        else
            spec.environment[name] = value;
    }
    return spec;
}

} // namespace

LaunchedApplication::LaunchedApplication(const TestBundle &bundle, const QByteArray &scenario,
                                         const ProcessEnvironment &variables)
    : m_process(specOf(bundle, scenario, variables))
{
}

bool LaunchedApplication::endsWell(int signalNumber)
{
    m_process.send(signalNumber);
    return m_process.waitForEnd() && !m_process.ending()->signaled
           && m_process.ending()->status == 0;
}

pid_t LaunchedApplication::application() const
{
    const std::vector<pid_t> children = childrenOf(m_process.id());
    return children.empty() ? 0 : children.front();
}

void LaunchedApplication::signalApplication(int signalNumber) const
{
    if (const pid_t process = application())
        ::kill(process, signalNumber);
}

void LaunchedApplication::killBoth()
{
    signalApplication(SIGKILL);
    m_process.send(SIGKILL);
}

std::optional<pid_t> LaunchedApplication::node() const
{
    for (const pid_t child : childrenOf(application())) {
        std::error_code error;
        const auto program =
            std::filesystem::read_symlink("/proc/" + std::to_string(child) + "/exe", error);
        if (program.filename() == "xrpld")
            return child;
    }
    return std::nullopt;
}

QByteArray LaunchedApplication::debugLog()
{
    const std::filesystem::path log = applicationData() / "debug.log";
    return std::filesystem::exists(log) ? contentOf(log) : QByteArray();
}

std::filesystem::path applicationData()
{
    return std::filesystem::path(qgetenv("XDG_DATA_HOME").toStdString()) / "Tidewick";
}

} // namespace tidewick
