// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "commandline/CommandLine.h"
#include "package/Tool.h"
#include "support/Surroundings.h"

#include <QRegularExpression>
#include <QSet>

using namespace tidewick;

namespace fs = std::filesystem;

/// Tests the files installed next to the bundle: the programs that read them accept them, and they
/// describe what the program does.
class TestInstalledFiles : public QObject
{
    Q_OBJECT

private slots:
    void metainfo();
    void manualPage();
    void serviceIsNamedAsTheEntry();

    void manualPageCoversEachOption();
    void manualPageCoversEachVariable();
    void bashCompletes_data();
    void bashCompletes();
    void fishCompletes_data();
    void fishCompletes();
    void zshKnowsEachOption();

private:
    static void addCompletions();
};

namespace {

const fs::path packaging = fs::path(TIDEWICK_SOURCE) / "packaging";

QSet<QByteArray> allOptions()
{
    QSet<QByteArray> names;
    for (const std::string_view name : optionNames())
        names.insert(QByteArray(name.data(), qsizetype(name.size())));
    return names;
}

/// The first group of the pattern at each match.
QSet<QByteArray> allIn(const fs::path &file, const char *pattern)
{
    QSet<QByteArray> found;
    const QRegularExpression expression(QString::fromLatin1(pattern));
    auto match = expression.globalMatch(QString::fromUtf8(contentOf(file)));
    while (match.hasNext())
        found.insert(match.next().captured(1).toUtf8());
    return found;
}

QSet<QByteArray> wordsOf(const QByteArray &text)
{
    const QList<QByteArray> words = text.simplified().split(' ');
    QSet<QByteArray> result(words.begin(), words.end());
    result.remove(QByteArray());
    return result;
}

} // namespace

void TestInstalledFiles::metainfo()
{
    const fs::path file =
        fs::path(TIDEWICK_BUILD) / "packaging" / "org.tidewick.Tidewick.metainfo.xml";
    QVERIFY(isContent({"appstreamcli", "validate", "--no-net", file}));
    QVERIFY(contentOf(file).contains("release version=\"" TIDEWICK_VERSION "\""));
    for (const QByteArray &picture : allIn(file, "/([a-z-]+\\.png)</image>"))
        QVERIFY2(fs::exists(fs::path(TIDEWICK_SOURCE) / "docs/screenshots" / picture.toStdString()),
                 picture);
}

void TestInstalledFiles::manualPage()
{
    const Outcome outcome = runTool({"mandoc", "-Tlint", packaging / "quaymere.1"});
    // Any other output concerns other manual pages on this machine.
    for (const QByteArray &line : (outcome.output + outcome.error).split('\n'))
        QVERIFY2(!line.contains("quaymere.1:"), line);
    QVERIFY(!outcome.signaled && outcome.status < 2);
}

/// Otherwise the bus would find neither the program that the entry stands for nor its unit.
void TestInstalledFiles::serviceIsNamedAsTheEntry()
{
    QVERIFY(
        contentOf(packaging / "org.tidewick.Tidewick.desktop.in").contains("DBusActivatable=true"));
    const QByteArray service = contentOf(packaging / "org.tidewick.Tidewick.service.in");
    QVERIFY(service.contains("Name=org.tidewick.Tidewick\n"));
    QVERIFY(service.contains("SystemdService=app-org.tidewick.Tidewick.service\n"));
}

void TestInstalledFiles::manualPageCoversEachOption()
{
    const fs::path page = packaging / "quaymere.1";
    for (const char *macro : {"\\.It", "\\.Nm\n\\."}) {
        const QByteArray pattern = QByteArray(macro) + "\\s?Fl Fl ([a-z-]+)";
        QSet<QByteArray> told;
        for (const QByteArray &name : allIn(page, pattern))
            told.insert("--" + name);
        QCOMPARE(told, allOptions());
    }
}

