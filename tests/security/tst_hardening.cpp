// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "security/ElfFile.h"
#include "support/Surroundings.h"

#include <algorithm>
#include <array>

using namespace tidewick;

namespace {

bool isPositionIndependent(const ElfFile &program)
{
    return program.type() == ET_DYN && program.segment(PT_INTERP)
           && program.dynamicFlag(DT_FLAGS_1, DF_1_PIE);
}

bool hasReadOnlyTables(const ElfFile &program)
{
    return program.segment(PT_GNU_RELRO).has_value();
}

bool isBoundAtOnce(const ElfFile &program)
{
    return program.dynamicFlag(DT_FLAGS, DF_BIND_NOW) || program.dynamicFlag(DT_FLAGS_1, DF_1_NOW);
}

bool hasPlainStack(const ElfFile &program)
{
    const auto stack = program.segment(PT_GNU_STACK);
    return stack && (stack->p_flags & PF_X) == 0;
}

bool keepsCodeFromWriting(const ElfFile &program)
{
    return std::none_of(program.segments().begin(), program.segments().end(), [](const auto &one) {
        return one.p_type == PT_LOAD && (one.p_flags & PF_W) != 0 && (one.p_flags & PF_X) != 0;
    });
}

/// The file's headers and read-only data are not mapped together with the code.
bool keepsCodeApart(const ElfFile &program)
{
    const auto first = program.segment(PT_LOAD);
    return first && first->p_offset == 0 && (first->p_flags & PF_X) == 0;
}

bool guardsItsStack(const ElfFile &program)
{
    return program.imports().contains("__stack_chk_fail");
}

bool checksItsCalls(const ElfFile &program)
{
    return std::any_of(
        program.imports().begin(), program.imports().end(),
        [](const QByteArray &name) { return name.startsWith("__") && name.endsWith("_chk"); });
}

/// All objects of the program support branch tracking, and so do the addresses that the loader
/// jumps to.
bool tracksItsBranches(const ElfFile &program)
{
#if defined(__x86_64__)
    constexpr quint32 wanted = GNU_PROPERTY_X86_FEATURE_1_IBT | GNU_PROPERTY_X86_FEATURE_1_SHSTK;
    const auto isLandingPad = [&](std::optional<ElfW(Xword)> address) {
        return !address || program.bytesAt(*address, 4) == "\xF3\x0F\x1E\xFA";
    };
    return (program.property(GNU_PROPERTY_X86_FEATURE_1_AND) & wanted) == wanted
           && isLandingPad(program.entry()) && isLandingPad(program.dynamic(DT_INIT))
           && isLandingPad(program.dynamic(DT_FINI));
#elif defined(__aarch64__)
    constexpr quint32 wanted = GNU_PROPERTY_AARCH64_FEATURE_1_BTI;
    return (program.property(GNU_PROPERTY_AARCH64_FEATURE_1_AND) & wanted) == wanted;
#else
    return false;
#endif
}

bool bringsNoSearchPath(const ElfFile &program)
{
    return !program.dynamic(DT_RPATH) && !program.dynamic(DT_RUNPATH);
}

#ifdef __OPTIMIZE__
constexpr bool optimised = true;
#else
constexpr bool optimised = false;
#endif
#if defined(__x86_64__) || defined(__aarch64__)
constexpr bool canTrackBranches = true;
#else
constexpr bool canTrackBranches = false;
#endif

struct Protection
{
    const char *name;
    bool (*holds)(const ElfFile &program);
    /// Why this build may lack the protection; null if it must have it.
    const char *excuse;
};

/// An instrumented program calls, and links to, the libraries of its sanitizer.
constexpr const char *instrumentedExcuse =
    TIDEWICK_INSTRUMENTED ? "the build is instrumented" : nullptr;

constexpr std::array protections{
    Protection{"position independent", isPositionIndependent, nullptr},
    Protection{"tables of addresses read-only", hasReadOnlyTables, nullptr},
    Protection{"bound at once", isBoundAtOnce, nullptr},
    Protection{"stack not executable", hasPlainStack, nullptr},
    Protection{"nothing writable and executable", keepsCodeFromWriting, nullptr},
    Protection{"code apart", keepsCodeApart, nullptr},
    Protection{"stack protector", guardsItsStack, nullptr},
    Protection{"checked calls", checksItsCalls,
               optimised ? instrumentedExcuse : "they need optimisation"},
    Protection{"branches tracked", tracksItsBranches,
               canTrackBranches ? instrumentedExcuse : "this processor has no such thing"},
    Protection{"no search path", bringsNoSearchPath, nullptr},
};

} // namespace

/// Tests the application's executable as built.
class TestHardening : public QObject
{
    Q_OBJECT

private slots:
    void application_data() { listProtections(); }
    void application();
    void softProgram_data() { listProtections(); }
    void softProgram();

private:
    static void listProtections();
};

void TestHardening::listProtections()
{
    QTest::addColumn<int>("index");
    for (std::size_t index = 0; index < protections.size(); ++index)
        QTest::newRow(protections.at(index).name) << int(index);
}

void TestHardening::application()
{
    QFETCH(int, index);
    const Protection &protection = protections.at(std::size_t(index));
    if (protection.excuse)
        QSKIP(protection.excuse);
    QVERIFY(protection.holds(ElfFile(TIDEWICK_QUAYMERE_PATH)));
}

/// Each check is able to fail.
void TestHardening::softProgram()
{
    QFETCH(int, index);
    if (TIDEWICK_INSTRUMENTED)
        QSKIP("The linker of this build enables some protections by default");
    QVERIFY(!protections.at(std::size_t(index)).holds(ElfFile(TIDEWICK_SOFT_PATH)));
}

TIDEWICK_TEST_MAIN(TestHardening)
#include "tst_hardening.moc"
