// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "bench/StoreOfFiles.h"

#include "platform/files/Files.h"

#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace tidewick::bench {

StoreOfFiles::StoreOfFiles(int files)
{
    constexpr int filesPerFolder = 100;
    std::filesystem::path folder;
    for (int file = 0; file < files; ++file) {
        if (file % filesPerFolder == 0) {
            folder = path() / std::to_string(file / filesPerFolder);
            std::filesystem::create_directory(folder);
        }
        const std::string name = (folder / std::to_string(file)).string();
        const UniqueDescriptor descriptor(::open(name.c_str(), O_WRONLY | O_CREAT, 0600));
        if (!Files::writeAll(descriptor.get(), "x", 1))
            qFatal("%s cannot be written", name.c_str());
    }
    ::sync(); // so that nothing is written back later
}

} // namespace tidewick::bench
