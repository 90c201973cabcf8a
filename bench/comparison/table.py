"""What was measured, row by row, and how it is told: one table for people, one JSON object for programs."""
import dataclasses
import math
import statistics


@dataclasses.dataclass
class Row:
    """One figure of ours, beside one of a peer's or alone.

    `ours` and `theirs` are samples, taken in turn: the n-th of one lies beside the n-th of the other in time. With `paired` false
    they were not, and medians are divided instead.
    """
    work: str
    unit: str
    ours: list
    peer: str = ""
    theirs: list = dataclasses.field(default_factory=list)
    most_ratio: float | None = None    # target: ours is at most so many times theirs
    most: float | None = None          # target: ours is at most so much, in `unit`
    paired: bool = True
    note: str = ""

    def ratio(self):
        """Of ours to theirs; None where there is nothing to divide by."""
        if not self.theirs or not self.ours:
            return None
        if not self.paired:
            below = statistics.median(self.theirs)
            return statistics.median(self.ours) / below if below > 0 else None
        ratios = [ours / theirs for ours, theirs in zip(self.ours, self.theirs) if theirs > 0]
        return statistics.median(ratios) if ratios else None

    def reached(self):
        """Whether the target is reached; None where there is none. What could not be measured has not reached it."""
        if self.most is not None:
            return bool(self.ours) and statistics.median(self.ours) <= self.most
        if self.most_ratio is None:
            return None
        return self.ratio() is not None and self.ratio() <= self.most_ratio

    def target(self):
        if self.most is not None:
            return f"<= {self.most:g} {self.unit}"
        return f"<= {self.most_ratio:g} x" if self.most_ratio is not None else ""

    def as_json(self):
        return {"work": self.work, "unit": self.unit, "ours": self.ours, "peer": self.peer, "theirs": self.theirs,
                "medianOurs": _median(self.ours), "medianTheirs": _median(self.theirs), "medianRatio": self.ratio(),
                "ratioOfPairs": self.paired, "target": self.target(), "reached": self.reached(), "note": self.note}


def in_turn(rounds, *measures):
    """Calls each of the measures once a round, in their order; the samples of each."""
    samples = [[] for _ in measures]
    for _ in range(rounds):
        for found, measure in zip(samples, measures):
            found.append(measure())
    return samples


def _median(samples):
    return statistics.median(samples) if samples else None


def _figure(samples, unit):
    """The median to three digits, and how far the samples lie from it: half of the distance of the two quartiles."""
    if not samples:
        return ""
    middle = statistics.median(samples)
    told = f"{_digits(middle)} {unit}"
    if len(samples) >= 4 and middle:
        low, _, high = statistics.quantiles(samples, n=4)
        told += f" ±{(high - low) / 2 / abs(middle):.0%}"
    return told


def _digits(number):
    if number == 0 or not math.isfinite(number):
        return f"{number:g}"
    return f"{number:.{max(0, 2 - math.floor(math.log10(abs(number))))}f}"


HEADINGS = ("work", "ours", "against", "theirs", "ratio", "target", "reached")


def as_text(rows):
    """The table in Markdown, its columns aligned; notes below it."""
    notes, lines = [], [HEADINGS]
    for row in rows:
        mark = ""
        if row.note:
            if row.note not in notes:
                notes.append(row.note)
            mark = f" [{notes.index(row.note) + 1}]"
        reached = {None: "", True: "yes", False: "NO"}[row.reached()]
        ratio = "" if row.ratio() is None else f"{row.ratio():.2f} x"
        lines.append((row.work + mark, _figure(row.ours, row.unit), row.peer, _figure(row.theirs, row.unit), ratio,
                      row.target(), reached))
    widths = [max(len(line[column]) for line in lines) for column in range(len(HEADINGS))]
    told = ["| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |" for line in lines]
    told.insert(1, "|" + "|".join("-" * (width + 2) for width in widths) + "|")
    return "\n".join(told + [""] + [f"[{number}] {note}" for number, note in enumerate(notes, 1)])
