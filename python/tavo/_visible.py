"""Texts of devices on a terminal, by the rule of the tool."""

from __future__ import annotations

#: Code points that are invisible, or change how their neighbours are shown.
_UNSEEN = (
    (0x00, 0x1F), (0x7F, 0x9F), (0xAD, 0xAD), (0x61C, 0x61C), (0x180E, 0x180E), (0x200B, 0x200F),
    (0x2028, 0x202E), (0x2060, 0x206F), (0xFEFF, 0xFEFF), (0xFFF9, 0xFFFB), (0xE0000, 0xE007F),
)  # fmt: skip


def _shown(point: int) -> str:
    if 0xDC80 <= point <= 0xDCFF:  # a byte that is not UTF-8
        return f"\\x{point - 0xDC00:02x}"
    if 0xD800 <= point <= 0xDFFF:
        return f"\\u{point:04x}"
    if not any(first <= point <= last for first, last in _UNSEEN):
        return chr(point)
    if point < 0x80:
        return f"\\x{point:02x}"
    return f"\\u{point:04x}" if point <= 0xFFFF else f"\\U{point:08x}"


def visible(text: str) -> str:
    """The text on one line, all of it seen, and none of it a control of the terminal."""
    return "".join(_shown(ord(letter)) for letter in text)
