// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "snapshots/SnapshotMode.h"

#include "node/NodeController.h"
#include "platform/files/Files.h"
#include "platform/files/Folders.h"
#include "platform/files/OutputFile.h"
#include "platform/process/Descriptors.h"
#include "platform/process/StandardStreams.h"
#include "ui/about/AboutWindow.h"
#include "ui/icon/ApplicationIcon.h"
#include "ui/ledger/LedgerWindow.h"
#include "ui/settings/SettingsWindow.h"

#include <QApplication>
#include <QBuffer>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTimer>

#include <chrono>

namespace tidewick::SnapshotMode {

namespace {

using namespace std::chrono_literals;

/// Sets an environment variable and restores its previous value on destruction.
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

/// A folder that is removed at the end. Throws FileError if it cannot be created.
std::unique_ptr<QTemporaryDir> makeScratch()
{
    const std::filesystem::path temporary = Folders::temporary();
    auto scratch =
        std::make_unique<QTemporaryDir>(Files::display(temporary / "quaymere-scratch-XXXXXX"));
    if (!scratch->isValid())
        throw FileError(temporary,
                        "no folder can be created here: " + scratch->errorString().toStdString());
    return scratch;
}

/// Creates an application that renders into memory, whether or not there is a desktop.
std::unique_ptr<QApplication> makeApplication(int &argc, char **argv)
{
    // Qt looks for a file in the runtime directory when it starts. If the directory is missing, Qt
    // creates one and leaves it behind.
    const std::unique_ptr<QTemporaryDir> runtime = makeScratch();
    const Variable runtimeVariable("XDG_RUNTIME_DIR", QFile::encodeName(runtime->path()));
    const Variable platformVariable("QT_QPA_PLATFORM", "offscreen");
    // The offscreen platform also warns about features it lacks, which is of no interest to
    // somebody who asked for a picture.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setWindowIcon(applicationIcon());
    return application;
}

/// A window and the time it needs until all of its content has arrived.
struct Scene
{
    std::unique_ptr<QWidget> window;
    std::chrono::milliseconds settling;
    /// The files that the window works with.
    std::unique_ptr<QTemporaryDir> files;
};

template <typename Window>
std::unique_ptr<QWidget> inTheme(std::unique_ptr<Window> window, Mode::Snapshot::Theme theme)
{
    window->setScheme({theme == Mode::Snapshot::Theme::Dark});
    return window;
}

/// Gives a form its full size, whatever the size of the screen.
template <typename Window>
std::unique_ptr<QWidget> whole(std::unique_ptr<Window> window, Mode::Snapshot::Theme theme)
{
    window->setBoundByScreen(false);
    return inTheme(std::move(window), theme);
}

/// Works on a copy of the user's settings file, because the window corrects the values it finds.
Scene makeSettings(NodeController &node, Mode::Snapshot::Theme theme)
{
    std::unique_ptr<QTemporaryDir> files = makeScratch();
    const std::filesystem::path copy = files->filePath(QStringLiteral("settings")).toStdString();
    const std::filesystem::path stored = Defaults::standard().file();
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(stored, error).type();
    if (type == std::filesystem::file_type::regular)
        Files::writeAtomically(copy, Files::read(stored));
    else if (type != std::filesystem::file_type::not_found)
        throw error ? FileError(stored, error) : FileError(stored, "is not a file");
    SettingsHost host;
    host.defaults = Defaults(copy);
    auto window = whole(std::make_unique<SettingsWindow>(node, std::move(host)), theme);
    return {std::move(window), 500ms, std::move(files)};
}

Scene makeLedger(Mode::Snapshot::Theme theme)
{
    auto window = std::make_unique<LedgerWindow>([](const QUrl &) { return false; });
    window->setStill(true);
    window->resize(800, 780);
    return {inTheme(std::move(window), theme), 15s, nullptr};
}

Scene makeScene(const Mode::Snapshot &mode, NodeController &node)
{
    switch (mode.window) {
    case Mode::Snapshot::Window::Settings:
        return makeSettings(node, mode.theme);
    case Mode::Snapshot::Window::Ledger:
        return makeLedger(mode.theme);
    case Mode::Snapshot::Window::About:
        return {whole(std::make_unique<AboutWindow>(node, Bundle::main().version()), mode.theme),
                500ms, nullptr};
    }
    Q_UNREACHABLE();
}

void settle(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(time);
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

bool save(QWidget &window, const std::filesystem::path &path)
{
    const QByteArray png = picture(window);
    try {
        if (!png.isEmpty())
            OutputFile::write(path, png);
        return !png.isEmpty();
    } catch (const std::exception &) {
        return false; // the message is the same, whatever the reason
    }
}

} // namespace

int run(const Mode::Snapshot &mode, char **argv)
try {
    if (!Descriptors::suffice())
        return EXIT_FAILURE;
    int argc = 1; // Qt must not parse the other arguments
    const auto application = makeApplication(argc, argv);
    // The node is never started, so nothing is written there.
    NodeController node(Folders::newTemporary("quaymere-snapshot-"));
    const Scene scene = makeScene(mode, node);
    scene.window->show();
    settle(scene.settling);
    if (save(*scene.window, mode.png))
        return EXIT_SUCCESS;
    StandardStreams::printError("cannot write " + mode.png + '\n');
    return EXIT_FAILURE;
} catch (const FileError &error) {
    StandardStreams::printError(std::string(error.what()) + '\n');
    return EXIT_FAILURE;
}

} // namespace tidewick::SnapshotMode
