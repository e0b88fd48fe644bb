#!/usr/bin/env python3
"""A second reader of XVC vector files, written from the page docs/formats/xvc.md alone.

Command line: `xvc_reader.py FILE` prints one JSON object in one line, exit code 0. A file it cannot read: nothing on
stdout, one sentence on stderr, exit code 1. Wrong usage: exit code 2.

Integers and reals are JSON numbers as Python's repr writes them, so reals come back bit by bit. JSON has no other reals:
NaN is the string "nan", infinities are "inf" and "-inf". Bytes are strings of hexadecimal digits, colors numbers.

  {"version": [major, minor], "root": base}
  base     {node, name, link, hidden, coordinates, wkt, objects, kinds, range, symbols: [object], children}
  layer    {node, name, link, hidden, locked, hit, bufferType, fontSizeFlag, objects, kinds, range, columns: [name],
           attributes: none or {rows, columns: [{name, type, values}]}, children}; a missing value is none
  list     {node, children}
  object   {class, number, common: {...}, own: {...}}; one that cannot be read {class, number, unread: bytes}
"""

import json
import math
import struct
import sys

SUMMARY_RANGE = 6


class XvcError(Exception):
    """The file is no XVC file, is damaged, or needs what this reader lacks."""


def need(condition, text):
    if not condition:
        raise XvcError(text)


def _table():
    table = []
    for byte in range(256):
        for _ in range(8):
            byte = (byte >> 1) ^ (0x82F63B78 if byte & 1 else 0)
        table.append(byte)
    return table


TABLE = _table()


def crc32c(data):
    crc = 0xFFFFFFFF
    for byte in data:
        crc = (crc >> 8) ^ TABLE[(crc ^ byte) & 0xFF]
    return crc ^ 0xFFFFFFFF


class Bytes:
    """A payload or record that is read from its begin on."""

    def __init__(self, data):
        self.data = data
        self.at = 0

    def take(self, count):
        need(0 <= count <= len(self.data) - self.at, "something ends early")
        self.at += count
        return self.data[self.at - count:self.at]

    def left(self):
        return len(self.data) - self.at

    def one(self, form):
        return struct.unpack("<" + form, self.take(struct.calcsize("<" + form)))[0]

    def u8(self):
        return self.one("B")

    def u16(self):
        return self.one("H")

    def u32(self):
        return self.one("I")

    def i32(self):
        return self.one("i")

    def f64(self):
        return self.one("d")

    def reals(self, count):
        need(8 * count <= self.left(), "something ends early")
        return [self.f64() for _ in range(count)]

    def text(self):
        return self.take(self.u32()).decode("utf-8", "replace")

    def vertex(self):
        return self.reals(3)

    def version(self, form="B"):
        need(self.one(form) == 1, "an unknown version of a record")


def style(b):
    word = b.u32()
    numbers = list(struct.unpack("<5i8B", b.take(28)))
    face = b.take(32).split(b"\0")[0].decode("utf-8", "replace")
    return {"word": word, "numbers": numbers, "face": face}


def reference(b):
    return {"wkt": b.text(), "coordinates": b.i32()}


def font(b):
    return {"size": b.f64(), "color": b.u32(), "style": style(b)}


def measure(b):
    b.version()
    own = {"reference": reference(b), "lengthUnit": b.i32(), "areaUnit": b.i32(), "decimals": b.i32(),
           "label": b.i32(), "size": b.f64(), "textColor": b.u32()}
    own["style"] = style(b)
    return own


def common(b):
    b.version("H")
    stored = b.u16()
    need(stored & ~63 == 0, "something unknown is stored with an object")
    made = {"lineColor": b.u32(), "foreColor": b.u32(), "backColor": b.u32(), "hidden": b.i32(), "thick": b.f64(),
            "fill": b.i32(), "line": [b.u16(), b.i32(), b.u32(), b.u32()]}
    need(stored & 8 or 0 <= made["fill"] <= 16, "a fill style without a pattern")
    made["name"] = b.text() if stored & 1 else ""
    made["link"] = b.text() if stored & 2 else ""
    made["value"] = b.f64() if stored & 4 else 0.0
    made["pattern"] = b.take(128).hex() if stored & 8 else None
    made["texts"] = [b.text() for _ in range(5)] if stored & 16 else [""] * 5
    made["range"] = b.reals(6) if stored & 32 else None
    return made


