// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/about/VersionLine.h"

using namespace tidewick;

class TestVersionLine : public QObject
{
    Q_OBJECT

private slots:
    void line_data();
    void line();
};

void TestVersionLine::line_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("buildInfo");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *name, const char *version, const char *buildInfo,
                        const char *line) {
        QTest::newRow(name) << QString::fromUtf8(version) << QString::fromUtf8(buildInfo)
                            << QString::fromUtf8(line);
    };
    const char *both = "Version 1.0.0 · node 2.4.0";
    const char *alone = "Version 1.0.0";
    row("nothing known", nullptr, "", "Version development build");
    row("no description", nullptr, "no build-info", "Version development build");
    row("development", nullptr, "xrpld_version=2.4.0", "Version development build · node 2.4.0");
    row("both", "1.0.0", "compiler=GNU\nxrpld_version=2.4.0\n", both);
    row("CR LF line endings", "1.0.0", "a=b\r\nxrpld_version=2.4.0\r\n", both);
    row("another key", "1.0.0", "xrpld_kind=real\n", alone);
    row("no value", "1.0.0", "xrpld_version=\n", alone);
    row("no key", "1.0.0", "=2.4.0\n", alone);
    row("two equals signs", "1.0.0", "xrpld_version=2=4\n", alone);
    row("the last one wins", "1.0.0", "xrpld_version=1\nxrpld_version=2.4.0\n", both);
    row("a malformed one does not", "1.0.0", "xrpld_version=2.4.0\nxrpld_version=\n", both);
    row("a linked node", "1.0.0", "xrpld_kind=linked\nxrpld_path=/usr/bin/xrpld\n",
        "Version 1.0.0 · node /usr/bin/xrpld");
    row("version before path", "1.0.0", "xrpld_path=/usr/bin/xrpld\nxrpld_version=2.4.0\n", both);
    row("an empty version", "", "", "Version ");
}

void TestVersionLine::line()
{
    QFETCH(QString, version);
    QFETCH(QString, buildInfo);
    const auto known = version.isNull() ? std::nullopt : std::optional(version);
    QTEST(versionLine(known, buildInfo), "line");
}

TIDEWICK_TEST_MAIN(TestVersionLine)
#include "tst_versionline.moc"
