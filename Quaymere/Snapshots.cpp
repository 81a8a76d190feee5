// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Snapshots.h"

#include "node/NodeController.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/StandardStreams.h"
#include "ui/AboutWindow.h"
#include "ui/AppIcon.h"
#include "ui/LedgerWindow.h"
#include "ui/SettingsWindow.h"

#include <QApplication>
#include <QBuffer>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTimer>
#include <QUuid>

#include <chrono>

#include <fcntl.h>

namespace tidewick::Snapshots {

namespace {

using namespace std::chrono_literals;

/// A variable of the environment, with another value for a while.
class Variable
{
public:
    Variable(const char *name, const QByteArray &value)
        : m_name(name), m_wasSet(qEnvironmentVariableIsSet(name)), m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;
    ~Variable()
    {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }

private:
    const char *m_name;
    bool m_wasSet;
    QByteArray m_before;
};

/// The application that draws into memory, whatever desktop there is or is not.
std::unique_ptr<QApplication> makeApplication(int &argc, char **argv)
{
    // Qt looks for a file in the runtime directory when it starts. Where that is missing it would
    // make one, and leave it.
    const QTemporaryDir runtime(Files::display(Folders::temporary() / "quaymere-snapshot-XXXXXX"));
    const Variable runtimeVariable("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
    const Variable platformVariable("QT_QPA_PLATFORM", "offscreen");
    // It also tells what a display in memory cannot do, which is not for somebody who asked for a
    // picture.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setWindowIcon(applicationIcon());
    return application;
}

/// A window with the time it takes until everything in it has come.
struct Scene
{
    std::unique_ptr<QWidget> window;
    std::chrono::milliseconds settling;
};

template <typename Window>
std::unique_ptr<QWidget> inTheme(std::unique_ptr<Window> window, Mode::Snapshot::Theme theme)
{
    window->setDark(theme == Mode::Snapshot::Theme::Dark);
    return window;
}

template <typename Window>
std::unique_ptr<Window> form(NodeController &node)
{
    auto window = std::make_unique<Window>(node);
    window->setBoundByScreen(false);
    return window;
}

Scene makeScene(const Mode::Snapshot &mode, NodeController &node)
{
    switch (mode.window) {
    case Mode::Snapshot::Window::Settings:
        return {inTheme(form<SettingsWindow>(node), mode.theme), 500ms};
    case Mode::Snapshot::Window::About:
        return {inTheme(form<AboutWindow>(node), mode.theme), 500ms};
    case Mode::Snapshot::Window::Ledger: {
        auto window = std::make_unique<LedgerWindow>([](const QUrl &) { return false; });
        window->setStill(true);
        window->resize(800, 780);
        return {inTheme(std::move(window), mode.theme), 15s};
    }
    }
    Q_UNREACHABLE();
}

/// For the controller to have one; it is never started, so nothing is written there.
std::filesystem::path scratchDirectory()
{
    const QString unique = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    return Folders::temporary() / ("quaymere-snapshot-" + unique.toStdString());
}

void settle(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

QByteArray picture(QWidget &window)
{
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !window.grab().save(&buffer, "PNG"))
        png.clear();
    return png;
}

/// Whole or not at all, except where the path names something else than a file, a pipe for one.
void write(const std::filesystem::path &path, const QByteArray &png)
{
    if (!std::filesystem::exists(path) || std::filesystem::is_regular_file(path))
        return Files::writeAtomically(std::filesystem::weakly_canonical(path), png);
    const UniqueDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file || !Files::writeAll(file.get(), png.constData(), std::size_t(png.size())))
        throw FileError::fromErrno(path);
}

bool save(QWidget &window, const std::filesystem::path &path)
{
    const QByteArray png = picture(window);
    try {
        if (!png.isEmpty())
            write(path, png);
        return !png.isEmpty();
    } catch (const std::exception &) {
        return false; // what is said of it is the same, whatever the reason
    }
}

} // namespace

int run(const Mode::Snapshot &mode, char **argv)
{
    int argc = 1; // the rest is not for Qt to read
    const auto application = makeApplication(argc, argv);
    NodeController node(scratchDirectory(), NodeHost());
    const Scene scene = makeScene(mode, node);
    scene.window->show();
    settle(scene.settling);
    if (save(*scene.window, mode.png))
        return EXIT_SUCCESS;
    StandardStreams::printError("cannot write " + mode.png + '\n');
    return EXIT_FAILURE;
}

} // namespace tidewick::Snapshots
