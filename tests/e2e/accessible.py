"""The program's windows as a screen reader is told of them: names, states, and where things are on the screen.

Asked in a process of its own for each question, since the library for it keeps its bus for good."""
import json
import subprocess

READER = """
import json, sys, pyatspi
def told(thing):
    try:
        place = thing.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        where = [place.x, place.y, place.width, place.height]
    except NotImplementedError:
        where = None
    states = thing.getState()
    return {"role": thing.getRoleName(), "name": thing.name, "where": where,
            "showing": states.contains(pyatspi.STATE_SHOWING), "checked": states.contains(pyatspi.STATE_CHECKED)}
def all_below(thing):
    yield told(thing)
    for number in range(thing.childCount):
        child = thing.getChildAtIndex(number)
        if child is not None:
            yield from all_below(child)
json.dump([each for app in pyatspi.Registry.getDesktop(0) for each in all_below(app)], sys.stdout)
"""


def announce(environment):
    """Starts the bus for screen readers; the program looks for it when it begins."""
    subprocess.run(["gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus", "--method",
                    "org.a11y.Bus.GetAddress"], env=environment, timeout=30, check=True, stdout=subprocess.DEVNULL)
    environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"


def things(environment):
    """All that the program's windows hold, from the outside in."""
    done = subprocess.run(["/usr/bin/python3", "-c", READER], env=environment, timeout=60, check=False, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    return json.loads(done.stdout) if done.returncode == 0 else []


def shown(environment, role, name):
    """The one thing of that role and name that can be seen; None while there is none."""
    found = [thing for thing in things(environment) if thing["role"] == role and thing["name"] == name and thing["showing"]]
    return found[0] if found else None


def middle(thing):
    x, y, width, height = thing["where"]
    return x + width // 2, y + height // 2
