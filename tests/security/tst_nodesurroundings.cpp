// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "support/RunProgram.h"
#include "support/Surroundings.h"

#include <csignal>

#include <sys/stat.h>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

ProcessEnvironment environmentOf(pid_t process)
{
    ProcessEnvironment environment;
    for (const QByteArray &entry :
         contentOf("/proc/" + std::to_string(process) + "/environ").split('\0')) {
        const qsizetype equals = entry.indexOf('=');
        if (equals >= 0)
            environment[entry.first(equals).toStdString()] = entry.mid(equals + 1).toStdString();
    }
    return environment;
}

QByteArray limitsOf(pid_t process)
{
    return contentOf("/proc/" + std::to_string(process) + "/limits");
}

} // namespace

/// Tests how the real application starts the node on a desktop.
class TestNodeSurroundings : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { fs::remove_all(applicationData()); }

    void configuration();
    void environment();
    void limits();
    void nodeIsNotSearchedInPath();

private:
    TestBundle m_bundle;
};

/// The node answers only this machine, holds no keys, and verifies the publishers of validator
/// lists.
void TestNodeSurroundings::configuration()
{
    ChildSpec spec;
    spec.executable = m_bundle.application();
    spec.arguments = {"--render-config", "-"};
    const QByteArray file = runProgram(spec).output.trimmed();
    const QByteArrayList lines = contentOf(file.toStdString()).split('\n');
    const auto valuesOf = [&](const QByteArray &key) {
        QByteArrayList values;
        for (const QByteArray &line : lines) {
            if (line.startsWith(key + " = "))
                values += line.mid(key.size() + 3);
        }
        return values;
    };
    QCOMPARE(valuesOf("ip"), (QByteArrayList{"127.0.0.1", "127.0.0.1"}));
    QCOMPARE(valuesOf("admin"), (QByteArrayList{"127.0.0.1", "127.0.0.1"}));
    QCOMPARE(valuesOf("port"), (QByteArrayList{"15005", "16006"}));
    const auto lineAfter = [&](const char *section) {
        return lines.value(lines.indexOf(section) + 1);
    };
    QCOMPARE(lineAfter("[signing_support]"), "false");
    QCOMPARE(lineAfter("[ssl_verify]"), "1");
}

void TestNodeSurroundings::environment()
{
    const SessionBus bus;
    const XServer display;
    LaunchedApplication application(m_bundle, "speed=20 state=full",
                                    {{"TIDEWICK_TEST_OWN", "a=b c"}, {"MALLOC_ARENA_MAX", "99"}});
    QVERIFY(waitUntil([] { return LaunchedApplication::noted("server_info") > 0; }));

    // The application's environment at its launch, overridden by node.env, and nothing else.
    ProcessEnvironment expected = environmentOf(application.process().id());
    QCOMPARE(expected.at("TIDEWICK_TEST_OWN"), "a=b c");
    QCOMPARE(expected.at("MALLOC_ARENA_MAX"), "99");
    expected["MALLOC_ARENA_MAX"] = "2";
    expected["MALLOC_TRIM_THRESHOLD_"] = "1048576";
    const ProcessEnvironment actual = environmentOf(*application.node());
    QStringList differences;
    for (const auto &[name, value] : actual) {
        const auto known = expected.find(name);
        if (known == expected.end() || known->second != value)
            differences += QString::fromStdString(name);
    }
    QCOMPARE(differences, QStringList());
    QCOMPARE(actual.size(), expected.size());
    QVERIFY(application.endsWell(SIGTERM));
}

/// Includes the limit of core dumps.
void TestNodeSurroundings::limits()
{
    const SessionBus bus;
    const XServer display;
    LaunchedApplication application(m_bundle, "speed=20 state=full");
    QVERIFY(waitUntil([] { return LaunchedApplication::noted("server_info") > 0; }));
    QCOMPARE(limitsOf(application.process().id()), limitsOf(::getpid()));
    QCOMPARE(limitsOf(*application.node()), limitsOf(::getpid()));
    QVERIFY(application.endsWell(SIGTERM));
}

void TestNodeSurroundings::nodeIsNotSearchedInPath()
{
    const TemporaryFolder elsewhere;
    const fs::path other = elsewhere.path() / "xrpld";
    const fs::path trace = elsewhere.path() / "was run";
    writeFile(other, "#!/bin/sh\n: >'" + QByteArray::fromStdString(trace.string()) + "'\n");
    QCOMPARE(::chmod(other.c_str(), 0755), 0);
    const TestBundle bundle;
    fs::remove(bundle.node());

    ChildSpec spec;
    spec.executable = bundle.application();
    spec.arguments = {"--smoke"};
    spec.environment["PATH"] = elsewhere.path().string();
    spec.workingDirectory = elsewhere.path();
    const Outcome outcome = runProgram(spec);
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.output.contains(QByteArray::fromStdString(bundle.node().string())
                                     + ": No such file or directory"),
             outcome.output);
    QVERIFY(!fs::exists(trace));
    // A search in PATH would have found it.
    spec.executable = "/bin/sh";
    spec.arguments = {"-c", "xrpld"};
    QCOMPARE(runProgram(spec).status, 0);
    QVERIFY(fs::exists(trace));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeSurroundings)
#include "tst_nodesurroundings.moc"
