// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLocale>
#include <QScreen>
#include <QStyle>
#include <QTimeZone>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>

#include <unistd.h>

using namespace tidewick;

namespace {

/// Environment variables that a machine may set and that change how programs look, which language
/// they use, and which services they contact.
const std::map<std::string, std::string> machine{
    {"PATH", "/usr/local/bin:/usr/bin:/bin"},
    {"QTEST_FUNCTION_TIMEOUT", "300000"},
    {"LANG", "de_DE.UTF-8"},
    {"LC_ALL", "tr_TR.UTF-8"},
    {"LANGUAGE", "de"},
    {"TZ", "Asia/Kathmandu"},
    {"QT_SCALE_FACTOR", "2"},
    {"QT_FONT_DPI", "192"},
    {"QT_STYLE_OVERRIDE", "Windows"},
    {"QT_QPA_PLATFORM", "wayland"},
    {"QT_QPA_PLATFORMTHEME", "kde"},
    {"QT_LOGGING_RULES", "*=true"},
    {"GTK_THEME", "HighContrast"},
    {"GIO_USE_VFS", "gvfs"},
    {"GSETTINGS_BACKEND", "dconf"},
    {"FONTCONFIG_FILE", "/etc/fonts/fonts.conf"},
    {"FONTCONFIG_PATH", "/etc/fonts"},
    {"XDG_CURRENT_DESKTOP", "KDE"},
    {"XDG_DATA_DIRS", "/nonexistent"},
    {"XDG_CONFIG_DIRS", "/nonexistent"},
    {"XDG_RUNTIME_DIR", "/nonexistent"},
    {"XDG_CACHE_HOME", "/nonexistent"},
    {"XDG_SESSION_TYPE", "wayland"},
    {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"},
    {"DISPLAY", ":0"},
    {"WAYLAND_DISPLAY", "wayland-0"},
    {"SESSION_MANAGER", "local/nowhere"},
    {"TIDEWICK_SIMNODE", "state=none"},
};

} // namespace

/// Checks that a test program sees nothing of the machine that could affect its results.
class TestSurroundings : public QObject
{
    Q_OBJECT

private slots:
    void environment();
    void folders_data();
    void folders();
    void fonts();
    void scaleAndStyle();
    void languageAndTime();
};

void TestSurroundings::environment()
{
    QByteArrayList names;
    for (char **entry = environ; *entry != nullptr; ++entry)
        names += QByteArray(*entry, qsizetype(std::strcspn(*entry, "=")));
    // Settings of instrumented builds and of Qt Test.
    names.removeIf([](const QByteArray &name) {
        return name.endsWith("SAN_OPTIONS") || name.startsWith("GCOV_") || name.startsWith("LLVM_")
               || name == "LD_LIBRARY_PATH" || name.startsWith("QT_QTESTLIB_");
    });
    std::sort(names.begin(), names.end());
    QCOMPARE(names, (QByteArrayList{"DBUS_SYSTEM_BUS_ADDRESS", "FONTCONFIG_FILE", "HOME", "LANG",
                                    "PATH", "QTEST_FUNCTION_TIMEOUT", "QT_QPA_PLATFORM", "TMPDIR",
                                    "TZ", "XDG_CACHE_HOME", "XDG_CONFIG_DIRS", "XDG_CONFIG_HOME",
                                    "XDG_DATA_DIRS", "XDG_DATA_HOME", "XDG_STATE_HOME"}));
    QCOMPARE(qgetenv("PATH"), QByteArray::fromStdString(machine.at("PATH")));
}

void TestSurroundings::folders_data()
{
    QTest::addColumn<QByteArray>("variable");
    for (const char *variable : {"XDG_CACHE_HOME", "XDG_CONFIG_DIRS", "XDG_CONFIG_HOME",
                                 "XDG_DATA_DIRS", "XDG_DATA_HOME", "XDG_STATE_HOME", "HOME"})
        QTest::newRow(variable) << QByteArray(variable);
}

void TestSurroundings::folders()
{
    QFETCH(QByteArray, variable);
    const std::filesystem::path folder = qgetenv(variable).toStdString();
    QVERIFY(std::filesystem::is_directory(folder));
    const std::filesystem::path temporary = qgetenv("TMPDIR").toStdString();
    QVERIFY(folder.parent_path() == temporary.parent_path());
}

void TestSurroundings::fonts()
{
    for (const QString &family : QFontDatabase::families())
        QVERIFY2(QFontInfo(QFont(family)).family().startsWith(QStringLiteral("DejaVu")),
                 qPrintable(family));
    QCOMPARE(QFontInfo(QApplication::font()).family(), QStringLiteral("DejaVu Sans"));
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    QCOMPARE(QFontInfo(fixed).family(), QStringLiteral("DejaVu Sans Mono"));
}

void TestSurroundings::scaleAndStyle()
{
    QCOMPARE(qApp->devicePixelRatio(), 1.0);
    QCOMPARE(qApp->primaryScreen()->logicalDotsPerInch(), 96.0);
    QCOMPARE(QApplication::style()->objectName(), QStringLiteral("fusion"));
}

void TestSurroundings::languageAndTime()
{
    QCOMPARE(QLocale::system().language(), QLocale::C);
    QCOMPARE(QTimeZone::systemTimeZone().offsetFromUtc(QDateTime::currentDateTimeUtc()), 0);
}

TIDEWICK_TEST_PROGRAM
{
    for (const auto &[variable, value] : machine)
        qputenv(variable.c_str(), QByteArray::fromStdString(value));
    const TestHome home;
    drawOffscreen();
    const QApplication application(argc, argv);
    TestSurroundings test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_surroundings.moc"
