"""From the start of the program until its first picture can be seen, with more and more pictures in its list."""
import table
from screen import Screen
from shows import Feh, Lumivane

MOST_TIMES_FEH = {"few": 1.0, "many": 0.5}
MOST_TIMES_OWN_THOUSAND = 1.2

NOTE = ("1920x1080, JPEG of 24 megapixels, in random order; no motion, no dissolve. Over when the middle of the screen is "
        "bright. Ours reads the list that was collected before.")
FEH_WALKS = "feh -F -r --randomize FOLDER"
FEH_READS = "feh -F --randomize --filelist LIST"


def rows(bench):
    screen = Screen(bench.workshop.home("start"))
    try:
        return _rows(bench, screen)
    finally:
        screen.close()


def _rows(bench, screen):
    few, most = 1000, bench.many
    counts = sorted(count for count in {few, most // 10, most} if bench.wants(str(count)))
    shows = {count: _shows(bench, screen, count) for count in counts}
    taken = {count: {name: [] for name in shows[count]} for count in counts}
    for turn in range(bench.rounds(7) + 1):
        for count in counts:
            for name, show in shows[count].items():
                start = _Start(show)
                if turn > 0:  # the first turn fills the system's caches
                    taken[count][name].append(start)
    found = []
    for count in counts:
        target = {few: MOST_TIMES_FEH["few"], most: None}.get(count, MOST_TIMES_FEH["many"])
        found += _rows_of_count(count, taken[count], target)
    if most != few and {few, most} <= set(counts):
        found.append(table.Row(f"start to first picture, {most:,} against {few:,}", "ms", _times(taken[most][Lumivane.name]),
                               "itself", _times(taken[few][Lumivane.name]), most_ratio=MOST_TIMES_OWN_THOUSAND, note=NOTE))
    return found


def _rows_of_count(count, taken, target):
    work = f"start to first picture, {count:,}"
    ours = taken[Lumivane.name]
    return [table.Row(work, "ms", _times(ours), FEH_WALKS, _times(taken[FEH_WALKS]), most_ratio=target, note=NOTE),
            table.Row(work, "ms", _times(ours), FEH_READS, _times(taken[FEH_READS]), note=NOTE),
            table.Row(f"{work}: CPU", "ms", [start.cpu_ms for start in ours], FEH_WALKS,
                      [start.cpu_ms for start in taken[FEH_WALKS]], note=NOTE)]


def _times(starts):
    return [start.milliseconds for start in starts]


class _Start:
    """One start: how long until the picture was there, and what processor time had been taken by then."""

    def __init__(self, show):
        with show:
            self.milliseconds = show.start() * 1000
            self.cpu_ms = show.cpu_seconds() * 1000


def _shows(bench, screen, count):
    tree = bench.workshop.pictures_tree(count)
    home = bench.workshop.home(f"feh-{count}")
    listed = bench.workshop.folder / "homes" / f"feh-{count}" / "list"
    listed.write_text("".join(f"{path}\n" for path in sorted(tree.glob("*/*"))))
    return {Lumivane.name: Lumivane(screen, bench.workshop.home(f"start-{count}"), tree, DontRandomize="false"),
            FEH_WALKS: Feh(screen, home, "--recursive", "--randomize", tree),
            FEH_READS: Feh(screen, home, "--randomize", "--filelist", listed)}

