// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Where branches are tracked, a jump to an address that was looked up has to land on an instruction
// made for that. The C library's start files do not everywhere have it at the three places that the
// loader jumps to. Here they do, and go on there.

__asm__(R"(
    .text
    .globl tidewick_start, tidewick_init, tidewick_fini
    .hidden tidewick_start, tidewick_init, tidewick_fini
    .type tidewick_start, @function
    .type tidewick_init, @function
    .type tidewick_fini, @function
tidewick_start:
    endbr64
    jmp _start
tidewick_init:
    endbr64
    jmp _init
tidewick_fini:
    endbr64
    jmp _fini
)");