def vertices(b, low=0, high=None):
    heights = b.u8()
    need(heights <= 1, "a flag that is neither 0 nor 1")
    count = b.u32()
    need(count >= low and (high is None or count <= high), "a number of vertices that cannot be")
    need(count * (24 if heights else 16) <= b.left(), "something ends early")
    return [b.reals(3) if heights else b.reals(2) + [0.0] for _ in range(count)]


def v(low=0, high=None):
    """A record that begins with V."""
    def read(b, made):
        b.version()
        made["common"] = common(b)
        made["own"]["vertices"] = vertices(b, low, high)
    return read


def box(b, made):
    b.version()
    made["common"] = common(b)
    made["own"].update(leftTop=b.vertex(), rightBottom=b.vertex())


def round_(b, made):
    b.version()
    made["common"] = common(b)
    made["own"].update(center=b.vertex(), start=b.vertex(), end=b.vertex(), axes=b.reals(2), rotation=b.f64(),
                       resolution=b.i32())


def parts(allowed=None):
    def read(b, made):
        b.version()
        made["common"] = common(b)
        members = []
        for _ in range(b.u32()):
            name = b.text()
            need(allowed is None or name == allowed, "a part of a class that cannot be")
            members.append(read_object(b, name, made["depth"] + 1))
        made["own"]["parts"] = members
    return read


def point(b, made):
    made["common"] = common(b)
    b.version("H")
    made["own"].update(vertex=b.vertex(), shape=b.i32(), sides=b.i32(), worldPerPixel=b.f64())


def only_common(b, made):
    b.version()
    made["common"] = common(b)


def fields(*names):
    """Own values in a row: "i name", "d name", "t name" and so on."""
    kinds = {"i": Bytes.i32, "d": Bytes.f64, "t": Bytes.text, "c": Bytes.u32, "x": Bytes.vertex, "style": style,
             "font": font, "reference": reference}

    def read(b, made):
        for name in names:
            kind, key = name.split()
            if kind == "v":
                b.version()
            else:
                made["own"][key] = kinds[kind](b)
    return read


def knots(b, made):
    made["own"]["knots"] = b.reals(b.u32())


def measured(b, made):
    made["own"].update(measure(b))


