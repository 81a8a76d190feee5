// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// With branch tracking, an indirect jump has to land on an instruction made for that. The C
// library's start files do not always have one at the three addresses that the loader jumps to.
// These entry points have one and jump on to the originals.

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
