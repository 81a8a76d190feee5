// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Makes the pictures of the documentation: the tray's menu and the node panel on a separate
// desktop, and the windows with the application's snapshot modes, all with the simulated node.

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/XWindows.h"
#include "support/RunProgram.h"
#include "support/Surroundings.h"

#include <QCoreApplication>
#include <QImage>

#include <csignal>

using namespace tidewick;

namespace {

constexpr const char *scenario = "state=full peers=15 txns=40-220";

/// The area of the screen with the tray's menu, at the panel's corner.
constexpr QRect menuPlace(0, 0, 380, 478);

ChildSpec applicationSpec(std::vector<std::string> arguments = {})
{
    ChildSpec spec;
    spec.executable = TIDEWICK_QUAYMERE_PATH;
    spec.arguments = std::move(arguments);
    spec.environment["TIDEWICK_SIMNODE"] = scenario;
    return spec;
}

void require(bool condition, const char *what)
{
    if (!condition)
        qFatal("%s", what);
}

/// Runs the program and returns its output.
QByteArray command(const char *program, std::vector<std::string> arguments)
{
    ChildSpec spec;
    spec.executable = program;
    spec.arguments = std::move(arguments);
    const Outcome outcome = runProgram(spec);
    require(outcome.status == 0, (QByteArray(program) + ": " + outcome.error).constData());
    return outcome.output.trimmed();
}

/// The number of times that the node was asked for its counts, including earlier runs.
qsizetype counts()
{
    return LaunchedApplication::noted("get_counts");
}

/// Waits until the figures are shown: after the node has been asked for its counts twice more.
void waitForFigures(qsizetype countsBefore)
{
    require(waitUntil([=] { return counts() > countsBefore + 1; }), "the node shows no figures");
}

void end(Beside &application)
{
    application.send(SIGTERM);
    require(application.waitForEnd(), "the application does not end");
}

void makePanel(const std::string &file)
{
    Beside application(applicationSpec());
    require(waitUntil([] { return isWindowShown(QStringLiteral("Tidewick")); }),
            "the node panel does not open");
    waitForFigures(0);
    // Windows that are never shown have the same title.
    const QByteArray window =
        command("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", "^Tidewick$"});
    command("/usr/bin/import", {"-window", window.toStdString(), "-strip", file});
    end(application);
}

void makeTray(const SessionBus &bus, const std::string &file)
{
    TrayReader reader(bus.connection());
    require(waitUntil([&] { return reader.findItem(); }), "the tray shows no item");
    const QString picture = QString::fromStdString(file);
    const auto take = [&] {
        command("/usr/bin/import", {"-window", "root", "-strip", file});
        return QImage(picture).copy(menuPlace);
    };
    const QImage closed = take();
    command("/usr/bin/xdotool", {"mousemove", "12", "15", "click", "3"});
    command("/usr/bin/xdotool", {"mousemove", "700", "500"});
    QImage open;
    QImage before;
    require(waitUntil([&] {
                before = std::exchange(open, take());
                return open != closed && open == before;
            }),
            "the menu does not open");
    require(open.save(picture), "the tray's picture cannot be written");
}

void makeWindows(const std::string &folder)
{
    std::list<Beside> programs;
    for (const std::string window : {"ledger", "settings", "about"}) {
        for (const std::string theme : {"light", "dark"}) {
            const std::string file =
                folder + '/' + std::string(window).append("-").append(theme).append(".png");
            programs.emplace_back(applicationSpec({"--snapshot-" + window, file, theme}));
        }
    }
    for (Beside &program : programs)
        require(waitUntil([&] { return program.ending().has_value(); })
                    && program.ending()->status == 0,
                program.output().constData());
}

} // namespace

int main(int argc, char *argv[])
{
    enterPrivateLoopback();
    const TestHome home;
    const SessionBus bus;
    const XServer display;
    const QCoreApplication application(argc, argv);
    require(argc == 2, "usage: pictures FOLDER");
    const std::string folder = argv[1];

    makePanel(folder + "/panel.png");
    const DesktopPanel panel;
    require(DesktopPanel::waitForHost(bus), "no tray host came up");
    command("/usr/bin/xsetroot", {"-solid", "#dfe3e8"});
    const qsizetype before = counts();
    Beside tidewick(applicationSpec());
    waitForFigures(before);
    makeTray(bus, folder + "/tray.png");
    makeWindows(folder);
    end(tidewick);
    return 0;
}
