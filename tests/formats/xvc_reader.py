#!/usr/bin/env python3
"""Read an XVC file and print what is in it as one JSON object in one line.

Usage: xvc_reader.py FILE

    {"version": [major, minor], "root": base}
    base     {node, name, link, hidden, coordinates, wkt, objects, kinds, range, symbols, children}
    layer    {node, name, link, hidden, locked, hit, bufferType, fontSizeFlag, objects, kinds, range, columns,
             attributes: null or {rows, columns: [{name, type, values}]}, children}
    list     {node, children}
    object   {class, common: {...}, own: {...}, number}; one that cannot be read {class, number, unread: bytes}

Reals are numbers, NaN and infinities the strings "nan", "inf" and "-inf"; bytes are hexadecimal digits; colors are
numbers; "pattern" and "range" of an object are null when they are not stored. "line" is the pattern of the line, its
style and the two words that are only kept. "numbers" of a font are its five i32 and its eight u8; "face" is all of
its 32 bytes. Exit code 0; a file that cannot be read: one sentence on stderr, exit code 1; wrong usage: 2.
"""

import json
import math
import struct
import sys

MAGIC = b"\x89XVC\r\n\x1a\n"
HEADER_BYTES, HEAD_BYTES, RECORD_HEAD_BYTES = 32, 24, 12
BASE, LAYER, LIST, CLOSE, OBJECTS, ATTRIBUTES, SYMBOLS = range(1, 8)
MOST_NODES_DEEP, MOST_PARTS_DEEP, MOST_LEGEND_ROWS = 64, 32, 10000
LEAST_CHORDS, MOST_CHORDS = 3, 10000
SAMPLE_BYTES = {1: 1, 2: 1, 3: 2, 4: 2, 5: 4, 6: 4, 7: 4, 8: 8}
PIXEL_BITS = (1, 4, 8, 16, 24, 32)
CELL_CODES = {1: "b", 2: "h", 4: "i", 8: "q"}
WHOLE, REAL, TEXT = 1, 2, 3

# What a class has behind its shared beginning: "key:kind" with the kinds of KINDS below; ":v8" and ":v16" are versions.
MEASURE = (":v8 reference:reference lengthUnit:i32 areaUnit:i32 decimals:i32 label:i32 size:f64 textColor:u32 "
           "style:style")
TEXT_BOX = (":v8 rtf:text worldPerPixel:f64 xSpace:f64 autoAlign:i32 vertAlign:i32 border:i32 style:style")
AXIS = (":v8 minimum:f64 maximum:f64 log:i32 majorStep:f64 majorCount:i32 minorCount:i32 decimals:i32 title:text "
        "inverted:i32 tickSide:i32 labels:i32 gridLength:f64 gridColor:u32 worldPerPixel:f64 font:font")
ANY = None
MANY = 0xFFFFFFFF

