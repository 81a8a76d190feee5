// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "package/Tool.h"
#include "support/Surroundings.h"

#include <QMap>
#include <QRegularExpression>

using namespace tidewick;

namespace fs = std::filesystem;

/// Tests the Debian package that cpack makes of this build, and its installation and removal.
class TestPackage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void fieldsDescribeThePackage();
    void lintianFindsNothing();
    void buildIsReproducible();
    void containsNoTraceOfTheBuild();
    void containsNoSimulatedNode();
    void installsUpgradesAndRemoves();

private:
    static fs::path make(const fs::path &folder, const char *umask,
                         const ProcessEnvironment &variables = {});
    QByteArray field(const char *name) const;

    TemporaryFolder m_folder;
    fs::path m_package;
    fs::path m_unpacked;
};

namespace {

const fs::path bundle = "usr/lib/tidewick/Tidewick.app/Contents";

/// All files and links below a folder, with the file's content or the link's target.
QMap<QByteArray, QByteArray> filesBelow(const fs::path &folder)
{
    QMap<QByteArray, QByteArray> files;
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        const auto name =
            QByteArray::fromStdString(entry.path().lexically_relative(folder).string());
        if (entry.is_symlink())
            files[name] = QByteArray::fromStdString(fs::read_symlink(entry.path()).string());
        else if (entry.is_regular_file())
            files[name] = contentOf(entry.path());
    }
    return files;
}

/// An empty root file system, except for a home, for running the programs installed into it.
class FreshRoot
{
public:
    FreshRoot()
    {
        for (const char *name : {"updates", "info"})
            fs::create_directories(path() / "var/lib/dpkg" / name);
        writeFile(path() / "var/lib/dpkg/status", "");
        fs::create_directories(home());
    }

    const fs::path &path() const { return m_folder.path(); }
    fs::path home() const { return path() / "home/user"; }

    /// Ignores missing dependencies, which this program finds on the system outside the root.
    bool dpkg(const std::string &action, const std::string &what) const
    {
        const Outcome outcome =
            runTool({"dpkg", "--root=" + path().string(), "--log=/dev/null", "--force-not-root",
                     "--force-bad-path", "--force-depends", action, what});
        if (outcome.status != 0)
            qWarning("%s", outcome.error.constData());
        return !outcome.signaled && outcome.status == 0;
    }

    Outcome quaymere(const std::string &option) const
    {
        return runTool({"-u", "XDG_DATA_HOME", "-u", "XDG_CONFIG_HOME", "HOME=" + home().string(),
                        (path() / "usr/bin/quaymere").string(), option});
    }

private:
    TemporaryFolder m_folder;
};

} // namespace

fs::path TestPackage::make(const fs::path &folder, const char *umask,
                           const ProcessEnvironment &variables)
{
    const fs::path configuration = fs::path(TIDEWICK_BUILD) / "CPackConfig.cmake";
    const Outcome outcome =
        runTool({"sh", "-euc", "umask $1; exec \"$2\" --config \"$3\" -B \"$4\"", "sh", umask,
                 TIDEWICK_CPACK, configuration, folder},
                variables);
    if (outcome.status != 0)
        qFatal("cpack failed: %s%s", outcome.output.constData(), outcome.error.constData());
    for (const auto &entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".deb")
            return entry.path();
    }
    qFatal("There is no package in its folder");
}

QByteArray TestPackage::field(const char *name) const
{
    return runTool({"dpkg-deb", "--field", m_package, name}).output.trimmed();
}

void TestPackage::initTestCase()
{
    m_package = make(m_folder.path() / "first", "022");
    m_unpacked = m_folder.path() / "unpacked";
    QVERIFY(isContent({"dpkg-deb", "--extract", m_package, m_unpacked}));
}

void TestPackage::fieldsDescribeThePackage()
{
    QCOMPARE(field("Package"), QByteArray("tidewick"));
    QCOMPARE(field("Version"), QByteArray(TIDEWICK_VERSION));
    QCOMPARE(field("Section"), QByteArray("net"));
    QVERIFY(field("Depends").contains("libqt6widgets6"));
    QVERIFY(!field("Depends").contains("xrpld"));
    QVERIFY(field("Description").simplified().contains("package xrpld from the publisher"));
    QVERIFY(field("Recommends").split(',').contains(" xrpld"));
    QVERIFY(field("Description").contains(TIDEWICK_PACKAGED_NODE "\n"));
    QVERIFY(contentOf(m_unpacked / bundle / "Info.plist")
                .contains("<string>" TIDEWICK_VERSION "</string>"));
}

void TestPackage::lintianFindsNothing()
{
    const Outcome outcome = runTool(
        {"lintian", "--allow-root", "--no-cfg", "--fail-on", "error,warning,info", m_package});
    QVERIFY2(outcome.status == 0, outcome.output + outcome.error);
    QCOMPARE(outcome.output, QByteArray());
}

void TestPackage::buildIsReproducible()
{
    const fs::path other = make(m_folder.path() / "a folder/of another length", "077",
                                {{"TZ", "Pacific/Auckland"}, {"LC_ALL", "C"}, {"HOME", "/"}});
    QCOMPARE(other.filename(), m_package.filename());
    QVERIFY(contentOf(other) == contentOf(m_package));

    // The comparison would miss the time of day if both were built within the same second.
    const Outcome listing = runTool({"dpkg-deb", "--contents", m_package}, {{"TZ", "UTC"}});
    QSet<QByteArray> times;
    for (const QByteArray &line : listing.output.trimmed().split('\n'))
        times.insert(line.simplified().split(' ').mid(3, 2).join(' '));
    QCOMPARE(times.size(), 1);
}

