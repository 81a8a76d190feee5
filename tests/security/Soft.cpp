// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// A program with no protection at all, for the test to be held against. It is never run.

// Data that may be written and run.
__asm__(".pushsection .soft, \"awx\"\n.byte 0\n.popsection");

int main()
{
    return 0;
}
