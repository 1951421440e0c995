"""Where the name and the password of the user come from."""

from __future__ import annotations

import getpass
import os
import stat
import warnings


def find_user() -> str:
    """The name of the login."""
    try:
        return getpass.getuser()
    except (KeyError, OSError):
        raise ValueError("'user' is missing; use user= or TAVO_USER") from None


def find_password(user: str, file: str | None) -> str:
    """The first line of the file if one is named, else TAVO_PASSWORD of the environment, else what is typed."""
    if file is not None:
        return _first_line(file)
    found = os.environ.get("TAVO_PASSWORD")
    if found is not None:
        return found
    try:
        os.close(os.open("/dev/tty", os.O_RDWR | os.O_CLOEXEC))
    except OSError:
        raise ValueError(
            "'password' is missing, and there is no terminal to ask at; use password=, password_file= or the "
            "environment variable TAVO_PASSWORD"
        ) from None
    return getpass.getpass(f"Password of {user}: ")


def _first_line(file: str) -> str:
    with open(file, encoding="utf-8", errors="surrogateescape") as opened:
        mode = os.fstat(opened.fileno()).st_mode
        if stat.S_ISREG(mode) and mode & (stat.S_IRWXG | stat.S_IRWXO):
            text = f"the password file {file!r} is accessible to others: its mode is "
            warnings.warn(f"{text}{stat.S_IMODE(mode):04o}, not 0600", stacklevel=5)
        return opened.readline().rstrip("\r\n")
