#!/usr/bin/env python3
"""A second reader of XDM raster files, written from the page docs/formats/xdm.md alone.

    with XdmFile(path) as f:   f.bands, f.file, f.regions, ...   everything of the page's section 6
        f.tile(band, level, tx, ty)    the samples of one tile, bytes as the page's 5.1 orders them
        f.strips(band, level)          the level as bytes, one row of tiles after the other
        f.pixels(band, level)          numpy array (height, width), complex ones (height, width, 2);
                                       without numpy a list of rows, each a tuple of width (or 2 * width) numbers

Opening checks everything but payloads; these are checked when read. Bad bytes raise XdmError. Packed tiles need the
module zstandard or the C library zstd; without both they raise XdmError.

Command line: `xdm_reader.py FILE` reads all pixels and prints one JSON object in one line of UTF-8 (nothing escaped
that JSON lets stand), exit code 0. A file it cannot read: nothing on stdout, one sentence on stderr, exit code 1.
Wrong usage: exit code 2.

Integers and reals are JSON numbers as Python's repr writes them, so reals come back bit by bit (*not set* is
1.7e+308, a real always has a point or an exponent). JSON has no other reals: NaN is the string "nan", infinities are
"inf" and "-inf". Bytes are strings of lower case hexadecimal digits. Flags are 0 or 1. Every key below is always there,
in this order; what the file does not hold has the page's default. Lists may be empty where "or none" is said.

  version [major, minor], fileBytes, requiredFeatures, optionalFeatures     the header
  file      {name, description, dataVersion, threshold, validation, rgb: three band numbers or none}
  bands     a list, one object a band:
    name, description, number, dataType (1 to 16), bandType, color, nullValue, compression, fill (bytes)
    typeName  "uint8" "int8" "uint16" "int16" "uint32" "int32" "float32" "float64"; "complex_" before it from 9 on
    levels    a list: {width, height, tileWidth, tileHeight, tiles: [empty, plain, zstd, predicted] numbers of tiles,
              crc32: CRC-32 as zlib.crc32 of the little endian samples of the level, row by row from the top, without
              gaps or padding; an unsigned number}
    sources   {spatialReference, statistics, classTable, acquisition, radar}: each "band" for a block of this band,
              "file" for the one of all bands, "default" for no block
    spatialReference  {coordinates, wkt, ulX, ulY, xSize, ySize, normalised, sensorModel, worldToPixel, pixelToWorld,
              georeferenced}; the warps are {terms, centreX, centreY, scaleX, scaleY, x: ten reals, y: ten reals}
    statistics  {kind, minimum, maximum, mean, deviation, pixels, histogramKind, low, high, histogram: 256 or none}
    classTable  {classes: [{red, green, blue, alpha, pixels, name}], showColors}
    acquisition {date, sensorNumber, sensorName, centreX, centreY, cellSize, gain, bias, sunAzimuth, sunElevation,
              incidenceAngle, focalLength, altitude, orientation, wavelength, bandwidth, originCorner, offset, scale,
              referencePoint: three reals}
    radar     {beam, parameters, subset, orbit, scanner: objects {className, data (bytes)}, wavelength,
              pulseRepetitionFrequency, samplingFrequency, carrierFrequency, chirpBandwidth, chirpDuration,
              apertureTime, antennaLength, squintAngle, chirp}
  controlPointSets  [{name, description, coordinates, wkt, points: [{name, pixelX, pixelY, x, y, z, used}]}]
  regions   [{name, comment, type, color, nullValue, vertices: x, y, z, x, y, z, ..., computed, pixels,
            bands: [{pixels, minimum, maximum, mean, squares, low, high, histogram: 256 or none}],
            commonPixels, means: one a band or none, coMoments: bands * bands or none}]
  signatures  [{name, comment, color, members: positions in regions or -1, ownRegions: as regions}]
  matrices  {correlation, covariance: n * n reals row by row, or none}
  radarScene  {object: {className, data}}
"""

import ctypes
import ctypes.util
import itertools
import json
import math
import os
import struct
import sys
import zlib

