# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

"""Tells the checks how build/ compiles the sources."""

import json
import pathlib
import shlex

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build"


def without_precompiled(words):
    """The flags without precompiled headers, so that each file is checked with only its own includes."""
    result = []
    words = iter(words)
    for word in words:
        if word == "-include":
            next(words)
        elif word not in ("-Winvalid-pch", "-fpch-preprocess"):
            result.append(word)
    return result


def compile_flags():
    """The flags of each source; if several targets compile it, those of the first one."""
    flags = {}
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        found = without_precompiled(words[1:words.index("-o")])
        flags.setdefault(pathlib.Path(entry["file"]), found)
    return flags
