"""What a frame costs while a picture moves and while two dissolve, and how evenly frames come when the picture changes."""
import statistics
import time

import table
from screen import MOST_OF_IT, Screen
from shows import GlSlideshow, Lumivane

MOST_TIMES_SAVER = 1.0
MOST_FRAMES_OF_GAP = 2.0

SETTLE = 6        # seconds until textures are there and, with ours, the next picture is decoded
SECONDS_A_PICTURE = 8
FADE_SLIDER = 15  # the setting is squared into seconds (engine/FadeLength.h): 22.6
FADE_SECONDS = 8  # of glslideshow, one after the other

HOW = ("1920x1080 on software GL, pictures of 24 megapixels in the screen's shape; frames counted by the X server. glslideshow "
       "has copies at the screen's size, ours the whole picture.")
NOTE_COST = HOW + " CPU of all threads and children by the frame; nothing is decoded meanwhile."
NOTE_GAP = HOW + (f" A new picture every {SECONDS_A_PICTURE} s; the longest time between two frames in each such stretch, in "
                  "median times between two.")


def rows(bench):
    kinds = (("frame while a picture moves: CPU", _moving, lambda show: None),
             ("frame while two dissolve: CPU", _dissolving, _begin_dissolve))
    return [row for work, shows, begin in kinds if bench.wants(work) for row in _cost(bench, work, shows, begin)]


def gap_rows(bench):
    """The longest gaps at changes, in median frames."""
    changes = 3 if bench.quick else 10
    ours, theirs = table.in_turn(bench.rounds(2), lambda: _gaps(bench, _changing_ours, changes),
                                 lambda: _gaps(bench, _changing_theirs, changes))
    ours, theirs = ([gap for run in runs for gap in run] for runs in (ours, theirs))
    return [table.Row("gap at a change, median of changes", "frames", [one.frames for one in ours], GlSlideshow.name,
                      [one.frames for one in theirs], most=MOST_FRAMES_OF_GAP, paired=False, note=NOTE_GAP),
            table.Row("gap at a change, longest of all", "frames", [max(one.frames for one in ours)], GlSlideshow.name,
                      [max(one.frames for one in theirs)], most=MOST_FRAMES_OF_GAP, note=NOTE_GAP),
            table.Row("the same in time", "ms", [max(one.milliseconds for one in ours)], GlSlideshow.name,
                      [max(one.milliseconds for one in theirs)], note=NOTE_GAP)]


def _cost(bench, work, shows, begin):
    seconds = 3 if bench.quick else 8
    screen = Screen(bench.workshop.home("motion"))
    try:
        ours, theirs = shows(bench, screen)
        costs = table.in_turn(bench.rounds(5), lambda: _frame_cost(ours, begin, seconds),
                              lambda: _frame_cost(theirs, begin, seconds))
    finally:
        screen.close()
    cost, interval = ([[getattr(one, name) for one in of] for of in costs] for name in ("cpu_ms", "interval_ms"))
    return [table.Row(work, "ms", cost[0], GlSlideshow.name, cost[1], most_ratio=MOST_TIMES_SAVER, note=NOTE_COST),
            table.Row(work.replace("CPU", "median interval"), "ms", interval[0], GlSlideshow.name, interval[1], note=NOTE_COST)]


def _moving(bench, screen):
    """A single picture for the whole time: no fade, and no change of picture while it is watched."""
    return (Lumivane(screen, bench.workshop.home("moving"), bench.workshop.pictures(), KenBurnsIsOn="true",
                     DurationPerImage="60"),
            GlSlideshow(screen, bench.workshop.home("moving-gl"), bench.workshop.pictures(),
                        "--pan", 30, "--duration", 600, "--fade", 0))


def _dissolving(bench, screen):
    """Nothing but dissolve while it is watched. glslideshow fades from one part of a picture to another part of the same."""
    return (Lumivane(screen, bench.workshop.home("dissolving"), bench.workshop.pictures(), KenBurnsIsOn="true",
                     CrossDissolve="true", CrossDissolveDuration=str(FADE_SLIDER), DurationPerImage="60"),
            GlSlideshow(screen, bench.workshop.home("dissolving-gl"), bench.workshop.pictures(),
                        "--pan", FADE_SECONDS, "--duration", 600, "--fade", FADE_SECONDS))


def _begin_dissolve(show):
    """A long one; glslideshow is at it all the time, once its first picture has faded in."""
    if isinstance(show, Lumivane):
        show.next_picture()
    time.sleep(SETTLE)


class _Cost:
    def __init__(self, cpu_seconds, frames):
        self.interval_ms = statistics.median(_intervals(frames)) * 1000
        self.cpu_ms = cpu_seconds * 1000 / len(frames)


def _frame_cost(show, begin, seconds):
    with show:
        show.start()
        time.sleep(SETTLE)
        begin(show)
        before = show.cpu_seconds()
        frames = show.screen.watch.frames(seconds, MOST_OF_IT)
        return _Cost(show.cpu_seconds() - before, frames)


def _changing_ours(bench, screen):
    # The slider's 4 is a dissolve of 1.8 seconds.
    return Lumivane(screen, bench.workshop.home("changing"), bench.workshop.pictures(), KenBurnsIsOn="true", CrossDissolve="true",
                    CrossDissolveDuration="4", DurationPerImage=str(SECONDS_A_PICTURE), DontRandomize="false")


def _changing_theirs(bench, screen):
    return GlSlideshow(screen, bench.workshop.home("changing-gl"), bench.workshop.pictures(),
                       "--pan", SECONDS_A_PICTURE, "--duration", SECONDS_A_PICTURE, "--fade", 2)


class _Gap:
    def __init__(self, gap, median):
        self.frames = gap / median
        self.milliseconds = gap * 1000


def _gaps(bench, make, changes):
    """The longest gap of each stretch of time in which one picture follows another."""
    screen = Screen(bench.workshop.home("changes"))
    try:
        with make(bench, screen) as show:
            show.start()
            time.sleep(SETTLE)
            frames = screen.watch.frames(changes * SECONDS_A_PICTURE, MOST_OF_IT)
    finally:
        screen.close()
    median = statistics.median(_intervals(frames))
    longest = {}
    for at, interval in zip(frames[1:], _intervals(frames)):
        stretch = int((at - frames[0]) / SECONDS_A_PICTURE)
        longest[stretch] = max(longest.get(stretch, 0), interval)
    return [_Gap(gap, median) for gap in longest.values()]


def _intervals(frames):
    if len(frames) < 2:
        raise RuntimeError("nothing moves")
    return [later - earlier for earlier, later in zip(frames, frames[1:])]
