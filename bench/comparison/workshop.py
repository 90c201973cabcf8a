"""The pictures and folder trees that the comparison works with, made once and kept as long as their folder is."""
import os
import pathlib
import shutil
import subprocess

IN_A_FOLDER = 1000
# 24 megapixels in the screen's own shape: every program fills the same part of the screen with them.
PICTURE_WIDTH, PICTURE_HEIGHT = 6528, 3672
MEGAPIXELS = PICTURE_WIDTH * PICTURE_HEIGHT / 1e6
SOURCES = 24  # a million names for so few files stay below the 65,000 links that ext4 gives a file
SMALLEST_KIB = 5  # files of this size and smaller are no pictures: the setting ExcludekB as it comes

PICTURE_TYPES = ("jpg", "JPG", "jpeg", "heic", "png", "tif", "jpg")
OTHER_TYPES = ("mov", "txt")
# In bytes, most of them a camera's; one in ten is too small to be a picture.
FILE_SIZES = (7_000_000, 3_100_000, 24_000, 12_500_000, 450_000, 5_120, 6_200_000, 5_121, 890_000, 1_200)


class Workshop:
    """A folder with what is made. Every `make` is asked for by name and done at most once."""

    def __init__(self, folder, painter):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self._painter = painter

    def home(self, name):
        """An empty home folder."""
        home = self.folder / "homes" / name
        shutil.rmtree(home, ignore_errors=True)
        home.mkdir(parents=True)
        return str(home)

    def pictures(self):
        """A folder of bright JPEG files of 24 megapixels and 6 to 8 MB each, 4:2:0 as cameras write them."""
        return self._made("pictures", self._make_pictures)

    def pictures_tree(self, count):
        """That many pictures, 1,000 in a folder: names for the files of pictures(), which take no room."""
        sources = sorted(self.pictures().iterdir())
        return self._made(f"pictures-{count}", lambda root: _fill(
            root, count, lambda path, number: os.link(sources[number % len(sources)], f"{path}.jpg")))

    def files_tree(self, count):
        """That many files of many sizes, 1,000 in a folder, four of five with a picture's name. They hold nothing but a size."""
        return self._made(f"files-{count}", lambda root: _fill(root, count, _make_file))

    def _made(self, name, make):
        """The folder of that name; it gets its name only once it is whole."""
        made = self.folder / name
        if not made.exists():
            begun = self.folder / (name + ".begun")
            shutil.rmtree(begun, ignore_errors=True)
            begun.mkdir()
            make(begun)
            begun.rename(made)
        return made

    def _make_pictures(self, root):
        """Painted landscapes with the grain of a camera, lightened so that no middle of a screen that shows one is dark."""
        painted, grain = root.parent / "painted", root.parent / "grain.v"
        subprocess.run([self._painter, painted, "40"], check=True, timeout=120)
        _vips("gaussnoise", grain, PICTURE_WIDTH, PICTURE_HEIGHT, "--mean", "100", "--sigma", "5")
        paintings = sorted(painted.iterdir())
        for number in range(SOURCES):
            _make_picture(paintings[number % len(paintings)], grain, number >= len(paintings), root / f"{number:02}.jpg")
        grain.unlink()
        shutil.rmtree(painted)


def _make_picture(painting, grain, mirrored, made):
    """The painting, large, at half its contrast and with the grain laid over it."""
    upright, side, pale, large = steps = [made.with_suffix(f".{name}.v") for name in ("upright", "side", "pale", "large")]
    _vips("autorot", painting, upright)
    _vips("flip", upright, side, "horizontal")
    _vips("linear", side if mirrored else upright, pale, "0.5", "0")
    _vips("thumbnail", pale, large, PICTURE_WIDTH, "--height", PICTURE_HEIGHT, "--size", "force")
    _vips("add", large, grain, f"{made}[Q=94,subsample_mode=on,strip]")
    for step in steps:
        step.unlink()


def _vips(*words):
    subprocess.run(["vips", *map(str, words)], check=True, timeout=600, stderr=subprocess.DEVNULL)


def _fill(root, count, make):
    for number in range(count):
        folder = f"{root}/roll {number // IN_A_FOLDER:04}"
        if number % IN_A_FOLDER == 0:
            os.mkdir(folder)
        make(f"{folder}/IMG_{number % IN_A_FOLDER:04}", number)


def _make_file(path, number):
    """A file with an inode of its own, as in life; it takes no room for what it seems to hold."""
    types = OTHER_TYPES if number % 5 == 0 else PICTURE_TYPES
    with open(f"{path}.{types[number // 5 % len(types)]}", "wb", buffering=0) as file:
        file.truncate(FILE_SIZES[number % 97 % len(FILE_SIZES)])
