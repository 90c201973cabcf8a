"""Whether the picture goes on moving while the main thread stands still, as it does for a disk that doesn't answer."""
import time

import stopped_thread
import table
from screen import MOST_OF_IT, Screen
from shows import Lumivane

BLOCKED_SECONDS = 0.5
REFRESH_SECONDS = 1 / 60
LATE = 1.5 * REFRESH_SECONDS  # as LUMIVANE_FRAME_STATS counts it, give or take the millisecond of the X server's clock
SETTLE = 6

NOTE = (f"Stopped for {BLOCKED_SECONDS * 1000:.0f} ms while a picture moves, in turn with the same time without a stop; what "
        "comes late then, too, is the machine's doing. Late: more than one and a half refresh intervals after the frame before.")


def rows(bench):
    blocks = 4 if bench.quick else 20
    screen = Screen(bench.workshop.home("screen"))
    try:
        with Lumivane(screen, bench.workshop.home("blocked"), bench.workshop.pictures(), KenBurnsIsOn="true",
                      DurationPerImage="60") as show:
            show.start()
            time.sleep(SETTLE)
            blocked, free = table.in_turn(blocks, lambda: _frames_while_blocked(show), lambda: _frames_while_free(show))
    finally:
        screen.close()
    return [table.Row(f"main thread stopped: {what}", unit, [find(frames) for frames in blocked], "not stopped",
                      [find(frames) for frames in free], most=most, paired=False, note=NOTE)
            for what, unit, find, most in (("late frames", "", _late, 0), ("frames", "", len, None),
                                           ("longest interval", "ms", _longest, None))]


def _frames_while_blocked(show):
    show.screen.watch.forget()
    with stopped_thread.stopped(show.process.pid):
        frames = show.screen.watch.frames(BLOCKED_SECONDS, MOST_OF_IT)
    time.sleep(BLOCKED_SECONDS)  # what the main thread has missed, it does now
    return frames


def _frames_while_free(show):
    return show.screen.watch.frames(BLOCKED_SECONDS, MOST_OF_IT)


def _intervals(frames):
    """A show that stands still has one as long as the block."""
    ends = [later - earlier for earlier, later in zip(frames, frames[1:])]
    return ends or [BLOCKED_SECONDS]


def _late(frames):
    return sum(interval > LATE for interval in _intervals(frames))


def _longest(frames):
    return max(_intervals(frames)) * 1000
