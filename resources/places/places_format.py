"""Writes places.bin, and reads it back. imaging/places/PlacesFormat.h describes the file byte by byte."""
import math
import struct
import zlib

MAGIC = b"LVPLACES"
VERSION = 1
HEADER = struct.Struct("<8s5I4x")  # magic, version, places, countries, bytes of names, size of the file
PLACE = struct.Struct("<3iI")  # x, y, z, country and name
CHECKSUM = struct.Struct("<I")
UNIT = 1 << 30
NAME_BITS = 24
EARTH_RADIUS_KM = 6371.0088


def on_globe(latitude, longitude):
    """The point of the unit sphere, each coordinate as a whole number of 2**-30."""
    lat, lon = math.radians(latitude), math.radians(longitude)
    return tuple(round(UNIT * c) for c in (math.cos(lat) * math.cos(lon), math.cos(lat) * math.sin(lon), math.sin(lat)))


def degrees(point):
    x, y, z = point
    return math.degrees(math.atan2(z, math.hypot(x, y))), math.degrees(math.atan2(y, x))


def distance_km(a, b):
    chord = math.dist(a, b) / UNIT
    return 2 * EARTH_RADIUS_KM * math.asin(min(1.0, chord / 2))


def in_tree_order(places):
    """Puts (point, name, country) where the search looks for them: the middle one of a range parts it, by x, y, z in turn."""
    ordered = list(places)
    ranges = [(0, len(ordered), 0)]
    while ranges:
        low, high, axis = ranges.pop()
        if high - low < 2:
            continue
        # The whole tuple decides among equals, so that the file does not depend on the order of the source.
        ordered[low:high] = sorted(ordered[low:high], key=lambda place: (place[0][axis], place))
        middle = (low + high) // 2
        ranges += [(low, middle, (axis + 1) % 3), (middle + 1, high, (axis + 1) % 3)]
    return ordered


def encode(places):
    places = in_tree_order(places)
    countries = sorted({country for _, _, country in places})
    number = {country: i for i, country in enumerate(countries)}
    names, offsets = bytearray(), {}
    for name in sorted({name for _, name, _ in places}):
        text = name.encode()
        if not 1 <= len(text) <= 255:
            raise ValueError(f"a name of {len(text)} bytes: {name!r}")
        offsets[name] = len(names)
        names += bytes([len(text)]) + text
    if len(names) > 1 << NAME_BITS or len(countries) > 256:
        raise ValueError("more names or countries than the format has room for")
    body = b"".join(PLACE.pack(*point, number[country] << NAME_BITS | offsets[name]) for point, name, country in places)
    body += "".join(countries).encode("ascii") + names
    size = HEADER.size + len(body) + CHECKSUM.size
    content = HEADER.pack(MAGIC, VERSION, len(places), len(countries), len(names), size) + body
    return content + CHECKSUM.pack(zlib.crc32(content))


def decode(content):
    """The places of a file, in its order."""
    magic, version, count, country_count, name_bytes, size = HEADER.unpack_from(content)
    countries_at = HEADER.size + count * PLACE.size
    names_at = countries_at + 2 * country_count
    if (magic, version, size) != (MAGIC, VERSION, len(content)) or names_at + name_bytes + CHECKSUM.size != size:
        raise ValueError("not a file of places")
    if CHECKSUM.unpack(content[-4:])[0] != zlib.crc32(content[:-4]):
        raise ValueError("wrong checksum")
    places = []
    for x, y, z, packed in PLACE.iter_unpack(content[HEADER.size:countries_at]):
        country_at = countries_at + 2 * (packed >> NAME_BITS)
        name_at = names_at + packed % (1 << NAME_BITS)
        name = content[name_at + 1:name_at + 1 + content[name_at]].decode()
        places.append(((x, y, z), name, content[country_at:country_at + 2].decode("ascii")))
    return places


def nearest(places, point):
    """Through the tree, as the program does it; gives the squared distance and the place."""
    best = (math.inf, None)
    ranges = [(0, len(places), 0, 0)]
    while ranges:
        low, high, axis, gap = ranges.pop()
        if low >= high or gap > best[0]:
            continue
        middle = (low + high) // 2
        here = places[middle][0]
        squared = sum((a - b) ** 2 for a, b in zip(here, point))
        if squared < best[0]:
            best = (squared, places[middle])
        aside = point[axis] - here[axis]
        sides = [(middle + 1, high), (low, middle)] if aside < 0 else [(low, middle), (middle + 1, high)]
        ranges.append((*sides[0], (axis + 1) % 3, aside * aside))
        ranges.append((*sides[1], (axis + 1) % 3, 0))
    return best


def verify(content, places, samples=60):
    """That the file says what it was made of, and that the search finds what looking at every place finds."""
    read = decode(content)
    if sorted(read) != sorted(places):
        raise ValueError("what was written is not what is read back")
    golden = math.pi * (3 - math.sqrt(5))
    for i in range(samples):
        height = 1 - (2 * i + 1) / samples
        point = on_globe(math.degrees(math.asin(height)), math.degrees(math.remainder(i * golden, 2 * math.pi)))
        if nearest(read, point)[0] != min(sum((a - b) ** 2 for a, b in zip(p, point)) for p, _, _ in read):
            raise ValueError(f"the search goes astray at {degrees(point)}")
