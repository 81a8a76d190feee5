// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include <QCoreApplication>

/// The least that any Qt Core program costs: loading the library and creating the application
/// object.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return 0;
}
