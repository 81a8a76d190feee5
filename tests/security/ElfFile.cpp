// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "security/ElfFile.h"

#include "support/TestFiles.h"

#include <algorithm>

namespace tidewick {

template <typename T>
T ElfFile::at(std::size_t offset) const
{
    T value{};
    if (m_content.copy(reinterpret_cast<char *>(&value), sizeof value, offset) != sizeof value)
        qFatal("The program file is truncated");
    return value;
}

/// The entries of a table of this size in bytes.
template <typename T>
std::vector<T> ElfFile::table(std::size_t offset, std::size_t size) const
{
    std::vector<T> entries(size / sizeof(T));
    for (T &entry : entries) {
        entry = at<T>(offset);
        offset += sizeof(T);
    }
    return entries;
}

ElfFile::ElfFile(const std::filesystem::path &path) : m_content(contentOf(path).toStdString())
{
    constexpr int nativeClass = sizeof(void *) == 8 ? ELFCLASS64 : ELFCLASS32;
    if (!m_content.starts_with(ELFMAG) || m_content.at(EI_CLASS) != nativeClass)
        qFatal("%s is not a program for this machine", path.c_str());
    const auto header = at<ElfW(Ehdr)>(0);
    m_type = header.e_type;
    m_entry = header.e_entry;
    m_segments = table<Segment>(header.e_phoff, header.e_phnum * sizeof(Segment));
    if (const auto dynamic = segment(PT_DYNAMIC))
        m_dynamic = table<ElfW(Dyn)>(dynamic->p_offset, dynamic->p_filesz);
    readImports(header);
}

void ElfFile::readImports(const ElfW(Ehdr) & header)
{
    using Section = ElfW(Shdr);
    const auto sections = table<Section>(header.e_shoff, header.e_shnum * sizeof(Section));
    for (const Section &section : sections) {
        if (section.sh_type != SHT_DYNSYM)
            continue;
        const std::size_t names = sections.at(section.sh_link).sh_offset;
        for (const auto &symbol : table<ElfW(Sym)>(section.sh_offset, section.sh_size)) {
            if (symbol.st_shndx == SHN_UNDEF)
                m_imports += &m_content.at(names + symbol.st_name);
        }
    }
}

std::optional<ElfFile::Segment> ElfFile::segment(unsigned type) const
{
    const auto found = std::find_if(m_segments.begin(), m_segments.end(),
                                    [type](const Segment &one) { return one.p_type == type; });
    return found == m_segments.end() ? std::nullopt : std::optional(*found);
}

std::optional<ElfW(Xword)> ElfFile::dynamic(ElfW(Sxword) tag) const
{
    const auto found = std::find_if(m_dynamic.begin(), m_dynamic.end(),
                                    [tag](const auto &entry) { return entry.d_tag == tag; });
    return found == m_dynamic.end() ? std::nullopt : std::optional(found->d_un.d_val);
}

bool ElfFile::dynamicFlag(ElfW(Sxword) tag, ElfW(Xword) flag) const
{
    return (dynamic(tag).value_or(0) & flag) != 0;
}

std::string ElfFile::bytesAt(ElfW(Addr) address, std::size_t size) const
{
    for (const Segment &one : m_segments) {
        if (one.p_type == PT_LOAD && address >= one.p_vaddr && address - one.p_vaddr < one.p_filesz)
            return m_content.substr(one.p_offset + (address - one.p_vaddr), size);
    }
    return {};
}

quint32 ElfFile::property(quint32 type) const
{
    const auto note = segment(PT_GNU_PROPERTY);
    if (!note)
        return 0;
    const auto header = at<ElfW(Nhdr)>(note->p_offset);
    // The name is "GNU" with its terminating NUL. Each property is aligned to the size of an
    // address.
    std::size_t offset = note->p_offset + sizeof header + header.n_namesz;
    const std::size_t end = offset + header.n_descsz;
    while (offset < end) {
        const auto size = at<quint32>(offset + sizeof type);
        if (at<quint32>(offset) == type)
            return at<quint32>(offset + 2 * sizeof type);
        constexpr std::size_t alignment = sizeof(void *);
        offset += (2 * sizeof type + size + alignment - 1) / alignment * alignment;
    }
    return 0;
}

} // namespace tidewick
