// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeStore.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <optional>

using namespace tidewick;
namespace fs = std::filesystem;

class TestNodeStore : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void sizes();
    void removes();
    void removesNothing();
    void removesOnlyTheLink();
    void keepsTheTargetsOfLinksInside();
    void removesAFileInPlaceOfTheStore();
    void reportsWhyItFailed();

private:
    std::optional<TemporaryFolder> m_folder;
    fs::path m_data;
    fs::path m_db;
};

void TestNodeStore::init()
{
    m_folder.emplace();
    m_data = m_folder->path() / "Tidewick";
    m_db = m_data / "db";
    fs::create_directory(m_data);
}

void TestNodeStore::sizes()
{
    const NodeStore store(m_data);
    QCOMPARE(store.path(), m_db);
    QCOMPARE(store.size(), 0);
    fs::create_directory(m_db);
    writeFile(m_db / "nudb.tpl.dat", QByteArray(100'000, 'x'));
    writeFile(m_db / "nudb.dat", QByteArray(50'000, 'x'));
    const qint64 ledgers = allocatedBytes(m_db / "nudb.dat");
    const qint64 others = allocatedBytes(m_db / "nudb.tpl.dat");
    QVERIFY(ledgers > 0 && others > 0);
    QCOMPARE(store.size(), ledgers + others);
    QCOMPARE(store.dataSize(), ledgers);
}

void TestNodeStore::removes()
{
    fs::create_directories(m_db / "a" / "b");
    writeFile(m_db / "a" / "b" / "file", "x");
    writeFile(m_data / "debug.log", "kept");
    QVERIFY(!NodeStore(m_data).remove());
    QVERIFY(!fs::exists(m_db));
    QVERIFY(fs::exists(m_data / "debug.log"));
}

void TestNodeStore::removesNothing()
{
    QVERIFY(!NodeStore(m_data).remove());
    QVERIFY(!NodeStore(m_data / "missing").remove());
}

void TestNodeStore::removesOnlyTheLink()
{
    const fs::path precious = m_folder->path() / "precious";
    fs::create_directory(precious);
    writeFile(precious / "file", "x");
    fs::create_directory_symlink(precious, m_db);
    QVERIFY(!NodeStore(m_data).remove());
    QVERIFY(!fs::exists(fs::symlink_status(m_db)));
    QVERIFY(fs::exists(precious / "file"));
}

void TestNodeStore::keepsTheTargetsOfLinksInside()
{
    const fs::path precious = m_folder->path() / "precious";
    fs::create_directory(precious);
    writeFile(precious / "file", "x");
    fs::create_directory(m_db);
    fs::create_directory_symlink(precious, m_db / "link");
    fs::create_directory_symlink("..", m_db / "up");
    fs::create_symlink(precious / "file", m_db / "file");
    QVERIFY(!NodeStore(m_data).remove());
    QVERIFY(!fs::exists(m_db));
    QVERIFY(fs::exists(m_data));
    QVERIFY(fs::exists(precious / "file"));
}

void TestNodeStore::removesAFileInPlaceOfTheStore()
{
    writeFile(m_db, "x");
    QVERIFY(!NodeStore(m_data).remove());
    QVERIFY(!fs::exists(m_db));
}

void TestNodeStore::reportsWhyItFailed()
{
    writeFile(m_folder->path() / "file", "x");
    QCOMPARE(NodeStore(m_folder->path() / "file").remove(),
             std::make_error_code(std::errc::not_a_directory));
}

TIDEWICK_TEST_MAIN(TestNodeStore)
#include "tst_nodestore.moc"
