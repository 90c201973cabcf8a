"""Whether the picture goes on moving while the main thread stands still, as it does for a disk that doesn't answer."""
import statistics
import time

import stopped_thread
import table
from screen import MOST_OF_IT, Screen
from shows import Lumivane

BLOCKED_SECONDS = 0.5
REFRESH_SECONDS = 1 / 60
LATE = 1.5  # usual intervals
SETTLE = 6
PEER = "not stopped"

NOTE = (f"Stopped for {BLOCKED_SECONDS * 1000:.0f} ms while a picture moves, in turn with the same time without a stop; what "
        f"comes late then, too, is the machine's doing. Late: more than {LATE:g} usual intervals after the frame before; "
        "usual is the median without a stop, and no less than 1/60 s.")


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
    usual = max(REFRESH_SECONDS, statistics.median(interval for frames in free for interval in _intervals(frames)))
    late_blocked, late_free = (sum(_late(frames, usual) for frames in of) for of in (blocked, free))
    return [table.Row(f"main thread stopped: late frames in {blocks} stops", "", [late_blocked], PEER, [late_free],
                      most=0, note=NOTE),
            _row("main thread stopped: frames", "", len, blocked, free),
            _row("main thread stopped: longest interval", "ms", _longest, blocked, free)]


def _row(work, unit, figure, blocked, free):
    return table.Row(work, unit, [figure(frames) for frames in blocked], PEER, [figure(frames) for frames in free], note=NOTE)


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


def _late(frames, usual):
    return sum(interval > LATE * usual for interval in _intervals(frames))


def _longest(frames):
    return max(_intervals(frames)) * 1000
