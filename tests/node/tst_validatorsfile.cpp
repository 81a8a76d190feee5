// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/ValidatorsFile.h"
#include "platform/files/Files.h"
#include "support/Failures.h"
#include "support/Surroundings.h"

#include <sys/stat.h>

using namespace tidewick;
namespace fs = std::filesystem;

class TestValidatorsFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void flaws_data();
    void flaws();
    void absent();
    void present();
    void cannotBeRead();
};

namespace {

const QByteArray key = "ED2677ABFFD1B33AC6FBC3062B71F1E8397C1505E1C42C64D11AD1B28FF73F4734";

} // namespace

void TestValidatorsFile::init()
{
    fs::remove_all(ValidatorsFile::path().parent_path());
    fs::create_directories(ValidatorsFile::path().parent_path());
}

void TestValidatorsFile::flaws_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("flaw"); // empty for none
    const auto row = [](const char *name, const QByteArray &content, const QByteArray &flaw = {}) {
        QTest::newRow(name) << content << flaw;
    };
    const QByteArray nothing = "it names no publisher's site and key, so no node can use it";
    row("empty", "", nothing);
    row("comments", "# [validator_list_keys]\n#" + key + "\n", nothing);
    row("not a list", "GIF89a\0\xff[", nothing);
    row("sections without lines", "[validator_list_sites]\n[validator_list_keys]\n[validators]\n",
        nothing);
    row("sites alone", "[validator_list_sites]\nhttps://a.example\n",
        "it names sites in [validator_list_sites] and no key in [validator_list_keys], so no node "
        "can use it");
    row("both", "[validator_list_sites]\nhttps://a.example\n[validator_list_keys]\n" + key + '\n');
    row("CR LF and whitespace", "  [validator_list_keys] \r\n\t" + key + " \r\n");
    row("comment after the key", "[validator_list_keys]\n" + key + " # a.example\n");
    row("lower-case key", "[validator_list_keys]\n" + key.toLower() + '\n');
    row("other kind of key", "[validator_list_keys]\n02" + key.mid(2) + '\n');
    row("short key", "[validator_list_keys]\n" + key.chopped(1) + '\n',
        '"' + key.chopped(1) + "\" in [validator_list_keys] is not a publisher's key");
    row("invalid key", "[validator_list_keys]\n" + key + "\nE\n",
        "\"E\" in [validator_list_keys] is not a publisher's key");
    row("validators by name",
        "[validators]\nnHUon2tpyJEHHYGmxqeGu37cvPYHzrMtUNQFVdCgGNvEkjmCpTqK\n");
}

void TestValidatorsFile::flaws()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, flaw);
    QCOMPARE(QByteArray::fromStdString(ValidatorsFile::flaw(content).value_or("")), flaw);
}

void TestValidatorsFile::absent()
{
    QCOMPARE(ValidatorsFile::read(), std::nullopt);
    fs::remove_all(ValidatorsFile::path().parent_path());
    QCOMPARE(ValidatorsFile::read(), std::nullopt);
}

void TestValidatorsFile::present()
{
    const QByteArray content = "# mine\n[validator_list_keys]\n" + key;
    writeFile(ValidatorsFile::path(), content);
    QCOMPARE(ValidatorsFile::read(), std::optional(content));
}

/// An existing file is never skipped in favour of the bundle's.
void TestValidatorsFile::cannotBeRead()
{
    const fs::path file = ValidatorsFile::path();
    const auto failure = [] { return failureOf([] { (void)ValidatorsFile::read(); }); };
    fs::create_symlink("nowhere", file);
    QCOMPARE(failure(), failureWith(file, "No such file or directory"));
    fs::remove(file);
    fs::create_directory(file);
    QCOMPARE(failure(), failureWith(file, "not a file"));
    fs::remove(file);
    QCOMPARE(::mkfifo(file.c_str(), 0600), 0);
    QCOMPARE(failure(), failureWith(file, "not a file"));
    fs::remove(file);
    writeFile(file, QByteArray(1024 * 1024 + 1, '\n'));
    QCOMPARE(failure(), failureWith(file, "larger than 1 MiB, too large for a list of validators"));
    writeFile(file, "");
    QVERIFY(failure().startsWith(Files::display(file)));
}

TIDEWICK_TEST_MAIN(TestValidatorsFile)
#include "tst_validatorsfile.moc"
