// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "commandline/CommandLine.h"
#include "support/Surroundings.h"

#include <vector>

using namespace tidewick;

using Arguments = std::vector<std::string>;

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void precedence();
};

void TestCommandLine::parse_data()
{
    using Window = Mode::Snapshot::Window;
    using Theme = Mode::Snapshot::Theme;
    QTest::addColumn<Arguments>("arguments");
    QTest::addColumn<AnyMode>("expected");
    const auto row = [](const char *name, const Arguments &arguments, const AnyMode &expected) {
        Arguments all{"Quaymere"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        QTest::newRow(name) << all << expected;
    };
    const Mode::Usage renderUsage{"usage: Quaymere --render-config <dir>\n"};
    const Mode::Usage describeUsage{"usage: Quaymere --describe-storage <json>\n"};
    const Mode::Usage settingsUsage{"usage: Quaymere --snapshot-settings <png> [light|dark]\n"};
    const Mode::Usage ledgerUsage{"usage: Quaymere --snapshot-ledger <png> [light|dark]\n"};
    const Mode::Usage aboutUsage{"usage: Quaymere --snapshot-about <png> [light|dark]\n"};

    row("no arguments", {}, Mode::Application{});
    row("unknown", {"--version", "-x", "file"}, Mode::Application{});
    row("no prefix", {"--render"}, Mode::Application{});
    row("no equals", {"--render-config=x"}, Mode::Application{});
    row("case-sensitive", {"--Smoke"}, Mode::Application{});
    row("spaces are significant", {"--smoke ", " --smoke"}, Mode::Application{});
    row("single dash", {"-smoke"}, Mode::Application{});
    row("empty", {""}, Mode::Application{});

    row("render", {"--render-config", "x"}, Mode::RenderConfig{"x"});
    row("render to a dash", {"--render-config", "-"}, Mode::RenderConfig{"-"});
    row("render without operand", {"--render-config"}, renderUsage);
    row("render, empty operand", {"--render-config", ""}, Mode::RenderConfig{""});
    row("render, operand like an option", {"--render-config", "--smoke"},
        Mode::RenderConfig{"--smoke"});
    row("render, operand like itself", {"--render-config", "--render-config"},
        Mode::RenderConfig{"--render-config"});
    row("render twice", {"--render-config", "a", "--render-config", "b"}, Mode::RenderConfig{"a"});
    row("render last", {"--render-config", "a", "--render-config"}, Mode::RenderConfig{"a"});
    row("render, not UTF-8", {"--render-config", "\xFF\xFE"}, Mode::RenderConfig{"\xFF\xFE"});
    row("render anywhere", {"x", "y", "--render-config", "a", "z"}, Mode::RenderConfig{"a"});

    row("version", {"--node-version"}, Mode::NodeVersion{});
    row("describe", {"--describe-storage", "{}"}, Mode::DescribeStorage{"{}"});
    row("describe without operand", {"--describe-storage"}, describeUsage);
    row("describe, empty operand", {"--describe-storage", ""}, Mode::DescribeStorage{""});
    row("describe an option", {"--describe-storage", "--smoke"}, Mode::DescribeStorage{"--smoke"});
    row("smoke", {"--smoke"}, Mode::Smoke{});

    row("settings", {"--snapshot-settings", "a.png"},
        Mode::Snapshot{Window::Settings, "a.png", Theme::Light});
    row("ledger, light", {"--snapshot-ledger", "a.png", "light"},
        Mode::Snapshot{Window::Ledger, "a.png", Theme::Light});
    row("about, dark", {"--snapshot-about", "a.png", "dark"},
        Mode::Snapshot{Window::About, "a.png", Theme::Dark});
    row("about, extra argument", {"--snapshot-about", "a.png", "dark", "x"},
        Mode::Snapshot{Window::About, "a.png", Theme::Dark});
    row("about, path like a theme", {"--snapshot-about", "dark"},
        Mode::Snapshot{Window::About, "dark", Theme::Light});
    row("settings without path", {"--snapshot-settings"}, settingsUsage);
    row("ledger without path", {"--snapshot-ledger"}, ledgerUsage);
    row("about without path", {"--snapshot-about"}, aboutUsage);
    row("settings, Dark", {"--snapshot-settings", "a.png", "Dark"}, settingsUsage);
    row("ledger, auto", {"--snapshot-ledger", "a.png", "auto"}, ledgerUsage);
    row("about, empty theme", {"--snapshot-about", "a.png", ""}, aboutUsage);
    row("about, an option as theme", {"--snapshot-about", "a.png", "--snapshot-ledger"},
        ledgerUsage);
    row("first about wins", {"--snapshot-about", "a.png", "x", "--snapshot-about", "b.png"},
        aboutUsage);

    QTest::newRow("program's own name") << Arguments{"--smoke"} << AnyMode(Mode::Smoke{});
    QTest::newRow("own name with operand")
        << Arguments{"--describe-storage", "[]"} << AnyMode(Mode::DescribeStorage{"[]"});
    QTest::newRow("no name at all") << Arguments{} << AnyMode(Mode::Application{});
}

void TestCommandLine::parse()
{
    QFETCH(Arguments, arguments);
    QFETCH(AnyMode, expected);
    QVERIFY(parseCommandLine(arguments) == expected);
}

/// Tests every option against every later one, in both orders on the command line.
void TestCommandLine::precedence()
{
    using Window = Mode::Snapshot::Window;
    const auto snapshot = [](Window window) {
        return AnyMode(Mode::Snapshot{window, "operand", Mode::Snapshot::Theme::Light});
    };
    const std::vector<std::pair<std::string, AnyMode>> order{
        {"--render-config", Mode::RenderConfig{"operand"}},
        {"--node-version", Mode::NodeVersion{}},
        {"--describe-storage", Mode::DescribeStorage{"operand"}},
        {"--smoke", Mode::Smoke{}},
        {"--snapshot-settings", snapshot(Window::Settings)},
        {"--snapshot-ledger", snapshot(Window::Ledger)},
        {"--snapshot-about", snapshot(Window::About)}};
    std::vector<std::string_view> names;
    names.reserve(order.size());
    for (const auto &[name, mode] : order)
        names.emplace_back(name);
    QCOMPARE(optionNames(), names);
    for (std::size_t first = 0; first < order.size(); ++first) {
        for (std::size_t second = first + 1; second < order.size(); ++second) {
            // The theme is given explicitly, because the next element would otherwise be taken for
            // it.
            const Arguments ahead{"Quaymere",          order[first].first, "operand", "light",
                                  order[second].first, "operand",          "light"};
            const Arguments behind{"Quaymere",         order[second].first, "operand", "light",
                                   order[first].first, "operand",           "light"};
            QVERIFY(parseCommandLine(ahead) == order[first].second);
            QVERIFY(parseCommandLine(behind) == order[first].second);
        }
    }
}

TIDEWICK_TEST_MAIN(TestCommandLine)
#include "tst_commandline.moc"
