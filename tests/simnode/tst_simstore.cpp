// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Store.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <set>
#include <string>

using namespace tidewick;
using namespace tidewick::sim;
namespace fs = std::filesystem;

namespace {

constexpr qint64 record = 512LL * 1024;

} // namespace

class TestSimStore : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void beginsEmpty();
    void grows();
    void continuesAfterARestart();
    void staysBounded();
    void isRebuilt();
    void rebuildMayFail();
    void discardsAnInterruptedRebuild();
    void keepsForeignFiles();
    void overwritesHalfARecord();
    void failsWithoutAFolder();

private:
    fs::path folder() const { return m_folder->path() / "db" / "store"; }
    std::set<std::string> files() const;

    std::unique_ptr<TemporaryFolder> m_folder;
};

void TestSimStore::init()
{
    m_folder = std::make_unique<TemporaryFolder>();
}

std::set<std::string> TestSimStore::files() const
{
    std::set<std::string> names;
    for (const auto &entry : fs::directory_iterator(folder()))
        names.insert(entry.path().filename().string());
    return names;
}

void TestSimStore::beginsEmpty()
{
    const Store store(folder());
    QCOMPARE(store.bytes(), 0);
    QVERIFY(!store.newestLedger());
    QCOMPARE(files(), (std::set<std::string>{"simulated-ledgers-1.store"}));
}

void TestSimStore::grows()
{
    Store store(folder());
    store.append(100);
    store.append(101);
    QCOMPARE(store.bytes(), 2 * record);
    QCOMPARE(store.newestLedger(), 101U);
    QCOMPARE(static_cast<qint64>(fs::file_size(folder() / "simulated-ledgers-1.store")),
             2 * record);
}

void TestSimStore::continuesAfterARestart()
{
    {
        Store store(folder());
        store.append(100);
    }
    Store store(folder());
    QCOMPARE(store.newestLedger(), 100U);
    store.append(101);
    QCOMPARE(store.bytes(), 2 * record);
}

void TestSimStore::staysBounded()
{
    Store store(folder());
    for (quint32 ledger = 1; ledger <= 150; ++ledger)
        store.append(ledger);
    QCOMPARE(store.bytes(), 64 * record);
    QCOMPARE(store.newestLedger(), 150U);
    QCOMPARE(Store(folder()).newestLedger(), 150U);
}

void TestSimStore::isRebuilt()
{
    Store store(folder());
    for (quint32 ledger = 1; ledger <= 10; ++ledger)
        store.append(ledger);
    store.beginCopy();
    store.append(11);
    store.append(12);
    QCOMPARE(files(),
             (std::set<std::string>{"simulated-ledgers-1.store", "simulated-ledgers-2.copy"}));
    QCOMPARE(store.bytes(), 14 * record);

    store.switchToCopy();
    store.append(13);
    QCOMPARE(store.bytes(), 15 * record);
    QCOMPARE(files(),
             (std::set<std::string>{"simulated-ledgers-1.store", "simulated-ledgers-2.store"}));

    store.tidy();
    QCOMPARE(store.bytes(), 3 * record);
    QCOMPARE(files(), (std::set<std::string>{"simulated-ledgers-2.store"}));
    QCOMPARE(Store(folder()).newestLedger(), 13U);
}

void TestSimStore::rebuildMayFail()
{
    Store store(folder());
    store.append(1);
    store.beginCopy();
    store.append(2);
    store.tidy();
    store.switchToCopy(); // has no effect
    QCOMPARE(store.bytes(), 2 * record);
    QCOMPARE(files(), (std::set<std::string>{"simulated-ledgers-1.store"}));
}

void TestSimStore::discardsAnInterruptedRebuild()
{
    {
        Store store(folder());
        store.append(1);
        store.beginCopy();
        store.append(2);
    }
    QCOMPARE(Store(folder()).newestLedger(), 2U);
    QCOMPARE(files(), (std::set<std::string>{"simulated-ledgers-1.store"}));
    {
        Store store(folder());
        store.beginCopy();
        store.append(3);
        store.switchToCopy();
    }
    QCOMPARE(Store(folder()).newestLedger(), 3U);
    QCOMPARE(files(), (std::set<std::string>{"simulated-ledgers-2.store"}));
}

void TestSimStore::keepsForeignFiles()
{
    fs::create_directories(folder());
    for (const char *name : {"peerfinder.sqlite", "x.copy", "simulated-ledgers-x.store"})
        writeFile(folder() / name, "theirs");
    Store store(folder());
    store.append(1);
    QCOMPARE(store.bytes(), record);
    QCOMPARE(files().size(), std::size_t{4});
}

void TestSimStore::overwritesHalfARecord()
{
    {
        Store store(folder());
        store.append(1);
        store.append(2);
    }
    fs::resize_file(folder() / "simulated-ledgers-1.store", record + 1000);
    Store store(folder());
    QCOMPARE(store.newestLedger(), 1U);
    store.append(3);
    QCOMPARE(store.bytes(), 2 * record);
    QCOMPARE(store.newestLedger(), 3U);
}

void TestSimStore::failsWithoutAFolder()
{
    writeFile(m_folder->path() / "db", "a file");
    QVERIFY_THROWS_EXCEPTION(FileError, Store{folder()});
}

TIDEWICK_TEST_MAIN(TestSimStore)
#include "tst_simstore.moc"
