#!/usr/bin/python3
"""The scripts that make places.bin: what they write, and that the file that the program comes with is theirs."""
import pathlib
import random
import sys
import unittest

PLACES = pathlib.Path(__file__).resolve().parents[3] / "resources" / "places"
sys.path.insert(0, str(PLACES))
import places_format  # noqa: E402


def some_places(count, seed=1):
    rng = random.Random(seed)
    return [(places_format.on_globe(rng.uniform(-90, 90), rng.uniform(-180, 180)), f"Place {rng.randrange(count)}",
             rng.choice(["DE", "FR", "US"])) for _ in range(count)]


class PlacesFormat(unittest.TestCase):
    def test_what_is_written_is_read_back(self):
        for count in (1, 2, 3, 100):
            places = some_places(count)
            content = places_format.encode(places)
            self.assertEqual(sorted(places_format.decode(content)), sorted(places))
            places_format.verify(content, places)

    def test_the_order_of_the_source_does_not_matter(self):
        places = some_places(200) + [(places_format.on_globe(1, 2), name, "DE") for name in "bca"]
        shuffled = random.Random(2).sample(places, len(places))
        self.assertEqual(places_format.encode(places), places_format.encode(shuffled))

    def test_verifying_can_fail(self):
        places = some_places(50)
        with self.assertRaises(ValueError):
            places_format.verify(places_format.encode(places[1:]), places)
        with self.assertRaises(ValueError):
            places_format.decode(places_format.encode(places)[:-1])

    def test_names_that_do_not_fit_are_refused(self):
        for name in ("", "x" * 256):
            with self.assertRaises(ValueError):
                places_format.encode([((0, 0, 1), name, "DE")])

    def test_distances_are_over_ground(self):
        quarter = places_format.distance_km(places_format.on_globe(0, 180), places_format.on_globe(90, 0))
        self.assertAlmostEqual(quarter, 10007.557, places=2)

    def test_the_stored_file_is_what_the_script_writes(self):
        content = (PLACES / "places.bin").read_bytes()
        self.assertEqual(places_format.encode(places_format.decode(content)), content)


if __name__ == "__main__":
    unittest.main()
