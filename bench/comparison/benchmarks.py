"""The parts, measured by the Google Benchmark programs of bench/, taken over into the table.

Each of them calls its benchmarks WORK/ours and WORK/PEER; a row is made of each pair. Repetitions of all are mixed at random, and
the n-th of one is held against the n-th of the other.
"""
import json
import os
import subprocess

import table

MOST_MEAN_ERROR = 2  # of 255

# WORK: {PEER: how many times theirs ours may take at most}. What isn't here has no target.
TARGETS = {
    "jpeg-24mp": {"floor": 1.15, "imlib2": 0.75, "qt": 0.8},
    "jpeg-24mp-turned": {"imlib2": 0.55},
    "jpeg-24mp-progressive": {"floor": 1.15},
    "jpeg-45mp": {"qt": 0.6},
    "jpeg-100mp": {"qt": 0.7},
    "png-24mp": {"floor": 1.15},
    "tiff-24mp": {"floor": 1.15},
    "webp-12mp": {"floor": 1.15},
    "heic-24mp": {"floor": 1.15},
    "avif-12mp": {"floor": 1.3},
    "mip-levels-24mp": {"decode": 0.15},
    "walk-1m": {"find": 0.75},
    "sort-ascii": {"icu": 0.5},
    "sort-ascii-shuffled": {"icu": 0.5},
    "sort-mixed": {"icu": 1.0},
    "sort-mixed-shuffled": {"icu": 1.0},
}
# Ours against ours of another work.
OWN_TARGETS = {("jpeg-24mp-turned", "jpeg-24mp"): 1.15}

NOTE = "Processor time of all threads, by Google Benchmark; every file is in the system's cache."


def rows_of(program, **environment):
    """What measures one of the programs; environment: what it is told besides, made from the bench."""
    def rows(bench):
        told = {name: make(bench) for name, make in environment.items()}
        return _rows(_samples(_run(bench, program, told)))
    rows.program = program
    return rows


def _run(bench, program, told):
    folder = bench.workshop.folder / "benchmarks"
    folder.mkdir(exist_ok=True)
    command = [bench.build / "bench" / program, "--benchmark_format=json", f"--benchmark_repetitions={bench.rounds(7)}",
               "--benchmark_enable_random_interleaving=true"]
    if bench.quick:
        command.append("--benchmark_min_time=0.02")
    if bench.detail:
        command.append(f"--benchmark_filter={bench.detail}")
    done = subprocess.run([str(word) for word in command], env={**os.environ, **told, "TMPDIR": str(folder)}, check=True,
                          stdout=subprocess.PIPE, text=True)
    return json.loads(done.stdout)


class _Samples(dict):
    """{WORK: {PEER or ours: milliseconds, repetition by repetition}}, with the errors that were told and the counters."""

    def __init__(self):
        super().__init__()
        self.errors, self.mean_errors = {}, {}

    def unit(self, work, who):
        return self.setdefault(work, {}).setdefault(who, [])


def _samples(told):
    samples = _Samples()
    for run in sorted((run for run in told["benchmarks"] if run["run_type"] == "iteration"),
                      key=lambda run: run.get("repetition_index", 0)):
        work, who, *manner = run["run_name"].split("/")
        times = samples.unit(work, who)
        if run.get("error_occurred"):
            samples.errors[work, who] = run["error_message"]
            continue
        # Where the time is told by hand it is the processor time of another process.
        times.append(run["real_time" if "manual_time" in manner else "cpu_time"] * _IN_MS[run["time_unit"]])
        if "mean_error" in run:
            samples.mean_errors[work, who] = run["mean_error"]
    return samples


_IN_MS = {"ns": 1e-6, "us": 1e-3, "ms": 1, "s": 1e3}


def _rows(samples):
    found = []
    for work, who in sorted(samples.items(), key=lambda item: _place(TARGETS, item[0])):
        for peer in sorted(who.keys() - {"ours"}, key=lambda peer: _place(TARGETS.get(work, {}), peer)):
            found.append(_row(samples, work, peer))
        if (work, "ours") in samples.mean_errors:
            found.append(_error_row(samples, work))
        for (ours, other), most in OWN_TARGETS.items():
            if ours == work and other in samples:
                found.append(table.Row(work, "ms", who.get("ours", []), f"{other}/ours", samples[other].get("ours", []),
                                       most_ratio=most, note=NOTE))
    return found


def _place(order, name):
    """What sorts names by the order of a dictionary, those that aren't in it by the alphabet behind them."""
    return (list(order).index(name) if name in order else len(order), name)


def _row(samples, work, peer):
    error = samples.errors.get((work, "ours")) or samples.errors.get((work, peer))
    return table.Row(work, "ms", samples[work].get("ours", []), peer, samples[work][peer],
                     most_ratio=TARGETS.get(work, {}).get(peer), note=f"{NOTE} Not measured: {error}." if error else NOTE)


def _error_row(samples, work):
    peers = [peer for of, peer in samples.mean_errors if of == work and peer != "ours"]
    theirs = [samples.mean_errors[work, peer] for peer in peers[:1]]
    return table.Row(f"{work}: mean error", "of 255", [samples.mean_errors[work, "ours"]], peers[0] if peers else "", theirs,
                     most=MOST_MEAN_ERROR, note="Against the whole picture, shrunk by Lanczos' filter.")
