"""What processes take: processor time and memory, read from the kernel's own accounts."""
import os
import pathlib
import subprocess
import time

_TICKS = os.sysconf("SC_CLK_TCK")


class Finished:
    """What a command took until it ended, the processes that it waited for included."""

    def __init__(self, use, seconds):
        self.cpu_seconds = use.ru_utime + use.ru_stime
        self.peak_mib = use.ru_maxrss / 1024  # never told as less than that of this process, which the kernel counts as its past
        self.seconds = seconds


def run(command, environment=None, output=subprocess.DEVNULL):
    """Runs a command to its end. Raises when it fails."""
    begin = time.monotonic()
    process = subprocess.Popen([str(word) for word in command], env=environment, stdout=output)
    _, status, use = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)  # spares Python a second wait for it
    if process.returncode != 0:
        raise RuntimeError(f"{command[0]} ended with {process.returncode}")
    return Finished(use, time.monotonic() - begin)


def descendants(pid):
    """The process and all that it has started, and they, now."""
    found = [pid]
    try:
        for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
            for child in (task / "children").read_text().split():
                found += descendants(int(child))
    except (FileNotFoundError, ProcessLookupError):
        pass
    return found


def cpu_seconds(pid):
    """User and system time of a process with all its threads and of the children that it has waited for."""
    try:
        fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    except (FileNotFoundError, ProcessLookupError):
        return 0.0
    return sum(map(int, fields[11:15])) / _TICKS


def cpu_seconds_of_all(pid):
    """The same for a process and whatever it has started and still runs."""
    return sum(map(cpu_seconds, descendants(pid)))


def machine():
    """What kind of machine this is, in one line."""
    info = pathlib.Path("/proc/cpuinfo").read_text()
    model = next((line.partition(":")[2].strip() for line in info.splitlines() if line.startswith("model name")), "processor")
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    return f"{os.cpu_count()} x {model}, {memory:.0f} GiB, {os.uname().sysname} {os.uname().release}"