void TestInstalledFiles::manualPageCoversEachVariable()
{
    QSet<QByteArray> read;
    for (const auto &entry :
         fs::recursive_directory_iterator(fs::path(TIDEWICK_SOURCE) / "Quaymere")) {
        if (entry.path().extension() == ".cpp") {
            read += allIn(entry.path(), "(?:getenv|fromEnvironment|qEnvironmentVariable\\w*)"
                                        "\\(\"([A-Z_]+)\"");
        }
    }
    QVERIFY(read.contains("XDG_DATA_HOME"));
    const QSet<QByteArray> told = allIn(packaging / "quaymere.1", "Ev ([A-Z_]+)");
    for (const QByteArray &name : read)
        QVERIFY2(told.contains(name), name);
}

void TestInstalledFiles::addCompletions()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QSet<QByteArray>>("offered");
    QTest::newRow("options") << QByteArray("quaymere --") << allOptions();
    QTest::newRow("some options") << QByteArray("quaymere --r")
                                  << QSet<QByteArray>{"--render-config"};
    QTest::newRow("one mode at a time") << QByteArray("quaymere --smoke --") << QSet<QByteArray>{};
    QTest::newRow("themes") << QByteArray("quaymere --snapshot-about a.png ")
                            << QSet<QByteArray>{"light", "dark"};
    QTest::newRow("nothing after the theme")
        << QByteArray("quaymere --snapshot-about a.png light ") << QSet<QByteArray>{};
    QTest::newRow("folders") << QByteArray("quaymere --render-config packagi")
                             << QSet<QByteArray>{"packaging"};
    QTest::newRow("files") << QByteArray("quaymere --snapshot-ledger LIC")
                           << QSet<QByteArray>{"LICENSE"};
    QTest::newRow("no JSON") << QByteArray("quaymere --describe-storage ") << QSet<QByteArray>{};
}

void TestInstalledFiles::bashCompletes_data()
{
    addCompletions();
}

void TestInstalledFiles::bashCompletes()
{
    QFETCH(QByteArray, line);
    QFETCH(QSet<QByteArray>, offered);
    // compopt works only during a completion, and there is none here.
    const char *script = R"(
        compopt() { :; }
        cd -- "$3"
        . "$1"
        read -ra COMP_WORDS <<<"$2"
        [[ $2 == *' ' ]] && COMP_WORDS+=('')
        COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
        _quaymere
        printf '%s\n' "${COMPREPLY[@]}")";
    const Outcome outcome =
        runTool({"bash", "-euc", script, "test", packaging / "completions/quaymere.bash",
                 line.toStdString(), TIDEWICK_SOURCE});
    QCOMPARE(outcome.error, QByteArray());
    QCOMPARE(wordsOf(outcome.output), offered);
}

void TestInstalledFiles::fishCompletes_data()
{
    addCompletions();
}

void TestInstalledFiles::fishCompletes()
{
    QFETCH(QByteArray, line);
    QFETCH(QSet<QByteArray>, offered);
    const Outcome outcome =
        runTool({"fish", "--no-config", "-c", "cd $argv[3]; source $argv[1]; complete -C $argv[2]",
                 packaging / "completions/quaymere.fish", line.toStdString(), TIDEWICK_SOURCE});
    QCOMPARE(outcome.error, QByteArray());
    const QByteArray begun = line.split(' ').constLast();
    QByteArray words;
    for (const QByteArray &proposal : outcome.output.split('\n')) {
        QByteArray word = proposal.split('\t').constFirst(); // the description follows
        // Fish 4 also lists words that contain the letters elsewhere, but completes none of them.
        if (!word.startsWith(begun))
            continue;
        if (word.endsWith('/'))
            word.chop(1);
        words += word + ' ';
    }
    QCOMPARE(wordsOf(words), offered);
}

void TestInstalledFiles::zshKnowsEachOption()
{
    const fs::path file = packaging / "completions/quaymere.zsh";
    QVERIFY(isContent({"zsh", "-n", file}));
    QCOMPARE(allIn(file, "\\)(--[a-z-]+)\\["), allOptions());
}

TIDEWICK_TEST_MAIN(TestInstalledFiles)
#include "tst_installedfiles.moc"