MAGIC = b"\x89XDM\r\n\x1a\n"
NOT_SET = 1.7e308
ALL = 0xFFFFFFFF
KNOWN_FEATURES = 3
# Which owners a block of each known type may have: the File, a Band, a Level of a band.
OWNERS = {1: "F", 2: "B", 3: "L", 4: "BF", 5: "B", 6: "B", 7: "BF", 8: "B", 9: "F", 10: "F", 11: "F", 12: "F", 13: "F"}
REALS = ["uint8", "int8", "uint16", "int16", "uint32", "int32", "float32", "float64"]
CODES = "BbHhIifd"
UNSIGNED = {1: "B", 2: "H", 4: "I", 8: "Q"}

class XdmError(Exception):
    """The file is no XDM file, is damaged, or needs what this reader lacks."""

def need(condition, *what):
    if not condition:
        raise XdmError(" ".join(str(word) for word in what))

# --- CRC-32C. Two bytes a step, as a loop in Python costs the same for one as for two. ---

def _tables():
    one = []
    for byte in range(256):
        for _ in range(8):
            byte = (byte >> 1) ^ (0x82F63B78 if byte & 1 else 0)
        one.append(byte)
    halves = (one[pair & 255] ^ (pair >> 8) for pair in range(65536))
    return one, [one[half & 255] ^ (half >> 8) for half in halves]

CRC_ONE, CRC_TWO = _tables()

