// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "commandline/CommandLine.h"

#include "Checks.h"

#include <QByteArrayList>

#include <algorithm>
#include <vector>

using namespace tidewick;
using Fuzzing::require;

namespace {

using Arguments = std::vector<std::string>;

/// In order of precedence.
const Arguments options{"--render-config",     "--node-version",    "--describe-storage", "--smoke",
                        "--snapshot-settings", "--snapshot-ledger", "--snapshot-about"};

Arguments split(const QByteArray &bytes)
{
    Arguments arguments;
    for (const QByteArray &argument : bytes.split('\0'))
        arguments.push_back(argument.toStdString());
    return arguments;
}

/// The index of the option that the mode belongs to, or one past the end if there is none.
std::size_t rankOf(const AnyMode &mode)
{
    struct Rank
    {
        std::size_t operator()(const Mode::RenderConfig &) const { return 0; }
        std::size_t operator()(const Mode::NodeVersion &) const { return 1; }
        std::size_t operator()(const Mode::DescribeStorage &) const { return 2; }
        std::size_t operator()(const Mode::Smoke &) const { return 3; }
        std::size_t operator()(const Mode::Snapshot &mode) const
        {
            return 4 + static_cast<std::size_t>(mode.window);
        }
        std::size_t operator()(const Mode::Usage &mode) const
        {
            const auto named = std::find_if(options.begin(), options.end(), [&](const auto &name) {
                return mode.message.find(name) != std::string_view::npos;
            });
            require(mode.message.ends_with('\n') && named != options.end(),
                    "usage names an option");
            return static_cast<std::size_t>(named - options.begin());
        }
        std::size_t operator()(const Mode::Application &) const { return options.size(); }
    };
    return std::visit(Rank(), mode);
}

/// The operand of the mode, or null if it has none.
const std::string *operandOf(const AnyMode &mode)
{
    if (const auto *render = std::get_if<Mode::RenderConfig>(&mode))
        return &render->directory;
    if (const auto *describe = std::get_if<Mode::DescribeStorage>(&mode))
        return &describe->json;
    if (const auto *snapshot = std::get_if<Mode::Snapshot>(&mode))
        return &snapshot->png;
    return nullptr;
}

std::size_t firstRankIn(const Arguments &arguments)
{
    const auto first =
        std::find_first_of(options.begin(), options.end(), arguments.begin(), arguments.end());
    return static_cast<std::size_t>(first - options.begin());
}

} // namespace

/// Fuzzes the list of arguments, separated by NULs.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Arguments arguments = split(Fuzzing::bytesOf(data, size));
    const AnyMode mode = parseCommandLine(arguments);
    const std::size_t rank = rankOf(mode);
    require(rank == firstRankIn(arguments), "the option of highest precedence decides");
    if (const std::string *operand = operandOf(mode)) {
        const auto option = std::find(arguments.begin(), arguments.end(), options.at(rank));
        require(option + 1 != arguments.end() && *operand == option[1],
                "the operand follows its option");
    }

    Arguments more = arguments;
    more.insert(more.begin(), "Quaymere");
    require(parseCommandLine(more) == mode, "arguments before the option do not matter");
    return 0;
}
