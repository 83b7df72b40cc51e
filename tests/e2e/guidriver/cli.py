"""The command `gui`."""

import argparse
import code
import re
import runpy
import signal
import sys
import traceback
from pathlib import Path

from . import GuiError, NotFound, ProgramEnded, Session


def split(args):
    """What is before and after the last "--"."""
    if "--" not in args:
        return args, []
    i = len(args) - 1 - args[::-1].index("--")
    return args[:i], args[i + 1:]


def options(parser):
    parser.add_argument("--home", metavar="DIR", help="home directory of the program, kept; else an empty temporary one")
    parser.add_argument("--size", default="1280x1024", help="size of the screen")
    parser.add_argument("--timeout", type=float, default=10, help="seconds to wait for what an operation needs")
    parser.add_argument("--hang", type=float, default=20, help="seconds without an answer after which the program counts as hung")


def session(o, argv):
    return Session(argv, size=tuple(map(int, o.size.split("x"))), home=o.home, timeout=o.timeout, hang_after=o.hang)


def save_failure(ui, folder):
    folder = Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    ui.display.grab().save(folder / "failure.png")
    (folder / "stdout.txt").write_text(ui.stdout())
    (folder / "stderr.txt").write_text(ui.stderr())
    if ui.status is not None:
        state = f"the program {ui.status_text()}"
    else:
        state = ui.tree() if ui.responsive() else "the program does not answer\n" + ui.backtrace()
    (folder / "state.txt").write_text(state + "\n")
    print(f"gui: screenshot, output and state are in {folder}", file=sys.stderr)


def run(o, script, program):
    """Runs a script; 0 if it went through, 1 if it failed, 3 if the program ended under it."""
    with session(o, program) as ui:
        names = {"ui": ui, "re": re, "GuiError": GuiError, "NotFound": NotFound, "ProgramEnded": ProgramEnded}
        sys.argv = script
        try:
            runpy.run_path(script[0], names, "__main__")
        except Exception as e:
            traceback.print_exc()
            print(f"gui: program {ui.status_text()}", file=sys.stderr)
            if o.keep:
                save_failure(ui, o.keep)
            return 3 if isinstance(e, ProgramEnded) else 1
    return 0


def main(args=None):
    args = sys.argv[1:] if args is None else args
    parser = argparse.ArgumentParser(prog="gui", description="Drives a desktop program on a private display.")
    commands = parser.add_subparsers(dest="command", required=True)
    for name, usage, text in (
            ("run", "gui run [options] SCRIPT.py [ARGS] -- PROGRAM [ARGS]", "run a script that has the session as `ui`"),
            ("shot", "gui shot [options] PROGRAM [ARGS] -- OUT.png", "start, take a screenshot, quit"),
            ("tree", "gui tree [options] PROGRAM [ARGS]", "start, print the accessible tree, quit"),
            ("shell", "gui shell [options] PROGRAM [ARGS]", "type operations, such as ui.click('OK'), or pipe them in")):
        c = commands.add_parser(name, usage=usage, help=text)
        options(c)
        if name == "run":
            c.add_argument("--keep", metavar="DIR", help="where to put what is known about a failure")
        if name == "tree":
            c.add_argument("--hidden", action="store_true", help="also what does not show")
        c.add_argument("rest", nargs=argparse.REMAINDER)
    o = parser.parse_args(args)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    before, after = split(o.rest) if o.command in ("run", "shot") else (o.rest, [None])
    if not after or not before:
        parser.error(f"see gui {o.command} --help")
    try:
        if o.command == "run":
            return run(o, before, after)
        with session(o, before) as ui:
            if o.command == "shot":
                ui.shot(after[0])
            elif o.command == "tree":
                print(ui.tree(hidden=o.hidden))
            else:
                code.interact("", local={"ui": ui, "re": re}, exitmsg="")
        return 0
    except GuiError as e:
        print(f"gui: {e}", file=sys.stderr)
        return 3 if isinstance(e, ProgramEnded) else 1
    except KeyboardInterrupt:
        return 130