def crc32c(data):
    crc, table, view = 0xFFFFFFFF, CRC_TWO, memoryview(data)
    even = len(view) & ~1
    for begin in range(0, even, 65536):
        piece = view[begin:min(begin + 65536, even)]
        for pair in struct.unpack("<%dH" % (len(piece) // 2), piece):
            crc = table[(crc ^ pair) & 0xFFFF] ^ (crc >> 16)
    if len(view) & 1:
        crc = CRC_ONE[(crc ^ view[-1]) & 255] ^ (crc >> 8)
    return crc ^ 0xFFFFFFFF

# --- Zstandard. The libraries differ in what they do with a second frame or a dictionary, so the frame is walked
# here first (RFC 8878, 3.1.1); then every one of them can be held to the same answer. ---

def check_frame(data, where):
    need(len(data) >= 6 and data[:4] == b"\x28\xb5\x2f\xfd", where, "is no Zstandard frame")
    descriptor = data[4]
    need(not descriptor & 3, where, "asks for a Zstandard dictionary")
    single = descriptor >> 5 & 1
    at = 5 + (1 - single) + (single, 2, 4, 8)[descriptor >> 6]
    last = 0
    while not last:
        need(len(data) - at >= 3, where, "is a Zstandard frame cut off")
        head = int.from_bytes(data[at:at + 3], "little")
        last, kind = head & 1, head >> 1 & 3
        need(kind != 3, where, "holds a Zstandard block of a reserved type")
        at += 3 + (1 if kind == 1 else head >> 3)
    at += 4 if descriptor & 4 else 0
    need(at == len(data), where, "is not exactly one Zstandard frame")

def unzstd(data, size, where):
    """The content of a frame; never more than size + 1 bytes of it, however much the frame claims to hold."""
    check_frame(data, where)
    try:
        import zstandard
    except ImportError:
        zstandard = None
    if zstandard:
        try:
            return zstandard.ZstdDecompressor().stream_reader(data).read(size + 1)
        except zstandard.ZstdError as error:
            raise XdmError("%s does not unpack: %s" % (where, error))
    name = ctypes.util.find_library("zstd") or ctypes.util.find_library("libzstd")
    need(name, where, "is packed, and neither the module zstandard nor the library zstd is installed")
    library, buffer = ctypes.CDLL(name), ctypes.create_string_buffer(size + 1)
    library.ZSTD_decompress.restype = ctypes.c_size_t
    library.ZSTD_decompress.argtypes = [ctypes.c_void_p, ctypes.c_size_t, ctypes.c_char_p, ctypes.c_size_t]
    library.ZSTD_isError.argtypes = [ctypes.c_size_t]
    got = library.ZSTD_decompress(buffer, size + 1, data, len(data))
    need(not library.ZSTD_isError(got), where, "does not unpack")
    return buffer.raw[:got]

def unpredict(data, size, parts, row):
    """Undo 5.3: size is the bytes of a real, parts the reals of a sample, row the reals of a row."""
    count = len(data) // size
    joined = bytearray(len(data))
    for k in range(size):
        joined[k::size] = data[k * count:(k + 1) * count]
    layout, mask = struct.Struct("<%d%s" % (row, UNSIGNED[size])), (1 << 8 * size) - 1
    for at in range(0, len(data), row * size):
        reals = list(layout.unpack_from(joined, at))
        for part in range(parts):  # sums taken whole and cut once are the same as sums cut at every step
            reals[part::parts] = [total & mask for total in itertools.accumulate(reals[part::parts])]
        layout.pack_into(joined, at, *reals)
    return bytes(joined)

# --- Fields: the tables of section 6. A field is single or a list, of one of five kinds, and its check gets each
# number of it; counts are the lengths a list may have. ---

class Field:
    def __init__(self, key, kind, default, check=None, single=True, counts=None, repeated=False, table=None):
        self.key, self.kind, self.default, self.check = key, kind, default, check
        self.single, self.counts, self.repeated, self.table = single, counts, repeated, table

def integer(key, default=0, check=None): return Field(key, 1, default, check or within(-2**31, 2**31 - 1))
def integers(key, counts=None, check=None): return Field(key, 1, [], check, False, counts)
def real(key, default=NOT_SET, check=None): return Field(key, 2, default, check)
def reals(key, default=(), counts=None, check=None): return Field(key, 2, list(default), check, False, counts)
def text(key): return Field(key, 3, "")
def group(key, table, repeated=False): return Field(key, 4, None, repeated=repeated, table=table)
def binary(key): return Field(key, 5, b"")
def within(low, high=2**63 - 1): return lambda value: low <= value <= high
def above_zero(value): return math.isfinite(value) and value > 0
def numbered(*fields): return dict(enumerate(fields, 1))  # all tables of the page count their ids from 1

FLAG, COUNT, KIND, BYTE, COLOR = within(-2**31, 2**31 - 1), within(0), within(0, 2), within(0, 255), within(0, 0xFFFFFFFF)

FILE = numbered(text("name"), text("description"), integer("dataVersion"), real("threshold"), text("validation"),
                integers("rgb", (0, 3)))
BAND = numbered(
    text("name"), text("description"), integer("number"), integer("dataType", 1, within(1, 16)),
    integer("bandType"), integer("color"), real("nullValue"), integer("compression", 0, KIND),
    integers("levels", range(4, 129, 4)), binary("fill"))
WARP = numbered(
    integer("terms", 0, lambda value: value in (0, 3, 4, 6, 10)), real("centreX", 0.0, math.isfinite),
    real("centreY", 0.0, math.isfinite), real("scaleX", 1.0, math.isfinite), real("scaleY", 1.0, math.isfinite),
    reals("x", [0.0] * 10, (10,), math.isfinite), reals("y", [0.0] * 10, (10,), math.isfinite))
SPATIAL = numbered(
    integer("coordinates", 1), text("wkt"), real("ulX", 0.0, math.isfinite),
    real("ulY", 0.0, math.isfinite), real("xSize", 1.0, above_zero), real("ySize", 1.0, above_zero),
    integer("normalised", 0, FLAG), integer("sensorModel", 0, FLAG), group("worldToPixel", WARP),
    group("pixelToWorld", WARP), integer("georeferenced", 0, FLAG))
STATISTICS = numbered(
    integer("kind", 0, KIND), real("minimum"), real("maximum"), real("mean"), real("deviation"),
    integer("pixels", 0, COUNT), integer("histogramKind", 0, KIND), real("low"), real("high"),
    integers("histogram", (0, 256), COUNT))
CLASSES = numbered(
    group("classes", numbered(integer("red", 0, BYTE), integer("green", 0, BYTE), integer("blue", 0, BYTE),
                              integer("alpha", 255, BYTE), integer("pixels", 0, COUNT), text("name")), True),
    integer("showColors", 0, FLAG))
ACQUISITION = numbered(
    text("date"), integer("sensorNumber"), text("sensorName"), real("centreX", -2147483648.0),
    real("centreY", -2147483648.0), real("cellSize"), real("gain"), real("bias"), real("sunAzimuth"),
    real("sunElevation"), real("incidenceAngle"), real("focalLength"), real("altitude"), real("orientation"),
    real("wavelength"), real("bandwidth"), integer("originCorner"), real("offset", 0.0), real("scale", 1.0),
    reals("referencePoint", [0.0] * 3, (3,)))
OBJECT = numbered(text("className"), binary("data"))
RADAR = numbered(
    text("beam"), group("parameters", OBJECT), group("subset", OBJECT), group("orbit", OBJECT),
    group("scanner", OBJECT), real("wavelength"), real("pulseRepetitionFrequency"), real("samplingFrequency"),
    real("carrierFrequency"), real("chirpBandwidth"), real("chirpDuration"), real("apertureTime"),
    real("antennaLength"), real("squintAngle"), integer("chirp", 0, within(-1, 1)))
POINT = numbered(text("name"), *(real(key, 0.0, math.isfinite) for key in ("pixelX", "pixelY", "x", "y", "z")),
                 integer("used", 1, FLAG))
POINT_SETS = numbered(group("sets", numbered(
    text("name"), text("description"), integer("coordinates", 2), text("wkt"),
    group("points", POINT, True)), True))
REGION = numbered(
    text("name"), text("comment"), integer("type", 3, within(2, 3)), integer("color", 16777215, COLOR),
    real("nullValue"), reals("vertices", check=math.isfinite), integer("computed", 0, FLAG),
    integer("pixels", 0, COUNT),
    group("bands", numbered(
        integer("pixels", 0, COUNT), real("minimum"), real("maximum"), real("mean"), real("squares", 0.0),
        real("low"), real("high"), integers("histogram", (0, 256), COUNT)), True),
    integer("commonPixels", 0, COUNT), reals("means"), reals("coMoments"))
REGIONS = numbered(group("regions", REGION, True))
SIGNATURES = numbered(group("signatures", numbered(
    text("name"), text("comment"), integer("color", 16777215, COLOR), integers("members"),
    group("ownRegions", REGION, True)), True))
MATRICES = numbered(reals("correlation"), reals("covariance"))
SCENE = numbered(group("object", OBJECT))

def decode(field, value, where):
    if field.kind == 4:
        return parse(value, field.table, where)
    if field.kind == 5:
        return bytes(value)
    if field.kind == 3:
        return str(value, "utf-8", "replace")
    need(len(value) % 8 == 0, where, "has", len(value), "bytes, no whole numbers")
    numbers = list(struct.unpack("<%d%s" % (len(value) // 8, "q" if field.kind == 1 else "d"), value))
    if field.single:
        need(len(numbers) == 1, where, "holds", len(numbers), "numbers instead of 1")
    need(field.counts is None or len(numbers) in field.counts, where, "holds", len(numbers), "numbers")
    for number in numbers if field.check else ():
        need(field.check(number), where, "has a value that is not allowed:", number)
    if field.check is FLAG:
        return int(numbers[0] != 0)
    return numbers[0] if field.single else numbers

def parse(data, table, where):
    """The fields of a block or group as a dict by key, the absent ones with their defaults."""
    found, at = {}, 0
    while at < len(data):
        need(len(data) - at >= 8, where, "ends within the head of a field")
        ident, kind, size = struct.unpack_from("<HHI", data, at)
        at += 8
        need(size <= len(data) - at, where, "field", ident, "reaches beyond its end")
        value, at = data[at:at + size], at + size
        field = table.get(ident)
        if field is None:
            continue
        name = "%s, %s" % (where, field.key)
        need(kind == field.kind, name, "has kind", kind, "instead of", field.kind)
        need(field.repeated or ident not in found, name, "stands twice")
        found.setdefault(ident, []).append(decode(field, value, name))
    for ident, field in table.items():
        if ident not in found and not field.repeated:
            found[ident] = [parse(b"", field.table, where) if field.kind == 4 else field.default]
    return {field.key: found.get(ident, []) if field.repeated else found[ident][0] for ident, field in table.items()}

# --- The rules that tie several fields together. ---

def check_region(region, where):
    bands = len(region["bands"])
    need(len(region["vertices"]) % 3 == 0, where, "has a vertex cut off")
    need(len(region["means"]) in (0, bands), where, "has not one mean a band")
    need(len(region["coMoments"]) in (0, bands * bands), where, "has co-moments of another number of bands")

def check_signature(signature, where, regions):
    members = signature["members"]
    need(all(-1 <= member < regions for member in members), where, "has a member that is no region of the list")
    need(members.count(-1) == len(signature["ownRegions"]), where, "has not as many regions of its own as it says")
    for region in signature["ownRegions"]:
        check_region(region, where)

class Level:
    def __init__(self, numbers, sample, where):
        self.width, self.height, self.tile_width, self.tile_height = numbers
        self.sample = sample
        need(self.width >= 1 and self.height >= 1, where, "has no pixels")
        need(1 <= self.tile_width <= 32768 and 1 <= self.tile_height <= 32768, where, "has a forbidden tile size")
        need(self.tile_width * self.tile_height * sample <= 67108864, where, "has tiles of too many bytes")
        self.columns = -(-self.width // self.tile_width)
        self.rows = -(-self.height // self.tile_height)
        need(self.columns * self.rows <= 67108864, where, "has too many tiles")
        self.table = b""
        self.tiles = [0, 0, 0, 0]  # empty, plain, zstd, predicted

    def tile_size(self, tx, ty):
        return (min(self.tile_width, self.width - tx * self.tile_width),
                min(self.tile_height, self.height - ty * self.tile_height))

def check_apart(extents):
    """Extents are (begin, end, what); none may share a byte with another."""
    extents.sort()
    for first, second in zip(extents, extents[1:]):
        need(first[1] <= second[0], first[2], "and", second[2], "overlap at byte", second[0])

class XdmFile:
    def __init__(self, path):
        self._file = open(path, "rb")
        try:
            self._open()
        except BaseException:
            self._file.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._file.close()

    def _read(self, offset, size, checksum, where):
        self._file.seek(offset)
        data = self._file.read(size)
        need(len(data) == size, where, "is cut off")
        need(checksum is None or crc32c(data) == checksum, where, "has a wrong checksum")
        return data

    def _place(self, offset, size, where):
        need(offset % 16 == 0, where, "is not at a multiple of 16")
        need(1 <= size <= self.file_bytes and offset <= self.file_bytes - size, where, "is not within the file")

    def _open(self):
        real_bytes = self._file.seek(0, os.SEEK_END)
        need(real_bytes >= 8 and self._read(0, 8, None, "the magic") == MAGIC, "this is no XDM file")
        header = self._read(0, 64, None, "the header")
        (major, minor, _, self.required_features, self.optional_features, self.file_bytes, offset, size, checksum,
         own) = struct.unpack_from("<HHIQQQQQII", header, 8)
        need(major == 1, "this is XDM version", major, "and not 1")
        need(crc32c(header[:60]) == own, "the header has a wrong checksum")
        self.version = [major, minor]
        need(not self.required_features & ~KNOWN_FEATURES, "the file requires features that are not known here")
        need(64 <= self.file_bytes <= real_bytes, "the file is cut off")
        self._place(offset, size, "the directory")
        need(size % 40 == 0 and size // 40 <= 4194304, "the directory has a wrong size")
        directory = self._read(offset, size, checksum, "the directory")
        self._extents = [(0, 64, "the header"), (offset, offset + size, "the directory")]
        self._entries = {}
        for entry in struct.iter_unpack("<IIIIQQII", directory):
            self._enter(*entry)
        check_apart(self._extents)
        self._open_file_blocks()
        count = sum(key[0] == 2 for key in self._entries)
        need(1 <= count <= 65535, "the file has", count, "bands")
        for kind, band, _ in self._entries:
            need(band == ALL or band < count, "a block of type", kind, "is of band", band, "of", count)
        self.bands, self._levels = [], []
        for band in range(count):
            self._open_band(band)
        tables = sum(len(levels) for levels in self._levels)
        need(sum(key[0] == 3 for key in self._entries) == tables, "the file has tile tables of no level")
        check_apart(self._extents)
        for matrix in self.matrices.values():
            need(len(matrix) in (0, count * count), "the matrices are not of all bands")
        need(all(-1 <= band < count for band in self.file["rgb"]), "the file shows a band that it has not")

    def _enter(self, kind, flags, band, level, offset, size, checksum, _):
        where = "the block of type %d, band %d, level %d" % (kind, band, level)
        self._place(offset, size, where)
        self._extents.append((offset, offset + size, where))
        if kind not in OWNERS:
            need(not flags & 1, where, "is not known here and required")
            return
        owner = ("F" if band == ALL else "B") if level == ALL else "L" if band != ALL else "none"
        need(owner in OWNERS[kind], where, "belongs to what has no such block")
        need(kind == 3 or size <= 268435456, where, "is too large")
        need((kind, band, level) not in self._entries, where, "stands twice")
        self._entries[kind, band, level] = offset, size, checksum

    def _block(self, kind, table, where, band=ALL):
        """The fields of a block, or None when the file has no such block."""
        entry = self._entries.get((kind, band, ALL))
        return entry and parse(self._read(*entry, where), table, where)

    def _open_file_blocks(self):
        def block(kind, table, where):
            return self._block(kind, table, where) or parse(b"", table, where)
        need((1, ALL, ALL) in self._entries, "the block of the file is missing")
        self.file = block(1, FILE, "the block of the file")
        self.point_sets = block(9, POINT_SETS, "the block of control points")["sets"]
        self.regions = block(10, REGIONS, "the block of regions")["regions"]
        self.signatures = block(11, SIGNATURES, "the block of signatures")["signatures"]
        self.matrices = block(12, MATRICES, "the block of matrices")
        self.scene = block(13, SCENE, "the block of radar scene")
        self._common = {kind: self._block(kind, table, "the block of all bands")
                        for kind, table in ((4, SPATIAL), (7, ACQUISITION))}
        for region in self.regions:
            check_region(region, "a region")
        for signature in self.signatures:
            check_signature(signature, "a signature", len(self.regions))

    def _open_band(self, number):
        where = "band %d" % number
        band = self._block(2, BAND, where, number)
        need(band, where, "is missing")
        data_type = band["dataType"]
        real_bytes, parts = struct.calcsize("<" + CODES[(data_type - 1) % 8]), 1 + (data_type > 8)
        band["typeName"] = ("complex_" if parts == 2 else "") + REALS[(data_type - 1) % 8]
        need(len(band["fill"]) == real_bytes * parts, where, "has a fill sample of a wrong size")
        numbers, levels = band.pop("levels"), []
        need(numbers, where, "has no levels")
        for at in range(0, len(numbers), 4):
            level = Level(numbers[at:at + 4], real_bytes * parts, where)
            if levels:
                above = levels[-1]
                need(level.width <= above.width and level.height <= above.height and
                     (level.width, level.height) != (above.width, above.height), where, "has levels that do not shrink")
            levels.append(level)
        band["levels"] = []
        for index, level in enumerate(levels):
            self._open_level(level, number, index)
            band["levels"].append({"width": level.width, "height": level.height, "tileWidth": level.tile_width,
                                   "tileHeight": level.tile_height, "tiles": level.tiles})
        self._levels.append(levels)
        band["sources"] = {}
        for kind, key, table in ((4, "spatialReference", SPATIAL), (5, "statistics", STATISTICS),
                                 (6, "classTable", CLASSES), (7, "acquisition", ACQUISITION), (8, "radar", RADAR)):
            own, common = self._block(kind, table, "%s, %s" % (where, key), number), self._common.get(kind)
            band["sources"][key] = "band" if own else "file" if common else "default"
            band[key] = own or common or parse(b"", table, where)
        statistics = band["statistics"]
        need(bool(statistics["histogram"]) == bool(statistics["histogramKind"]), where, "has no histogram of its kind")
        self.bands.append(band)

    def _open_level(self, level, band, index):
        where = "the tile table of band %d, level %d" % (band, index)
        entry = self._entries.get((3, band, index))
        need(entry, where, "is missing")
        need(entry[1] == 24 * level.columns * level.rows, where, "has a wrong size")
        level.table = self._read(*entry, where)
        what = "a tile of band %d, level %d" % (band, index)
        for number, (offset, size, _, encoding, _) in enumerate(struct.iter_unpack("<QIIII", level.table)):
            if offset == 0:
                need(size == 0 and encoding == 0, what, "is empty and has a payload")
                level.tiles[0] += 1
                continue
            self._place(offset, size, what)
            self._extents.append((offset, offset + size, what))
            width, height = level.tile_size(number % level.columns, number // level.columns)
            samples = width * height * level.sample
            need(encoding <= 2, what, "has the unknown encoding", encoding)
            need(size == samples if encoding == 0 else size < samples, what, "has a payload of a wrong size")
            missing = (0, 1, 3)[encoding] & ~self.required_features
            need(not missing, what, "has an encoding that the header does not name")
            level.tiles[1 + encoding] += 1

    def tile(self, band, level, tx, ty):
        """The samples of a tile as bytes, those that exist of it."""
        lev = self._levels[band][level]
        need(0 <= tx < lev.columns and 0 <= ty < lev.rows, "there is no tile", tx, ty)
        width, height = lev.tile_size(tx, ty)
        size = width * height * lev.sample
        offset, stored, checksum, encoding, _ = struct.unpack_from("<QIIII", lev.table, 24 * (ty * lev.columns + tx))
        if offset == 0:
            return self.bands[band]["fill"] * (width * height)
        where = "tile (%d, %d) of band %d, level %d" % (tx, ty, band, level)
        data = self._read(offset, stored, checksum, where)
        if encoding:
            data = unzstd(data, size, where)
            need(len(data) == size, where, "does not unpack to its samples")
        if encoding == 2:
            parts = 1 + (self.bands[band]["dataType"] > 8)
            data = unpredict(data, lev.sample // parts, parts, width * parts)
        return data

    def strips(self, band, level):
        lev = self._levels[band][level]
        stride = lev.width * lev.sample
        for ty in range(lev.rows):
            strip = bytearray(stride * lev.tile_size(0, ty)[1])
            for tx in range(lev.columns):
                data, begin = self.tile(band, level, tx, ty), tx * lev.tile_width * lev.sample
                row = lev.tile_size(tx, ty)[0] * lev.sample
                for y in range(len(data) // row):
                    strip[y * stride + begin:y * stride + begin + row] = data[y * row:(y + 1) * row]
            yield bytes(strip)

    def pixels(self, band, level=0):
        lev, data_type = self._levels[band][level], self.bands[band]["dataType"]
        code, parts = CODES[(data_type - 1) % 8], 1 + (data_type > 8)
        data = b"".join(self.strips(band, level))
        try:
            import numpy
        except ImportError:
            return list(struct.iter_unpack("<%d%s" % (lev.width * parts, code), data))
        shape = (lev.height, lev.width) + ((2,) if parts == 2 else ())
        return numpy.frombuffer(data, numpy.dtype("<" + code)).reshape(shape)

    def document(self):
        """All that the command line prints; reads every pixel."""
        bands = []
        for number, band in enumerate(self.bands):
            band = dict(band, levels=[dict(level) for level in band["levels"]])
            for index, level in enumerate(band["levels"]):
                level["crc32"] = 0
                for strip in self.strips(number, index):
                    level["crc32"] = zlib.crc32(strip, level["crc32"])
            order = [field.key for field in BAND.values() if field.key != "levels"] + ["typeName", "levels", "sources"]
            bands.append({key: band[key] for key in order + list(band["sources"])})
        return {"version": self.version, "fileBytes": self.file_bytes, "requiredFeatures": self.required_features,
                "optionalFeatures": self.optional_features, "file": self.file, "bands": bands,
                "controlPointSets": self.point_sets, "regions": self.regions, "signatures": self.signatures,
                "matrices": self.matrices, "radarScene": self.scene}

def plain(value):
    """A value with the bytes and the reals that JSON does not know made strings."""
    if isinstance(value, dict):
        return {key: plain(item) for key, item in value.items()}
    if isinstance(value, list):
        return [plain(item) for item in value]
    if isinstance(value, bytes):
        return value.hex()
    return repr(value) if isinstance(value, float) and not math.isfinite(value) else value

def main(arguments):
    if len(arguments) != 2:
        print("usage: xdm_reader.py FILE", file=sys.stderr)
        return 2
    try:
        with XdmFile(arguments[1]) as xdm:
            line = json.dumps(plain(xdm.document()), ensure_ascii=False, allow_nan=False)
    except (XdmError, OSError, MemoryError) as error:
        print("xdm_reader: %s" % (error if str(error) else "the file needs more memory than there is"), file=sys.stderr)
        return 1
    sys.stdout.buffer.write(line.encode("utf-8") + b"\n")
    return 0

if __name__ == "__main__":
    sys.exit(main(sys.argv))
