"""What a show costs that stands still: nothing, or nearly so."""
import time

import table
from screen import Screen
from shows import Feh, Lumivane

MOST_CPU_SECONDS_A_MINUTE = 0.05
MOST_FRAMES = 0

SETTLE = 8  # seconds: the next picture is decoded by then

NOTE = ("One start each, no picture due for ten minutes; paused, blank and hidden (iconified) begin while the picture moves. CPU "
        "of the program and its decoder; drawings are all on the screen, however small.")


def rows(bench):
    seconds = 10 if bench.quick else 60
    found = []
    for state, settings, steps in STATES:
        if not bench.wants(state):
            continue
        ours, frames = _idle(bench, seconds, lambda screen, home: _ours(bench, screen, home, settings), steps)
        theirs, their_frames = None, None
        if state in FEH_CAN:
            theirs, their_frames = _idle(bench, seconds, lambda screen, home: _feh(bench, screen, home), FEH_CAN[state])
        found += [table.Row(f"idle, {state}: CPU a minute", "s", [ours], Feh.name if state in FEH_CAN else "",
                            [] if theirs is None else [theirs], most=MOST_CPU_SECONDS_A_MINUTE, note=NOTE),
                  table.Row(f"idle, {state}: drawings", "", [frames], Feh.name if state in FEH_CAN else "",
                            [] if their_frames is None else [their_frames], most=MOST_FRAMES, note=NOTE)]
    return found


def _press(key):
    return lambda show: show.screen.press(key)


def _freeze_and_pause(show):
    """The space bar lets no other picture come, z freezes the motion of this one."""
    show.screen.press("space")
    show.screen.press("z")


def _hide(show):
    show.screen.do("windowminimize", show.screen.window_of(show.process.pid))


STILL = {"DurationPerImage": "600"}
MOVING = {"DurationPerImage": "600", "KenBurnsIsOn": "true"}
STATES = (("still picture", STILL, lambda show: None), ("paused", MOVING, _freeze_and_pause), ("blank", MOVING, _press("b")),
          ("hidden", MOVING, _hide))
FEH_CAN = {"still picture": lambda show: None, "hidden": _hide}


def _ours(bench, screen, home, settings):
    return Lumivane(screen, home, bench.workshop.pictures(), **settings)


def _feh(bench, screen, home):
    return Feh(screen, home, "--slideshow-delay", 600, bench.workshop.pictures())


def _idle(bench, seconds, make, steps):
    """CPU seconds a minute, and how often something was drawn."""
    screen = Screen(bench.workshop.home("screen"))
    try:
        with make(screen, bench.workshop.home("idle")) as show:
            show.start()
            time.sleep(SETTLE)
            steps(show)
            time.sleep(SETTLE)
            screen.watch.forget()
            begin = show.cpu_seconds()
            drawings = sum(1 for _ in screen.watch.drawn(seconds))
            return (show.cpu_seconds() - begin) * 60 / seconds, drawings
    finally:
        screen.close()