void TestPackage::containsNoTraceOfTheBuild()
{
    static const QRegularExpression date(QStringLiteral(
        "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 123][0-9] 20[0-9][0-9]"));
    const auto files = filesBelow(m_unpacked);
    QVERIFY(files.size() > 20);
    // Includes the neighbouring characters, since "/tidewick" alone would match anywhere.
    static const QRegularExpression sources(
        QStringLiteral("(?<![\\w/])") + QRegularExpression::escape(QStringLiteral(TIDEWICK_SOURCE))
        + QStringLiteral("/"));
    for (auto file = files.begin(); file != files.end(); ++file) {
        QVERIFY2(!QString::fromLatin1(*file).contains(sources), file.key());
        QVERIFY2(!file->contains(m_folder.path().c_str()), file.key());
    }
    const QByteArray program = files.value((bundle / "MacOS/Quaymere").c_str());
    QVERIFY(program.size() > 100'000);
    QVERIFY(!QString::fromLatin1(program).contains(date));
}

void TestPackage::containsNoSimulatedNode()
{
    const QByteArray simulated = contentOf(TIDEWICK_SIMNODE_PATH);
    QList<QByteArray> programs;
    for (const auto &entry : fs::recursive_directory_iterator(m_unpacked)) {
        if (!entry.is_regular_file() || entry.is_symlink())
            continue;
        const auto executable = fs::perms::owner_exec | fs::perms::group_exec;
        if ((entry.status().permissions() & executable) != fs::perms::none)
            programs.append(entry.path().filename().c_str());
    }
    QCOMPARE(programs, QList<QByteArray>{"Quaymere"});
    QVERIFY(fs::is_symlink(m_unpacked / bundle / "MacOS/xrpld"));

    const QByteArray info = contentOf(m_unpacked / bundle / "Resources/build-info");
    QVERIFY(!info.contains("simulated"));
    QVERIFY(info.contains("\nxrpld_kind=linked\nxrpld_path=" TIDEWICK_PACKAGED_NODE "\n"));
}

/// Installs the package, uses it without and with a node, upgrades it, uses it again, and removes
/// it.
void TestPackage::installsUpgradesAndRemoves()
{
    const fs::path node = TIDEWICK_PACKAGED_NODE;
    if (*std::next(node.begin()) != "usr")
        QSKIP("This build's package looks for its node outside the root that it is installed into");
    const FreshRoot root;
    QVERIFY(root.dpkg("--install", m_package));
    const auto installed = filesBelow(root.path() / "usr");
    QCOMPARE(installed, filesBelow(m_unpacked / "usr"));

    const fs::path link = root.path() / bundle / "MacOS/xrpld";
    Outcome outcome = root.quaymere("--smoke");
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.output.endsWith("smoke: FAIL no server_info: Could not start the node: "
                                     + QByteArray::fromStdString(link.string())
                                     + ": No such file or directory\n"),
             outcome.output);

    const fs::path nodeInRoot = root.path() / node.relative_path();
    fs::create_directories(nodeInRoot.parent_path());
    fs::copy_file(TIDEWICK_SIMNODE_PATH, nodeInRoot);
    QVERIFY(root.quaymere("--node-version").output.contains("simulated"));
    outcome = root.quaymere("--smoke");
    QVERIFY2(outcome.status == 0, outcome.output + outcome.error);

    // The user's files at this point.
    fs::create_directories(root.home() / ".config/Tidewick");
    writeFile(root.home() / ".config/Tidewick/settings.ini", "[General]\nmaxHours=7\n");
    fs::create_directories(root.home() / ".local/share/Tidewick/db");
    writeFile(root.home() / ".local/share/Tidewick/db/ledgers", "precious");
    const auto data = filesBelow(root.home());
    QVERIFY(data.size() > 3);

    const fs::path parts = m_folder.path() / "parts";
    const fs::path newer = m_folder.path() / "newer.deb";
    QVERIFY(isContent({"dpkg-deb", "--raw-extract", m_package, parts}));
    QByteArray control = contentOf(parts / "DEBIAN/control");
    control.replace("Version: " TIDEWICK_VERSION, "Version: " TIDEWICK_VERSION "+newer");
    writeFile(parts / "DEBIAN/control", control);
    QVERIFY(isContent({"dpkg-deb", "--root-owner-group", "-Znone", "--build", parts, newer}));
    QVERIFY(root.dpkg("--install", newer));
    QVERIFY(contentOf(root.path() / "var/lib/dpkg/status")
                .contains("Version: " TIDEWICK_VERSION "+newer\n"));
    QCOMPARE(filesBelow(root.home()), data);
    QCOMPARE(root.quaymere("--smoke").status, 0);

    const auto used = filesBelow(root.home());
    QVERIFY(root.dpkg("--purge", "tidewick"));
    QCOMPARE(filesBelow(root.home()), used);
    QCOMPARE(used.value(".local/share/Tidewick/db/ledgers"), QByteArray("precious"));
    QCOMPARE(used.value(".config/Tidewick/settings.ini"),
             data.value(".config/Tidewick/settings.ini"));
    const auto left = filesBelow(root.path() / "usr").keys();
    QCOMPARE(left, QList<QByteArray>{nodeInRoot.lexically_relative(root.path() / "usr").c_str()});
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestPackage)
#include "tst_package.moc"
