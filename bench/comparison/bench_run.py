"""What all rows share in one run: the programs of the build, the folder to work in, how much is asked for."""
import pathlib
import re
import subprocess

from workshop import Workshop

ROOT = pathlib.Path(__file__).resolve().parents[2]


class BenchRun:
    def __init__(self, build, folder, quick=False, rounds=None):
        self.build = build
        self.companion = build / "tools" / "lumivane"
        self.painter = build / "tools" / "demo-pictures" / "lumivane-demo-pictures"
        self.workshop = Workshop(folder, self.painter)
        self.quick = quick
        self.many = 20_000 if quick else 1_000_000  # files in the largest tree
        self.detail = ""                          # a pattern that narrows what a group of rows does
        self._rounds = rounds

    def rounds(self, usual):
        """How often a group measures that usually does so often."""
        return self._rounds or (min(2, usual) if self.quick else usual)

    def wants(self, part):
        """Whether this part of a group was asked for."""
        return re.search(self.detail, part) is not None

    def programs(self, benchmarks):
        """All programs of the build that are needed, those of bench/ by their names."""
        return [self.build / "app" / "LumivaneApp", self.companion, self.painter,
                *(self.build / "bench" / name for name in benchmarks)]


def require_packages(*lists):
    """Has the packages installed that are missing, as ./run and ./test do it."""
    script = 'set -euo pipefail; source packaging/setup.sh; require_packages "$@"'
    subprocess.run(["bash", "-c", script, "bench/compare", *lists], cwd=ROOT, check=True, stdout=2)
