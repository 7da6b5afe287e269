#!/usr/bin/env python3
"""Fails when docs/native_calls.md names a file that is not there."""

import pathlib
import re
import sys

root = pathlib.Path(__file__).parents[2]
bases = [root / base for base in ("", "platform/macos", "platform/linux", "input_helper")]
document = root / "docs" / "native_calls.md"
named = re.findall(r"`([\w/]+(?:\.(?:cpp|h|mm)|/))`", document.read_text(encoding="utf-8"))
missing = sorted({path for path in named if not any((base / path).exists() for base in bases)})
for path in missing:
    print(f"{document.name} names {path}, which is not there", file=sys.stderr)
sys.exit(bool(missing) or not named)