def picture(b, made):
    b.version()
    own = made["own"]
    own.update(file=b.text(), opacity=b.f64(), border=b.i32(), transparent=b.i32(), hasIndexMap=b.i32())
    own.update(indexMap=[b.vertex() for _ in range(4)], mapBox=b.reals(4), picture=None)
    if not b.u8():
        return
    width, height, bits = b.i32(), b.i32(), b.u16()
    shown = {"width": width, "height": height, "bits": bits, "metres": [b.i32(), b.i32()]}
    colors = b.u32()
    shown["hasOpacity"] = b.u8()
    shown["palette"] = b.take(4 * colors).hex()
    rows = b.u32()
    need(rows in (0, abs(height)), "a picture whose rows are not all there")
    shown["rows"] = b.take(rows * ((width * bits + 31) // 32 * 4)).hex()
    own["picture"] = shown


def samples(b, made):
    b.version()
    made["own"].update(opacity=b.f64(), samples=None)
    if not b.u8():
        return
    width, bands, kind, height = b.i32(), b.i32(), b.i32(), b.u32()
    need(1 <= kind <= 8 and width > 0 and bands > 0, "samples that cannot be")
    size = {1: 1, 2: 1, 3: 2, 4: 2, 5: 4, 6: 4, 7: 4, 8: 8}[kind]
    made["own"]["samples"] = {"width": width, "height": height, "bands": bands, "type": kind,
                              "bytes": b.take(width * height * bands * size).hex()}


def legend_rows(b, made):
    count = b.u32()
    need(count <= 10000, "a legend of too many rows")
    made["own"]["rows"] = [{"look": common(b), "kind": b.i32(), "shape": b.i32()} for _ in range(count)]


TEXT_BOX = fields("v -", "t rtf", "d worldPerPixel", "d xSpace", "i autoAlign", "i vertAlign", "i border",
                  "style style")
ARC = fields("d startAngle", "d endAngle", "i mode")

CLASSES = {
    "XvcPoint": [point],
    "XvcMPoint": [parts("XvcPoint")],
    "XvcPolypoint": [v(), fields("i shape")],
    "XvcLine": [v(2, 2), fields("i startShape", "i endShape", "d startSize", "d endSize", "d worldPerPixel")],
    "XvcMLine": [parts("XvcLine")],
    "XvcPolyline": [v()],
    "XvcMPolyline": [parts("XvcPolyline")],
    "XvcPolygon": [v()],
    "XvcMPolygon": [parts("XvcPolygon"), fields("i fillRule")],
    "XvcBspline": [v(), fields("i order", "i resolution", "i type"), knots],
    "XvcEllipse": [round_],
    "XvcArc": [round_, ARC],
    "XvcArcClosed": [round_, ARC],
    "XvcRectangle": [v(4, 4)],
    "XvcGroup": [parts()],
    "XvcGroup2": [parts()],
    "XvcNorthArrow": [v(4, 4), fields("v -", "i style", "i resolution", "d angle", "d worldPerPixel")],
    "XvcScaleBar": [v(4, 4), fields("v -", "i type", "i align", "d worldPerPixel", "font font", "reference reference")],
    "XvcText": [only_common, fields("t text", "x position", "d fontSize", "d angle", "d worldPerPixel", "i align",
                                    "i border", "c textColor", "style style")],
    "XvcMText": [parts("XvcText")],
    "XvcTextBox": [box, TEXT_BOX],
    "XvcBalloon": [box, TEXT_BOX, fields("v -", "x pointer")],
    "XvcBitmap": [box, picture],
    "XvcRaster": [box, samples],
    "XvcEMF": [box, fields("v -", "i originalWidth", "i originalHeight", "i lock", "d worldPerPixel", "t outline")],
    "XvcSymbol": [v(1, 1), fields("v -", "i number", "d rotation", "d scaleX", "d scaleY")],
    "XvcMSymbol": [parts("XvcSymbol")],
    "XvcSymbolDef": [only_common, fields("i number", "t group", "t outline")],
    "XvcMeasurePoint": [v(0, 1), fields("i shape"), measured],
    "XvcMeasureDist": [v(), measured],
    "XvcMeasureArea": [v(), measured],
    "XvcMeasureAngle": [v(0, 3), measured],
    "XvcMeasureRange": [v(0, 2), measured],
    "XvcLeaderLine": [v(), fields("v -", "t text", "i border", "i startShape", "d startSize", "d landing",
                                  "d worldPerPixel", "font font")],
    "XvcLegend": [box, fields("v -", "t title", "i columns", "i border", "d worldPerPixel", "font font"), legend_rows],
    "XvcAxis": [v(2, 2), fields("v -", "d minimum", "d maximum", "i log", "d majorStep", "i majorCount",
                                "i minorCount", "i decimals", "t title", "i inverted", "i tickSide", "i labels",
                                "d gridLength", "c gridColor", "d worldPerPixel", "font font")],
}


def read_object(b, name, depth=0):
    need(name in CLASSES, "an unknown class")
    need(depth <= 32, "parts too deep in each other")
    made = {"class": name, "depth": depth, "common": None, "own": {}}
    for step in CLASSES[name]:
        step(b, made)
    del made["depth"]
    return made


def records(payload):
    b = Bytes(payload)
    names = [b.text() for _ in range(b.u32())]
    made = []
    for _ in range(b.u32()):
        size, index, _, number = b.u32(), b.u16(), b.u16(), b.u32()
        need(index < len(names), "a record of no class")
        data = b.take(size)
        try:
            one = read_object(Bytes(data), names[index])
        except XvcError:
            one = {"class": names[index], "unread": data.hex()}
        one["number"] = number
        made.append(one)
    return made


def attributes(payload):
    b = Bytes(payload)
    b.version()
    rows, count = b.u32(), b.u32()
    need(count > 0 or rows == 0, "rows without columns")
    columns = []
    for _ in range(count):
        name, kind, width, missing = b.text(), b.u8(), b.u8(), b.u8()
        need(kind in (1, 2, 3) and width in (1, 2, 4, 8) and (kind != 2 or width == 8), "a column that cannot be")
        texts = []
        if kind == 3:
            ends = [b.u32() for _ in range(b.u32())]
            pool = b.take(b.u32())
            need(ends == sorted(ends) and (ends[-1] if ends else 0) == len(pool), "texts that overlap")
            texts = [pool[begin:end].decode("utf-8", "replace") for begin, end in zip([0] + ends, ends)]
        present = b.take((rows + 7) // 8) if missing else b"\xff" * ((rows + 7) // 8)
        form = "<%d%s" % (rows, "d" if kind == 2 else {1: "b", 2: "h", 4: "i", 8: "q"}[width])
        values = []
        for row, cell in enumerate(struct.unpack(form, b.take(rows * width))):
            if not present[row // 8] >> row % 8 & 1:
                values.append(None)
                continue
            need(kind != 3 or 0 <= cell < len(texts), "a cell with no text")
            values.append(texts[cell] if kind == 3 else cell)
        columns.append({"name": name, "type": kind, "values": values})
    return {"rows": rows, "columns": columns}


def summary(b):
    return {"objects": b.one("Q"), "kinds": b.u32(), "range": b.reals(SUMMARY_RANGE)}


def open_base(payload):
    b = Bytes(payload)
    return {"node": "base", "name": b.text(), "link": b.text(), "hidden": b.i32(), "coordinates": b.i32(),
            "wkt": b.text(), **summary(b), "symbols": None, "children": []}


def open_layer(payload):
    b = Bytes(payload)
    made = {"node": "layer", "name": b.text(), "link": b.text(), "hidden": b.i32(), "locked": b.i32(), "hit": b.i32(),
            "bufferType": b.i32(), "fontSizeFlag": b.i32(), **summary(b)}
    made["columns"] = [b.text() for _ in range(b.u32())]
    return {**made, "attributes": None, "children": []}


OPENERS = {1: open_base, 2: open_layer, 3: lambda payload: {"node": "list", "children": []}}


def read(data):
    need(len(data) >= 32 and data[:8] == b"\x89XVC\r\n\x1a\n", "it is no XVC file")
    major, minor, _, size, _, check = struct.unpack("<HHIQII", data[8:32])
    need(major == 1, "it is of another version")
    need(crc32c(data[:28]) == check, "its header is damaged")
    need(32 <= size <= len(data), "it ends early")
    file = Bytes(data[:size])
    file.at = 32
    root, nodes, before = None, [], 0
    while root is None or nodes:
        head = file.take(24)
        kind, flags, count, payload_check, check = struct.unpack("<IIQII", head)
        need(crc32c(head[:20]) == check, "the head of a block is damaged")
        payload = file.take(count)
        need(crc32c(payload) == payload_check, "a block is damaged")
        if kind in OPENERS:
            need(kind == 1 or nodes, "it does not begin with a base")
            need(len(nodes) <= 64, "nodes too deep in each other")
            node = OPENERS[kind](payload)
            if nodes:
                nodes[-1]["children"].append(node)
            else:
                root = node
            nodes.append(node)
        elif not nodes:
            raise XvcError("it does not begin with a base")
        elif kind == 4:
            nodes.pop()
        elif kind == 5:
            nodes[-1]["children"] += records(payload)
        elif kind == 6:
            need(before == 2, "attributes that are not right behind a layer")
            nodes[-1]["attributes"] = attributes(payload)
        elif kind == 7:
            need(before == 1, "symbols that are not right behind a base")
            nodes[-1]["symbols"] = records(payload)
        else:
            need(not flags & 1, "it needs a newer reader")
        before = kind
    return {"version": [major, minor], "root": root}


def plain(value):
    """The same without reals that JSON does not have."""
    if isinstance(value, float) and not math.isfinite(value):
        return repr(value)
    if isinstance(value, dict):
        return {key: plain(inner) for key, inner in value.items()}
    if isinstance(value, list):
        return [plain(inner) for inner in value]
    return value


def main():
    if len(sys.argv) != 2:
        print("usage: xvc_reader.py FILE", file=sys.stderr)
        return 2
    try:
        with open(sys.argv[1], "rb") as file:
            made = read(file.read())
    except (OSError, XvcError) as error:
        print(f"{sys.argv[1]}: {error}", file=sys.stderr)
        return 1
    print(json.dumps(plain(made), ensure_ascii=False, allow_nan=False))
    return 0


if __name__ == "__main__":
    sys.exit(main())