# class: (beginning, its argument, fields); the argument of V: least and most vertices, of PARTS: the class of the parts
CLASSES = {
    "XvcPoint": ("OBJ", ANY, ":v16 vertex:vertex shape:i32 sides:i32 worldPerPixel:f64"),
    "XvcMPoint": ("PARTS", "XvcPoint", ""),
    "XvcPolypoint": ("V", (0, MANY), "shape:i32"),
    "XvcLine": ("V", (2, 2), "startShape:i32 endShape:i32 startSize:f64 endSize:f64 worldPerPixel:f64"),
    "XvcMLine": ("PARTS", "XvcLine", ""),
    "XvcPolyline": ("V", (0, MANY), ""),
    "XvcMPolyline": ("PARTS", "XvcPolyline", ""),
    "XvcPolygon": ("V", (0, MANY), ""),
    "XvcMPolygon": ("PARTS", "XvcPolygon", "fillRule:i32"),
    "XvcBspline": ("V", (0, MANY), "order:i32 resolution:i32 type:i32 knots:reals"),
    "XvcEllipse": ("ROUND", ANY, ""),
    "XvcArc": ("ROUND", ANY, "startAngle:f64 endAngle:f64 mode:i32"),
    "XvcArcClosed": ("ROUND", ANY, "startAngle:f64 endAngle:f64 mode:i32"),
    "XvcRectangle": ("V", (4, 4), ""),
    "XvcGroup": ("PARTS", ANY, ""),
    "XvcGroup2": ("PARTS", ANY, ""),
    "XvcNorthArrow": ("V", (4, 4), ":v8 style:i32 resolution:i32 angle:f64 worldPerPixel:f64"),
    "XvcScaleBar": ("V", (4, 4), ":v8 type:i32 align:i32 worldPerPixel:f64 font:font reference:reference"),
    "XvcText": ("v8 OBJ", ANY, "text:text position:vertex fontSize:f64 angle:f64 worldPerPixel:f64 align:i32 "
                "border:i32 textColor:u32 style:style"),
    "XvcMText": ("PARTS", "XvcText", ""),
    "XvcTextBox": ("BOX", ANY, TEXT_BOX),
    "XvcBalloon": ("BOX", ANY, TEXT_BOX + " :v8 pointer:vertex"),
    "XvcBitmap": ("BOX", ANY, ":v8 file:text opacity:f64 border:i32 transparent:i32 hasIndexMap:i32 indexMap:corners "
                  "mapBox:box picture:picture"),
    "XvcRaster": ("BOX", ANY, ":v8 opacity:f64 samples:samples"),
    "XvcEMF": ("BOX", ANY, ":v8 originalWidth:i32 originalHeight:i32 lock:i32 worldPerPixel:f64 outline:text"),
    "XvcSymbol": ("V", (1, 1), ":v8 number:i32 rotation:f64 scaleX:f64 scaleY:f64"),
    "XvcMSymbol": ("PARTS", "XvcSymbol", ""),
    "XvcSymbolDef": ("v8 OBJ", ANY, "number:i32 group:text outline:text"),
    "XvcMeasurePoint": ("V", (0, 1), "shape:i32 " + MEASURE),
    "XvcMeasureDist": ("V", (0, MANY), MEASURE),
    "XvcMeasureArea": ("V", (0, MANY), MEASURE),
    "XvcMeasureAngle": ("V", (0, 3), MEASURE),
    "XvcMeasureRange": ("V", (0, 2), MEASURE),
    "XvcLeaderLine": ("V", (0, MANY), ":v8 text:text border:i32 startShape:i32 startSize:f64 landing:f64 "
                      "worldPerPixel:f64 font:font"),
    "XvcLegend": ("BOX", ANY, ":v8 title:text columns:i32 border:i32 worldPerPixel:f64 font:font rows:legend"),
    "XvcAxis": ("V", (2, 2), AXIS),
}


class Damage(Exception):
    """What is wrong with the file, or with a record, in a few words."""


def crc_table():
    """The 256 remainders of CRC-32C (Castagnoli), reflected."""
    table = []
    for value in range(256):
        for _ in range(8):
            value = value >> 1 ^ (0x82F63B78 if value & 1 else 0)
        table.append(value)
    return table


CRC_TABLE = crc_table()


def crc32c(data):
    table = CRC_TABLE
    crc = 0xFFFFFFFF
    for byte in data:
        crc = crc >> 8 ^ table[(crc ^ byte) & 255]
    return crc ^ 0xFFFFFFFF


def plain(real):
    """A real as JSON can hold it."""
    if math.isfinite(real):
        return real
    if math.isnan(real):
        return "nan"
    return "inf" if real > 0 else "-inf"


class Cursor:
    """Reads values one behind the other and never past the end."""

    def __init__(self, data):
        self.data = data
        self.at = 0

    def left(self):
        return len(self.data) - self.at

    def take(self, count):
        if count > self.left():
            raise Damage("%d bytes are wanted where %d are left" % (count, self.left()))
        part = self.data[self.at:self.at + count]
        self.at += count
        return part

    def unpack(self, codes):
        layout = struct.Struct("<" + codes)
        return layout.unpack(self.take(layout.size))

    def u8(self):
        return self.unpack("B")[0]

    def u16(self):
        return self.unpack("H")[0]

    def u32(self):
        return self.unpack("I")[0]

    def i32(self):
        return self.unpack("i")[0]

    def u64(self):
        return self.unpack("Q")[0]

    def f64(self):
        return plain(self.unpack("d")[0])

    def count(self, least_bytes):
        """A number of things that have at least so many bytes each."""
        number = self.u32()
        if number * least_bytes > self.left():
            raise Damage("a count of %d is more than the bytes behind it can hold" % number)
        return number

    def f64s(self, number):
        return [plain(real) for real in struct.unpack("<%dd" % number, self.take(8 * number))]

    def flag(self):
        value = self.u8()
        if value > 1:
            raise Damage("a flag is %d, not 0 or 1" % value)
        return value

    def text(self):
        return decoded(self.take(self.u32()))


def decoded(raw):
    try:
        return bytes(raw).decode("utf-8")
    except UnicodeDecodeError:
        raise Damage("a text is not UTF-8") from None


