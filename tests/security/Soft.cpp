// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// A program without any protection, as a counterexample for the test. It is never run.

// Data that is both writable and executable.
__asm__(".pushsection .soft, \"awx\"\n.byte 0\n.popsection");

int main()
{
    return 0;
}
