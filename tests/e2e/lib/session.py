"""What every end-to-end session shares: a failed check, and the run of a whole session inside
its display server (and window manager or compositor) with the report of how it ended."""

import contextlib
import os
import subprocess
import sys

from xdriver import DriverError


class Check(Exception):
    pass


def expect(condition, message):
    if not condition:
        raise Check(message)


def run_session(make_session, servers, failure_shot):
    """Enters `servers` (context managers), makes the session from what they give, runs it and
    reports the step it failed at with a screenshot and the program's last output. The session
    has `run`, `step`, `app` (with `stop`, `screen_shot` and `log_path`) and `close`. Returns the
    exit status."""
    session, ok = None, False
    try:
        with contextlib.ExitStack() as stack:
            entered = [stack.enter_context(server) for server in servers]
            session = make_session(*entered)
            try:
                session.run()
                ok = True
            except (Check, DriverError, subprocess.SubprocessError, OSError) as error:
                print(f"FAILED at '{session.step}': {error}", file=sys.stderr)
                try:
                    session.app.screen_shot(failure_shot)
                except (DriverError, OSError):
                    pass
                if os.path.exists(session.app.log_path):
                    with open(session.app.log_path) as log:
                        print("program output:\n" + log.read()[-3000:], file=sys.stderr)
            finally:
                session.app.stop()
    finally:
        if session is not None:
            session.close()
    return 0 if ok else 1