def read_version(cursor, code="B"):
    version = cursor.unpack(code)[0]
    if version != 1:
        raise Damage("version %d is not known" % version)


# ---- parts of records


def read_vertex(cursor):
    return cursor.f64s(3)


def read_style(cursor):
    word = cursor.u32()
    numbers = cursor.unpack("5i8B")
    return {"word": word, "numbers": list(numbers), "face": cursor.take(32).hex()}


def read_font(cursor):
    return {"size": cursor.f64(), "color": cursor.u32(), "style": read_style(cursor)}


def read_reference(cursor):
    return {"wkt": cursor.text(), "coordinates": cursor.i32()}


def read_legend(cursor):
    number = cursor.count(4)
    if number > MOST_LEGEND_ROWS:
        raise Damage("a legend has %d rows, more than %d" % (number, MOST_LEGEND_ROWS))
    return [{"look": read_common(cursor), "kind": cursor.i32(), "shape": cursor.i32()} for _ in range(number)]


def read_picture(cursor):
    if not cursor.flag():
        return None
    width, height, bits, x_metre, y_metre = cursor.unpack("iiHii")
    if width < 0 or bits not in PIXEL_BITS:
        raise Damage("a picture has width %d and %d bits a pixel" % (width, bits))
    entries = cursor.count(4)
    opaque = cursor.flag()
    palette = cursor.take(4 * entries).hex()
    rows = cursor.u32()
    if rows not in (0, abs(height)):
        raise Damage("a picture of height %d has %d rows" % (height, rows))
    row_bytes = (width * bits + 31) // 32 * 4
    return {"width": width, "height": height, "bits": bits, "metres": [x_metre, y_metre], "hasOpacity": opaque,
            "palette": palette, "rows": cursor.take(rows * row_bytes).hex()}


def read_samples(cursor):
    if not cursor.flag():
        return None
    width, bands, kind, height = cursor.unpack("iiiI")
    if width < 0 or bands < 0 or kind not in SAMPLE_BYTES:
        raise Damage("a raster has width %d, %d bands and type %d" % (width, bands, kind))
    raw = cursor.take(width * height * bands * SAMPLE_BYTES[kind])
    return {"width": width, "height": height, "bands": bands, "type": kind, "bytes": raw.hex()}


KINDS = {
    "i32": Cursor.i32,
    "u32": Cursor.u32,
    "f64": Cursor.f64,
    "text": Cursor.text,
    "vertex": read_vertex,
    "style": read_style,
    "font": read_font,
    "reference": read_reference,
    "reals": lambda cursor: cursor.f64s(cursor.count(8)),
    "corners": lambda cursor: [read_vertex(cursor) for _ in range(4)],
    "box": lambda cursor: cursor.f64s(4),
    "legend": read_legend,
    "picture": read_picture,
    "samples": read_samples,
}


def read_fields(cursor, fields, into):
    for field in fields.split():
        key, kind = field.split(":")
        if kind == "v8":
            read_version(cursor)
        elif kind == "v16":
            read_version(cursor, "H")
        else:
            into[key] = KINDS[kind](cursor)


def read_common(cursor):
    """OBJ: what all objects have in common."""
    read_version(cursor, "H")
    stored = cursor.u16()
    if stored & ~63:
        raise Damage("an object stores values that are not known")
    names = ("lineColor", "foreColor", "backColor", "hidden")
    common = dict(zip(names, cursor.unpack("IIIi")))
    common["thick"] = cursor.f64()
    common["fill"] = cursor.i32()
    common["line"] = list(cursor.unpack("HiII"))
    common["name"] = cursor.text() if stored & 1 else ""
    common["link"] = cursor.text() if stored & 2 else ""
    common["value"] = cursor.f64() if stored & 4 else 0.0
    common["pattern"] = cursor.take(128).hex() if stored & 8 else None
    common["texts"] = [cursor.text() if stored & 16 else "" for _ in range(5)]
    common["range"] = cursor.f64s(6) if stored & 32 else None
    return common


def read_vertices(cursor, least, most):
    per_vertex = 3 if cursor.flag() else 2
    number = cursor.count(8 * per_vertex)
    if not least <= number <= most:
        raise Damage("an object has %d vertices" % number)
    flat = cursor.f64s(per_vertex * number)
    if per_vertex == 3:
        return [flat[at:at + 3] for at in range(0, len(flat), 3)]
    return [[flat[at], flat[at + 1], 0.0] for at in range(0, len(flat), 2)]


