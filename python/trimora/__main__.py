"""``python -m trimora FILE ... [OPTION ...]`` is ``trimora-run FILE ... [OPTION ...]``."""
import os
import signal
import sys

from . import _core


def main() -> None:
    # As in a program of its own: Ctrl-C and a closed pipe end it.
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    if hasattr(signal, "SIGPIPE"):
        signal.signal(signal.SIGPIPE, signal.SIG_DFL)
    sys.exit(_core.run([b"trimora-run", *map(os.fsencode, sys.argv[1:])]))


if __name__ == "__main__":
    main()
