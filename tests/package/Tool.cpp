// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "package/Tool.h"

#include <QtDebug>

namespace tidewick {

Outcome runTool(std::vector<std::string> words, const ProcessEnvironment &variables)
{
    ChildSpec spec;
    spec.executable = "/usr/bin/env";
    spec.arguments = std::move(words);
    for (const auto &[name, value] : variables)
        spec.environment[name] = value;
    return runProgram(std::move(spec));
}

bool isContent(const std::vector<std::string> &words, const ProcessEnvironment &variables)
{
    const Outcome outcome = runTool(words, variables);
    if (!outcome.signaled && outcome.status == 0 && outcome.error.isEmpty())
        return true;
    qWarning("%s ended with %d:\n%s%s", words.front().c_str(), outcome.status,
             outcome.output.constData(), outcome.error.constData());
    return false;
}

} // namespace tidewick
