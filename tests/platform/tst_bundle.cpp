// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Bundle.h"
#include "support/Surroundings.h"
#include "support/TestBundle.h"

using namespace tidewick;
namespace fs = std::filesystem;

class TestBundleLookup : public QObject
{
    Q_OBJECT

private slots:
    void ofExecutable_data();
    void ofExecutable();
    void mainContainsThisProgram();
    void findsResources();
    void readsItsVersion();
};

void TestBundleLookup::ofExecutable_data()
{
    QTest::addColumn<QString>("executable");
    QTest::addColumn<QString>("bundle");
    const auto row = [](const char *executable, const char *bundle) {
        QTest::newRow(executable) << QString::fromLatin1(executable) << QString::fromLatin1(bundle);
    };
    row("/a/Tidewick.app/Contents/MacOS/Quaymere", "/a/Tidewick.app");
    row("/a/b/Contents/MacOS/other", "/a/b");
    row("/Contents/MacOS/Quaymere", "/");
    row("/usr/bin/quaymere", "/usr/bin");
    row("/a/MacOS/Quaymere", "/a/MacOS");
    row("/a/Contents/macos/Quaymere", "/a/Contents/macos");
}

void TestBundleLookup::ofExecutable()
{
    QFETCH(QString, executable);
    QFETCH(QString, bundle);
    QCOMPARE(Bundle::ofExecutable(executable.toStdString()).path(), fs::path(bundle.toStdString()));
}

void TestBundleLookup::mainContainsThisProgram()
{
    QCOMPARE(Bundle::main().path(), fs::path(QCoreApplication::applicationDirPath().toStdString()));
}

void TestBundleLookup::findsResources()
{
    TemporaryFolder folder;
    const Bundle bundle(folder.path());
    const fs::path resources = bundle.path() / "Contents" / "Resources";
    fs::create_directories(resources);
    writeFile(resources / "node.env", "");
    writeFile(resources / "build-info", "");

    QCOMPARE(bundle.resource("node", "env"), std::optional(resources / "node.env"));
    QCOMPARE(bundle.resource("build-info", ""), std::optional(resources / "build-info"));
    QCOMPARE(bundle.resource("node", ""), std::nullopt);
    QCOMPARE(bundle.nodeExecutable(), bundle.path() / "Contents/MacOS/xrpld");
}

void TestBundleLookup::readsItsVersion()
{
    TemporaryFolder folder;
    const Bundle bundle(folder.path());
    QCOMPARE(bundle.version(), std::nullopt);
    fs::create_directory(bundle.path() / "Contents");
    const fs::path list = bundle.path() / "Contents" / "Info.plist";
    writeFile(list, contentOf(fs::path(TIDEWICK_RESOURCES) / "Info.plist"));
    QCOMPARE(bundle.version(), std::nullopt);
    writeFile(list, "<plist><dict><key>CFBundleShortVersionString</key>"
                    "<string>1.0.0</string></dict></plist>");
    QCOMPARE(bundle.version(), QStringLiteral("1.0.0"));
}

TIDEWICK_TEST_MAIN(TestBundleLookup)
#include "tst_bundle.moc"
