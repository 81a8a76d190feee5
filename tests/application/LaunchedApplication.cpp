// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/LaunchedApplication.h"

#include "support/TestFiles.h"

#include <csignal>
#include <fstream>

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

std::optional<pid_t> LaunchedApplication::node() const
{
    const std::string task = std::to_string(m_process.id());
    std::ifstream children("/proc/" + task + "/task/" + task + "/children");
    pid_t child = 0;
    while (children >> child) {
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
