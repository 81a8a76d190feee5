// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/DefaultsWriter.h"
#include "faults/host/HostFaults.h"
#include "faults/host/HostTrial.h"
#include "platform/files/Defaults.h"

namespace tidewick {

namespace fs = std::filesystem;

namespace {

/// The choice that FaultRun makes, as it appears in the settings and in a configuration.
constexpr const char *chosenSetting = "roundGrowthMiB=1537";
constexpr const char *chosenGrowth = "1537";
constexpr const char *usualGrowth = "2048";

fs::path settings()
{
    return fs::path(qgetenv("XDG_CONFIG_HOME").toStdString()) / "Tidewick/settings.ini";
}

/// The configuration that "--render-config" generates from the current settings.
QByteArray rendered(FaultRun &run)
{
    const fs::path folder = fs::path(qgetenv("TMPDIR").toStdString()) / "rendered";
    const Outcome outcome = runMode(run, {"--render-config", folder});
    run.expect(!outcome.signaled && outcome.status == 0, "--render-config gives 0");
    return outcome.status == 0 ? contentOf(folder / "xrpld.cfg") : QByteArray();
}

void expectUsualGrowth(FaultRun &run)
{
    run.expect(rendered(run).contains(usualGrowth), "--render-config takes the usual values");
    expectComesUp(run, "with the defaults");
    run.expect(run.smoke("state=full").status == 0, "--smoke gives 0");
}

/// The file cannot be read, and must not be replaced by one that lacks its contents.
void tryUnreadable(FaultRun &run, fs::perms mode)
{
    const QByteArray before = contentOf(settings());
    obeyFileModes();
    fs::permissions(settings(), mode);
    expectUsualGrowth(run);
    const Outcome write = runProgram(DefaultsWriter::spec("another", 1));
    run.expect(!write.signaled && write.status == 1, "the choice to be refused with exit status 1");
    fs::permissions(settings(), fs::perms::owner_read | fs::perms::owner_write);
    run.expect(contentOf(settings()) == before, "the file to be left as it was");
    run.saw("came up with the defaults; a choice was refused; the file is as it was");
}

void tryFolderInItsPlace(FaultRun &run)
{
    const fs::path aside = settings().string() + ".aside";
    fs::rename(settings(), aside);
    fs::create_directory(settings());
    expectUsualGrowth(run);
    run.expect(runProgram(DefaultsWriter::spec("another", 1)).status == 1,
               "the choice to be refused with exit status 1");
    run.expect(fs::is_directory(settings()), "the folder to be left alone");
    fs::remove_all(settings());
    fs::rename(aside, settings());
    run.saw("came up with the defaults; a choice was refused");
}

QByteArray bytesOfAllKinds()
{
    QByteArray bytes;
    for (quint32 i = 0; i < 100'000; ++i)
        bytes += char(i * i >> 5);
    return bytes;
}

/// Whatever the file contains, the program starts, and the next choice is stored and can be read.
void tryCorrupt(FaultRun &run, const QByteArray &content)
{
    const QByteArray before = contentOf(settings());
    writeFile(settings(), content);
    run.expect(!rendered(run).isEmpty(), "a configuration");
    expectComesUp(run, "all the same");
    const Outcome write = runProgram(DefaultsWriter::spec("another", 1));
    run.expect(!write.signaled && write.status == 0, "the next choice to be stored");
    run.saw("came up; the next choice was stored");
    writeFile(settings(), before);
}

void tryHalf(FaultRun &run)
{
    tryCorrupt(run, "[General]\nroundGrow");
}

void tryGarbage(FaultRun &run)
{
    tryCorrupt(run, bytesOfAllKinds());
}

void tryZeros(FaultRun &run)
{
    tryCorrupt(run, QByteArray(4096, '\0'));
}

/// The readable parts of a damaged file are kept.
void tryPartlyCorrupt(FaultRun &run)
{
    writeFile(settings(), "\xff\xfe[[[\n" + contentOf(settings()) + "no pair\n=\n[\n");
    run.expect(rendered(run).contains(chosenGrowth), "the choice that can be read");
    run.expect(runProgram(DefaultsWriter::spec("another", 1)).status == 0,
               "the next choice to be stored");
    run.expect(contentOf(settings()).contains(chosenSetting), "the choice to be kept");
    run.saw("what could be read counted, and was kept by the next choice");
}

/// Two processes each store one number after another under their own key, while others read.
void tryTwoWriters(FaultRun &run)
{
    constexpr int times = 300;
    WatchedApplication &application = run.launch("state=full");
    Beside first(DefaultsWriter::spec("first", times));
    Beside second(DefaultsWriter::spec("second", times));
    int readings = 0;
    int wrong = 0;
    run.expect(waitUntil([&] {
                   const QByteArray content = contentOf(settings());
                   ++readings;
                   wrong += content.contains(chosenSetting) && content.endsWith('\n') ? 0 : 1;
                   return first.ending() && second.ending();
               }),
               "both to come to an end");
    for (Beside *writer : {&first, &second})
        run.expect(writer->ending() && !writer->ending()->signaled && writer->ending()->status == 0,
                   "each to read what it stored, unlike: " + writer->output());
    run.expect(wrong == 0, "never half a file");
    Defaults defaults = Defaults::standard();
    defaults.refresh();
    run.expect(defaults.integer(QStringLiteral("first")) == times
                   && defaults.integer(QStringLiteral("second")) == times,
               "the last of both to be kept");
    run.expect(application.reaches(Phase::Full), "the application comes up meanwhile");
    run.saw(QByteArray::number(2 * times) + " choices, whole in "
            + QByteArray::number(readings - wrong) + " of " + QByteArray::number(readings)
            + " readings");
}

} // namespace

std::vector<Fault> defaultsFaults()
{
    constexpr const char *unreadable =
        "comes up with the defaults; a choice is refused; the file is left as it was";
    constexpr const char *corrupt = "comes up; the next choice is stored";
    return {{"settings unreadable by their mode", unreadable,
             [](FaultRun &run) { tryUnreadable(run, fs::perms::none); }},
            {"settings that can be written and not read", unreadable,
             [](FaultRun &run) { tryUnreadable(run, fs::perms::owner_write); }},
            {"settings: a folder in their place", unreadable, tryFolderInItsPlace},
            {"settings: half a file", corrupt, tryHalf},
            {"settings: bytes of all kinds", corrupt, tryGarbage},
            {"settings: zeros", corrupt, tryZeros},
            {"settings: damaged in parts", "what can be read counts and is kept", tryPartlyCorrupt},
            {"settings written by two processes at once", "nothing lost, never half a file",
             tryTwoWriters}};
}

} // namespace tidewick
