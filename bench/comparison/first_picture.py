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
    seconds = {count: {name: [] for name in shows[count]} for count in counts}
    for turn in range(bench.rounds(7) + 1):
        for count in counts:
            for name, show in shows[count].items():
                taken = _start_and_end(show)
                if turn > 0:  # the first turn fills the system's caches
                    seconds[count][name].append(taken * 1000)
    found = []
    for count in counts:
        ours = seconds[count][Lumivane.name]
        target = {few: MOST_TIMES_FEH["few"], most: None}.get(count, MOST_TIMES_FEH["many"])
        work = f"start to first picture, {count:,}"
        found += [table.Row(work, "ms", ours, FEH_WALKS, seconds[count][FEH_WALKS], most_ratio=target, note=NOTE),
                  table.Row(work, "ms", ours, FEH_READS, seconds[count][FEH_READS], note=NOTE)]
    if most != few and {few, most} <= set(counts):
        found.append(table.Row(f"start to first picture, {most:,} against {few:,}", "ms", seconds[most][Lumivane.name],
                               "itself", seconds[few][Lumivane.name], most_ratio=MOST_TIMES_OWN_THOUSAND, note=NOTE))
    return found


def _shows(bench, screen, count):
    tree = bench.workshop.pictures_tree(count)
    home = bench.workshop.home(f"feh-{count}")
    listed = bench.workshop.folder / "homes" / f"feh-{count}" / "list"
    listed.write_text("".join(f"{path}\n" for path in sorted(tree.glob("*/*"))))
    return {Lumivane.name: Lumivane(screen, bench.workshop.home(f"start-{count}"), tree, DontRandomize="false"),
            FEH_WALKS: Feh(screen, home, "--recursive", "--randomize", tree),
            FEH_READS: Feh(screen, home, "--randomize", "--filelist", listed)}


def _start_and_end(show):
    with show:
        return show.start()
