// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include <QCoreApplication>

/// What any program on Qt Core has to pay: loading the library and making the application object.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return 0;
}