def read_round(cursor, own):
    read_fields(cursor, "center:vertex start:vertex end:vertex", own)
    own["axes"] = cursor.f64s(2)
    read_fields(cursor, "rotation:f64 resolution:i32", own)
    if not LEAST_CHORDS <= own["resolution"] <= MOST_CHORDS:
        raise Damage("a curve has %d chords" % own["resolution"])


def read_parts(cursor, wanted, depth):
    parts = []
    for _ in range(cursor.count(4)):
        name = cursor.text()
        if wanted not in (ANY, name):
            raise Damage("a part is of another class than its object wants")
        parts.append(read_object(cursor, name, depth + 1))
    return parts


def read_object(cursor, name, depth=0):
    """An object of a class, from its record or as a part of another object."""
    if name not in CLASSES:
        raise Damage("a class is not known")
    if depth > MOST_PARTS_DEEP:
        raise Damage("parts lie more than %d deep" % MOST_PARTS_DEEP)
    beginning, argument, fields = CLASSES[name]
    if beginning != "OBJ":
        read_version(cursor)
    common, own = read_common(cursor), {}
    if beginning == "V":
        own["vertices"] = read_vertices(cursor, *argument)
    elif beginning == "BOX":
        read_fields(cursor, "leftTop:vertex rightBottom:vertex", own)
    elif beginning == "ROUND":
        read_round(cursor, own)
    elif beginning == "PARTS":
        own["parts"] = read_parts(cursor, argument, depth)
    read_fields(cursor, fields, own)
    return {"class": name, "common": common, "own": own}


# ---- payloads


def read_record(cursor, names, number_code):
    size, index, _, number = cursor.unpack("IHH" + number_code)
    if index >= len(names):
        raise Damage("a record has class %d of %d" % (index, len(names)))
    raw = cursor.take(size)
    try:
        thing = read_object(Cursor(raw), names[index])
    except Damage:
        return {"class": names[index], "number": number, "unread": raw.hex()}
    thing["number"] = number
    return thing


def read_objects(payload, number_code):
    """The payload of the blocks of objects (numbers are u32) and of symbols (i32)."""
    cursor = Cursor(payload)
    names = [cursor.text() for _ in range(cursor.count(4))]
    number = cursor.count(RECORD_HEAD_BYTES)
    return [read_record(cursor, names, number_code) for _ in range(number)]


def read_column_texts(cursor):
    number = cursor.count(4)
    ends = struct.unpack("<%dI" % number, cursor.take(4 * number))
    size = cursor.u32()
    if size != (ends[-1] if ends else 0):
        raise Damage("the texts of a column do not end where their bytes do")
    raw = cursor.take(size)
    texts, begin = [], 0
    for end in ends:
        if not begin <= end <= size:
            raise Damage("the ends of the texts of a column fall")
        texts.append(decoded(raw[begin:end]))
        begin = end
    return texts


def cell_value(cell, kind, texts):
    if kind == REAL:
        return plain(cell)
    if kind == WHOLE:
        return cell
    if not 0 <= cell < len(texts):
        raise Damage("a cell wants text %d of %d" % (cell, len(texts)))
    return texts[cell]


