"""Pictures as small lists of numbers, made with ImageMagick and compared here."""
import subprocess

WIDTH, HEIGHT = 96, 54  # enough to tell pictures apart, too little to notice how each was scaled
COUNT = WIDTH * HEIGHT * 3


def _raw(command, environment=None):
    done = subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60, check=False)
    if done.returncode != 0 or len(done.stdout) != COUNT:
        raise RuntimeError(f"{command[0]} gave {len(done.stdout)} bytes: {done.stderr.decode(errors='replace')}")
    return list(done.stdout)


def of_screen(environment):
    """The whole X screen, squeezed into the small size."""
    return _raw(["import", "-silent", "-window", "root", "-resize", f"{WIDTH}x{HEIGHT}!", "-depth", "8", "rgb:-"], environment)


def area_of_screen(environment, x, y, width, height):
    """A part of the X screen, pixel by pixel."""
    return subprocess.run(["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"],
                          env=environment, stdout=subprocess.PIPE, timeout=60, check=True).stdout


def of_file(path):
    """The picture as it is, squeezed into the small size."""
    return _raw(["convert", str(path), "-resize", f"{WIDTH}x{HEIGHT}!", "-depth", "8", "rgb:-"])


def fitted(path, width, height):
    """What a screen of that size shows of a picture that is fitted into it: upright, on black."""
    return _raw(["convert", f"{path}[0]", "-auto-orient", "-colorspace", "sRGB", "-resize", f"{width}x{height}",
                 "-background", "black", "-alpha", "remove", "-gravity", "center", "-extent", f"{width}x{height}",
                 "-resize", f"{WIDTH}x{HEIGHT}!", "-depth", "8", "rgb:-"])


def distance(one, other):
    """Mean absolute difference, 0..255."""
    return sum(abs(a - b) for a, b in zip(one, other)) / COUNT


def position_between(shot, start, end):
    """How far the shot lies on the way from start to end (0..1), and how far beside that way (0..255)."""
    way = [b - a for a, b in zip(start, end)]
    length = sum(w * w for w in way)
    part = sum((s - a) * w for s, a, w in zip(shot, start, way)) / length
    return part, distance(shot, [a + part * w for a, w in zip(start, way)])


def part_of_light_grey(shot):
    """How much of the picture (0..1) is the light grey of dialogs."""
    light = sum(all(225 <= channel <= 250 for channel in shot[i:i + 3]) for i in range(0, COUNT, 3))
    return light * 3 / COUNT
