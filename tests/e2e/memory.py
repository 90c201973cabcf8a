"""What the program and the processes that it has started hold in memory."""
import pathlib
import re


def mib(pid, kind):
    status = pathlib.Path(f"/proc/{pid}/status").read_text()
    return int(re.search(rf"{kind}:\s+(\d+) kB", status).group(1)) / 1024


def decoders(pid):
    """The processes that open the show's pictures."""
    children = [child for task in pathlib.Path(f"/proc/{pid}/task").iterdir()
                for child in (task / "children").read_text().split()]
    return [child for child in children
            if "lumivane-decode" in (status := pathlib.Path(f"/proc/{child}/status").read_text()) and "VmRSS" in status]


def resident_mib(process):
    """What the show and its decoder have each, and the pixels between them, all of which the decoder has touched."""
    return mib(process.pid, "RssAnon") + sum(mib(child, "RssAnon") + mib(child, "RssShmem")
                                             for child in decoders(process.pid))
