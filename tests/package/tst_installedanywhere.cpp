// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "commandline/CommandLine.h"
#include "package/Installation.h"
#include "package/Tool.h"
#include "support/Surroundings.h"

#include <QDBusConnectionInterface>
#include <QSet>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

using namespace tidewick;

namespace fs = std::filesystem;

/// Tests the installed files in folders with all kinds of names, using the programs that read them.
class TestInstalledAnywhere : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void programRuns_data() { addFolders(); }
    void programRuns();
    void userUnits_data() { addFolders(); }
    void userUnits();
    void desktopEntries_data() { addFolders(); }
    void desktopEntries();
    void desktopLaunches_data() { addFolders(); }
    void desktopLaunches();
    void busStarts_data() { addFolders(); }
    void busStarts();
    void bashCompletes_data() { addFolders(); }
    void bashCompletes();
    // It treats some names as patterns in its own list of folders.
    void zshCompletes_data() { addFolders("#~[]*?"); }
    void zshCompletes();
    void fishCompletes_data() { addFolders(); }
    void fishCompletes();

private:
    static void addFolders(const char *without = "");
    fs::path installed(const char *path) const { return m_installation->prefix() / path; }
    void watchStarts() const;
    QByteArray started() const;

    std::optional<Installation> m_installation;
};

namespace {

const std::array<const char *, 2> entries{"share/applications/org.tidewick.Tidewick.desktop",
                                          "share/tidewick/autostart/org.tidewick.Tidewick.desktop"};

fs::path note()
{
    return fs::path(qgetenv("TMPDIR").toStdString()) / "started";
}

bool offersAllOptions(const QByteArray &output)
{
    return std::ranges::all_of(optionNames(), [&output](std::string_view option) {
        return output.contains(QByteArray(option.data(), qsizetype(option.size())));
    });
}

} // namespace

void TestInstalledAnywhere::addFolders(const char *without)
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"plain", "with spaces", "a b'c%d \"$e\" ü", "100%h $$HOME ${HOME}",
                             "#~[x]*?", ";&!`id`", "'", "\""}) {
        if (std::strpbrk(name, without) == nullptr)
            QTest::newRow(name) << QByteArray(name);
    }
}

void TestInstalledAnywhere::init()
{
    QFETCH(QByteArray, name);
    m_installation.emplace(name.toStdString());
}

void TestInstalledAnywhere::cleanup()
{
    m_installation.reset();
    fs::remove(note());
}

/// Replaces the installed program with one that records its own name.
void TestInstalledAnywhere::watchStarts() const
{
    fs::remove(m_installation->program());
    writeFile(m_installation->program(), "#!/bin/sh\n"
                                         "printf %s \"$0\" >\"$TMPDIR/started.new\"\n"
                                         "mv \"$TMPDIR/started.new\" \"$TMPDIR/started\"\n"
                                         // Otherwise the bus would wait for a descendant of its
                                         // child.
                                         "exit 1\n");
    fs::permissions(m_installation->program(), fs::perms::owner_all);
}

QByteArray TestInstalledAnywhere::started() const
{
    return waitUntil([] { return fs::exists(note()); }) ? contentOf(note()) : QByteArray();
}

void TestInstalledAnywhere::programRuns()
{
    ChildSpec spec;
    spec.executable = m_installation->program();
    spec.arguments = {"--render-config", "-"};
    QCOMPARE(runProgram(spec).status, 0);
}

void TestInstalledAnywhere::userUnits()
{
    const TemporaryFolder runtime;
    for (const char *name : {"tidewick.service", "app-org.tidewick.Tidewick.service"}) {
        QVERIFY(isContent({"systemd-analyze", "verify", "--user", "--man=no",
                           installed("lib/systemd/user") / name},
                          {{"XDG_RUNTIME_DIR", runtime.path()}}));
    }
}

void TestInstalledAnywhere::desktopEntries()
{
    for (const char *entry : entries)
        QVERIFY(isContent({"desktop-file-validate", installed(entry)}));
}

void TestInstalledAnywhere::desktopLaunches()
{
    watchStarts();
    for (const char *entry : entries) {
        // Otherwise the bus would be asked to start the program.
        const ProcessEnvironment withoutBus{{"DBUS_SESSION_BUS_ADDRESS", "disabled:"}};
        QVERIFY(isContent({"gio", "launch", installed(entry)}, withoutBus));
        QCOMPARE(started(), QByteArray::fromStdString(m_installation->program().string()));
        fs::remove(note());
    }
}

void TestInstalledAnywhere::busStarts()
{
    watchStarts();
    const SessionBus bus;
    const fs::path file = "dbus-1/services/org.tidewick.Tidewick.service";
    const fs::path service = fs::path(qgetenv("XDG_DATA_HOME").toStdString()) / file;
    fs::copy_file(installed("share") / file, service, fs::copy_options::overwrite_existing);
    bus.connection().interface()->call(QStringLiteral("ReloadConfig"));
    // The program exits without having become the service.
    QVERIFY(!bus.connection()
                 .interface()
                 ->startService(QStringLiteral("org.tidewick.Tidewick"))
                 .isValid());
    QCOMPARE(started(), QByteArray::fromStdString(m_installation->program().string()));
}

void TestInstalledAnywhere::bashCompletes()
{
    const Outcome outcome = runTool(
        {"bash", "-euc",
         ". \"$1\"; COMP_WORDS=(quaymere --) COMP_CWORD=1; _quaymere; echo \"${COMPREPLY[@]}\"",
         "test", installed("share/bash-completion/completions/quaymere")});
    QCOMPARE(outcome.error, QByteArray());
    QVERIFY2(offersAllOptions(outcome.output), outcome.output);
}

void TestInstalledAnywhere::zshCompletes()
{
    const char *script = "fpath=(\"$1\" $fpath); autoload -Uz compinit; compinit -uD; "
                         "autoload +X $_comps[quaymere]; functions $_comps[quaymere]";
    const Outcome outcome =
        runTool({"zsh", "-fc", script, "test", installed("share/zsh/site-functions")});
    QCOMPARE(outcome.error, QByteArray());
    QVERIFY2(offersAllOptions(outcome.output), outcome.output);
}

void TestInstalledAnywhere::fishCompletes()
{
    const Outcome outcome = runTool({"fish", "-c", "complete -C 'quaymere --'"},
                                    {{"XDG_DATA_DIRS", installed("share")},
                                     {"PATH", installed("bin").string() + ":/usr/bin:/bin"}});
    QCOMPARE(outcome.error, QByteArray());
    QVERIFY2(offersAllOptions(outcome.output), outcome.output);
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestInstalledAnywhere)
#include "tst_installedanywhere.moc"
