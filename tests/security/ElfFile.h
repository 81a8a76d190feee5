// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayList>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <link.h>

namespace tidewick {

/// What a program of this machine's kind says about itself to the kernel and the dynamic linker.
/// Reads the file once; ends the test where it is none.
class ElfFile
{
public:
    using Segment = ElfW(Phdr);

    explicit ElfFile(const std::filesystem::path &path);

    /// ET_EXEC, ET_DYN …
    unsigned type() const { return m_type; }

    const std::vector<Segment> &segments() const { return m_segments; }
    std::optional<Segment> segment(unsigned type) const;

    /// The value of the dynamic section's entry with this tag.
    std::optional<ElfW(Xword)> dynamic(ElfW(Sxword) tag) const;
    bool dynamicFlag(ElfW(Sxword) tag, ElfW(Xword) flag) const;

    /// What is at these addresses once the program is loaded.
    std::string bytesAt(ElfW(Addr) address, std::size_t size) const;
    ElfW(Addr) entry() const { return m_entry; }

    /// The functions and variables that it takes from elsewhere.
    const QByteArrayList &imports() const { return m_imports; }

    /// A property of the processor's that the linker has found in every object: its bits.
    quint32 property(quint32 type) const;

private:
    template <typename T>
    T at(std::size_t offset) const;
    template <typename T>
    std::vector<T> table(std::size_t offset, std::size_t size) const;
    void readImports(const ElfW(Ehdr) & header);

    std::string m_content;
    unsigned m_type = 0;
    ElfW(Addr) m_entry = 0;
    std::vector<Segment> m_segments;
    std::vector<ElfW(Dyn)> m_dynamic;
    QByteArrayList m_imports;
};

} // namespace tidewick
