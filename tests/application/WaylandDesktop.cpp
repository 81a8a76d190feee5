// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/WaylandDesktop.h"

#include "support/RunProgram.h"
#include "support/TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

#include <unistd.h>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

fs::path runtime()
{
    return qgetenv("XDG_RUNTIME_DIR").toStdString();
}

/// The words that make root somebody else, in its own eyes, for the command that follows.
std::vector<std::string> asCompositor()
{
    if (::geteuid() != 0)
        return {};
    return {"unshare", "--user", "--map-user=1000"};
}

/// The compositor writes the names of its sockets to a file.
ChildSpec compositorSpec(const fs::path &names)
{
    const std::string file = '\'' + names.string() + '\'';
    writeFile(runtime() / "compositor",
              QByteArray::fromStdString("output HEADLESS-1 mode 1280x800\n"
                                        "xwayland disable\n"
                                        "focus_on_window_activation focus\n"
                                        "exec printf '%s\\n%s\\n' $WAYLAND_DISPLAY $SWAYSOCK >"
                                        + file + ".new && mv " + file + ".new " + file + '\n'));
    ChildSpec spec;
    spec.executable = "/usr/bin/env";
    spec.arguments = asCompositor();
    spec.arguments.insert(spec.arguments.end(), {"sway", "--config", runtime() / "compositor"});
    spec.environment["WLR_BACKENDS"] = "headless";
    spec.environment["WLR_LIBINPUT_NO_DEVICES"] = "1";
    spec.environment["WLR_RENDERER"] = "pixman";
    return spec;
}

ChildSpec panelSpec()
{
    writeFile(runtime() / "panel", R"({"layer": "top", "modules-right": ["tray"]})");
    writeFile(runtime() / "panel.css", "");
    ChildSpec spec;
    spec.executable = "/usr/bin/waybar";
    spec.arguments = {"--config", runtime() / "panel", "--style", runtime() / "panel.css"};
    spec.environment["XDG_DATA_DIRS"] = "/usr/share";
    return spec;
}

Outcome run(std::vector<std::string> words)
{
    ChildSpec spec;
    spec.executable = "/usr/bin/env";
    spec.arguments = std::move(words);
    return runProgram(std::move(spec));
}

/// Whether the predicate holds for the description of a window or of anything that contains one.
bool anyNode(const QJsonObject &node, const std::function<bool(const QJsonObject &)> &predicate)
{
    if (predicate(node))
        return true;
    for (const char *children : {"nodes", "floating_nodes"}) {
        const QJsonArray nodes = node[QLatin1String(children)].toArray();
        for (const auto &child : nodes) {
            if (anyNode(child.toObject(), predicate))
                return true;
        }
    }
    return false;
}

bool isWindow(const QJsonObject &node, const QByteArray &title)
{
    return node[QLatin1String("name")].toString() == QString::fromUtf8(title)
           && node.contains(QLatin1String("app_id"));
}

} // namespace

bool WaylandDesktop::canRun()
{
    std::vector<std::string> words = asCompositor();
    words.emplace_back("true");
    return run(std::move(words)).status == 0;
}

WaylandDesktop::WaylandDesktop(const SessionBus &bus)
{
    const fs::path names = runtime() / "compositor.names";
    m_compositor = std::make_unique<Beside>(compositorSpec(names));
    if (!waitUntil([&] { return fs::exists(names) || m_compositor->ending(); })
        || m_compositor->ending())
        qFatal("The compositor does not run: %s", m_compositor->output().constData());
    const QByteArrayList lines = contentOf(names).split('\n');
    qputenv("WAYLAND_DISPLAY", lines.value(0));
    qputenv("SWAYSOCK", lines.value(1));
    m_panel = std::make_unique<Beside>(panelSpec());
    if (!DesktopPanel::waitForHost(bus))
        qFatal("The panel has no tray: %s", m_panel->output().constData());
}

WaylandDesktop::~WaylandDesktop()
{
    qunsetenv("WAYLAND_DISPLAY");
    qunsetenv("SWAYSOCK");
}

bool WaylandDesktop::hasWindow(const QByteArray &title)
{
    return anyNode(tree(), [&](const QJsonObject &node) { return isWindow(node, title); });
}

bool WaylandDesktop::hasFocus(const QByteArray &title)
{
    return anyNode(tree(), [&](const QJsonObject &node) {
        return isWindow(node, title) && node[QLatin1String("focused")].toBool();
    });
}

QJsonObject WaylandDesktop::tree()
{
    return QJsonDocument::fromJson(run({"swaymsg", "--raw", "--type", "get_tree"}).output).object();
}

bool WaylandDesktop::tell(const std::string &command)
{
    return run({"swaymsg", "--quiet", command}).status == 0;
}

bool WaylandDesktop::press(const char *key)
{
    return run({"wtype", "-k", key}).status == 0;
}

QByteArray WaylandDesktop::clipboard()
{
    return run({"wl-paste", "--no-newline"}).output;
}

} // namespace tidewick
