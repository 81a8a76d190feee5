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

/// The information that a program for this machine provides to the kernel and the dynamic linker.
/// Reads the file once; ends the test if it is not such a program.
class ElfFile
{
public:
    using Segment = ElfW(Phdr);

    explicit ElfFile(const std::filesystem::path &path);

    /// ET_EXEC, ET_DYN …
    unsigned type() const { return m_type; }

    const std::vector<Segment> &segments() const { return m_segments; }
    std::optional<Segment> segment(unsigned type) const;

    /// The value of the entry with this tag in the dynamic section.
    std::optional<ElfW(Xword)> dynamic(ElfW(Sxword) tag) const;
    bool dynamicFlag(ElfW(Sxword) tag, ElfW(Xword) flag) const;

    /// The bytes at these addresses once the program is loaded.
    std::string bytesAt(ElfW(Addr) address, std::size_t size) const;
    ElfW(Addr) entry() const { return m_entry; }

    /// The functions and variables that the program imports.
    const QByteArrayList &imports() const { return m_imports; }

    /// The bits of a processor property that the linker has found in every object.
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