def read_column(cursor, rows):
    name = cursor.text()
    kind, width, gaps = cursor.u8(), cursor.u8(), cursor.flag()
    if kind not in (WHOLE, REAL, TEXT) or width not in CELL_CODES or kind == REAL and width != 8:
        raise Damage("a column has type %d and width %d" % (kind, width))
    texts = read_column_texts(cursor) if kind == TEXT else []
    there = cursor.take((rows + 7) // 8) if gaps else None
    code = "d" if kind == REAL else CELL_CODES[width]
    cells = struct.unpack("<%d%s" % (rows, code), cursor.take(rows * width))
    values = []
    for row, cell in enumerate(cells):
        missing = gaps and not there[row >> 3] >> (row & 7) & 1
        values.append(None if missing else cell_value(cell, kind, texts))
    return {"name": name, "type": kind, "values": values}


def read_attributes(payload):
    cursor = Cursor(payload)
    read_version(cursor)
    rows = cursor.u32()
    columns = cursor.count(7)
    if rows and not columns:
        raise Damage("a table has rows but no columns")
    return {"rows": rows, "columns": [read_column(cursor, rows) for _ in range(columns)]}


def read_summary(cursor, node):
    node["objects"], node["kinds"] = cursor.unpack("QI")
    node["range"] = cursor.f64s(6)


def read_base(payload):
    cursor, node = Cursor(payload), {"node": "base"}
    read_fields(cursor, "name:text link:text hidden:i32 coordinates:i32 wkt:text", node)
    read_summary(cursor, node)
    node["symbols"] = None
    return node


def read_layer(payload):
    cursor, node = Cursor(payload), {"node": "layer"}
    read_fields(cursor, "name:text link:text hidden:i32 locked:i32 hit:i32 bufferType:i32 fontSizeFlag:i32", node)
    read_summary(cursor, node)
    node["columns"] = [cursor.text() for _ in range(cursor.count(4))]
    node["attributes"] = None
    return node


OPENERS = {BASE: read_base, LAYER: read_layer, LIST: lambda payload: {"node": "list"}}


# ---- frame


def read_header(data):
    """Minor version and end of the file, from its header."""
    if len(data) < HEADER_BYTES or data[:8] != MAGIC:
        raise Damage("it is not an XVC file")
    major, minor, _, end, _, checksum = struct.unpack("<HHIQII", data[8:HEADER_BYTES])
    if major != 1:
        raise Damage("its major version is %d, not 1" % major)
    if checksum != crc32c(data[:28]):
        raise Damage("the checksum of the header is wrong")
    if not HEADER_BYTES <= end <= len(data):
        raise Damage("the header tells %d bytes, the file has %d" % (end, len(data)))
    return minor, end


def read_blocks(data, at, end):
    """Type, flags and payload of each block up to the end."""
    while at < end:
        if end - at < HEAD_BYTES:
            raise Damage("%d bytes are left where a block begins" % (end - at))
        kind, flags, size, checksum, head_checksum = struct.unpack_from("<IIQII", data, at)
        if head_checksum != crc32c(data[at:at + 20]):
            raise Damage("the checksum of the block head at byte %d is wrong" % at)
        at += HEAD_BYTES
        if size > end - at:
            raise Damage("the block at byte %d is longer than the file" % (at - HEAD_BYTES))
        payload = data[at:at + size]
        if checksum != crc32c(payload):
            raise Damage("the checksum of the payload at byte %d is wrong" % at)
        at += size
        yield kind, flags, payload


class Tree:
    """The nodes, built from one block after the other."""

    def __init__(self):
        self.root = None
        self.open = []
        self.fresh = None

    def add(self, kind, flags, payload):
        if self.root is None and kind != BASE:
            raise Damage("the first block is of type %d, not a base" % kind)
        if self.root is not None and not self.open:
            raise Damage("there is a block behind the one that closes the root")
        if kind in (ATTRIBUTES, SYMBOLS):
            self.belong(kind, payload)
        elif kind in OPENERS:
            self.enter(OPENERS[kind](payload), kind)
        elif kind == OBJECTS:
            self.open[-1]["children"].extend(read_objects(payload, "I"))
        elif kind == CLOSE:
            self.open.pop()
        elif flags & 1:
            raise Damage("a required block of type %d is not known" % kind)
        if kind in (CLOSE, OBJECTS):
            self.fresh = None

    def enter(self, node, kind):
        if len(self.open) > MOST_NODES_DEEP:
            raise Damage("nodes lie more than %d deep" % MOST_NODES_DEEP)
        node["children"] = []
        if self.open:
            self.open[-1]["children"].append(node)
        else:
            self.root = node
        self.open.append(node)
        self.fresh = kind

    def belong(self, kind, payload):
        """What stands right behind the block that opens its node."""
        if self.fresh != (LAYER if kind == ATTRIBUTES else BASE):
            raise Damage("a block of type %d is not right behind the one that opens its node" % kind)
        self.fresh = None
        if kind == ATTRIBUTES:
            self.open[-1]["attributes"] = read_attributes(payload)
        else:
            self.open[-1]["symbols"] = read_objects(payload, "i")


def read_file(data):
    minor, end = read_header(data)
    tree = Tree()
    for kind, flags, payload in read_blocks(data, HEADER_BYTES, end):
        tree.add(kind, flags, payload)
    if tree.root is None or tree.open:
        raise Damage("it ends before its root is closed")
    return {"version": [1, minor], "root": tree.root}


def main(arguments):
    if len(arguments) != 1:
        print("Usage: xvc_reader.py FILE", file=sys.stderr)
        return 2
    try:
        with open(arguments[0], "rb") as file:
            data = file.read()
        line = json.dumps(read_file(data), allow_nan=False)
    except OSError as error:
        print("Cannot open %s: %s." % (arguments[0], error.strerror), file=sys.stderr)
        return 1
    except Damage as damage:
        print("Cannot read %s: %s." % (arguments[0], damage), file=sys.stderr)
        return 1
    print(line)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
