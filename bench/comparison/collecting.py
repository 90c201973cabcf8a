"""Finding the pictures of a large tree: the whole `lumivane collect` against `find`, which looks at every file as well."""
import subprocess

import process_use
import slideshow
import table
import workshop

# What collect takes for pictures by their names (collection/PictureTypes.cpp), as far as the tree has them, and no other.
IS_PICTURE = r".*\.\(jpe?g\|heic\|png\|tif\)"

MOST_TIMES_FIND = 1.3
MOST_PEAK_MIB = 250


def find_command(tree):
    return ["find", tree, "-type", "f", "-size", f"+{workshop.SMALLEST_KIB}k", "-iregex", IS_PICTURE]


def rows(bench):
    tree = bench.workshop.files_tree(bench.many)
    _check_both_find_the_same(bench, tree)  # and the kernel knows all names and sizes from now on
    ours, theirs = table.in_turn(bench.rounds(7), lambda: _collect(bench, tree), lambda: process_use.run(find_command(tree)))
    note = (f"In folders of {workshop.IN_A_FOLDER:,}, all known to the kernel. Ours sorts and stores the list; find writes it to "
            "nowhere.")
    cpu, walls = ([[run.cpu_seconds * 1000 for run in runs] for runs in (ours, theirs)],
                  [[run.seconds * 1000 for run in runs] for runs in (ours, theirs)])
    work = f"collect {bench.many:,} files"
    return [
        table.Row(f"{work}: CPU", "ms", cpu[0], "find", cpu[1], most_ratio=MOST_TIMES_FIND, note=note),
        table.Row(f"{work}: time", "ms", walls[0], "find", walls[1], note=note),
        table.Row(f"{work}: peak memory", "MiB", [run.peak_mib for run in ours], most=MOST_PEAK_MIB, note=note),
    ]


def _environment(bench):
    home = str(bench.workshop.folder / "homes" / "collect")
    return {**slideshow.without_display(), "HOME": home, "LC_ALL": "C.UTF-8",
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}


def _collect(bench, tree):
    return process_use.run([bench.companion, "collect", "--display", "none", tree], _environment(bench))


def _check_both_find_the_same(bench, tree):
    bench.workshop.home("collect")
    told = subprocess.run([bench.companion, "collect", "--display", "none", tree], env=_environment(bench), check=True, text=True,
                          stdout=subprocess.PIPE).stdout
    ours = int(told.split()[0].replace(",", ""))
    with subprocess.Popen(find_command(tree), stdout=subprocess.PIPE) as find:
        theirs = sum(1 for _ in find.stdout)
    if ours != theirs:
        raise RuntimeError(f"lumivane collect finds {ours} pictures, find {theirs}: they do not do the same work")
