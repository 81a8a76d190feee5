// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/DefaultsWriter.h"
#include "faults/host/HostFaults.h"

using namespace tidewick;

int main(int argc, char *argv[])
{
    if (const auto status = DefaultsWriter::run(argc, argv))
        return *status;
    std::vector<Fault> faults;
    for (const auto &group :
         {portFaults, folderFaults, diskFaults, defaultsFaults, clockFaults, kernelFaults}) {
        const std::vector<Fault> some = group();
        faults.insert(faults.end(), some.begin(), some.end());
    }
    return runFaults("host", faults, argc, argv);
}
