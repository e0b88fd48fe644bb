#!/usr/bin/python3
"""Milliseconds that QGIS needs for the pictures of bench_vector, as lines "NAME MEDIAN".

usage: peer_vector.py SCENE_DIR      needs the Debian package python3-qgis

Each picture is made by the job of its map canvas, with the canvas' flags, 1920x1080 pixels, timed
from making the job to its finished image; one run before is not timed.
"""
import os
import sys
import time

os.environ.setdefault('QT_QPA_PLATFORM', 'offscreen')
os.environ.setdefault('XDG_RUNTIME_DIR', '/tmp')

from qgis.core import (QgsApplication, QgsFillSymbol, QgsMapRendererParallelJob, QgsMapSettings,
                       QgsMarkerSymbol, QgsRectangle, QgsSingleSymbolRenderer, QgsVectorLayer)
from qgis.PyQt.QtCore import QSize, Qt
from qgis.PyQt.QtGui import QColor

WIDTH, HEIGHT = 1920, 1080


def load(path, symbol):
    layer = QgsVectorLayer(path, os.path.basename(path), 'ogr')
    if not layer.isValid():
        sys.exit('cannot open ' + path)
    layer.setRenderer(QgsSingleSymbolRenderer(symbol))
    return layer


def picture_ms(layer, extent):
    settings = QgsMapSettings()
    settings.setLayers([layer])
    settings.setDestinationCrs(layer.crs())
    settings.setOutputSize(QSize(WIDTH, HEIGHT))
    settings.setOutputDpi(96)
    settings.setBackgroundColor(QColor(Qt.white))
    for flag in (QgsMapSettings.Antialiasing, QgsMapSettings.UseRenderingOptimization,
                 QgsMapSettings.RenderPartialOutput, QgsMapSettings.DrawLabeling):
        settings.setFlag(flag, True)
    settings.setExtent(extent)
    begin = time.perf_counter()
    job = QgsMapRendererParallelJob(settings)
    job.start()
    job.waitForFinished()
    job.renderedImage()
    return (time.perf_counter() - begin) * 1e3


def report(name, layer, extents):
    times = sorted([picture_ms(layer, extent) for extent in extents][1:])
    print(name, '%.3f' % times[len(times) // 2], flush=True)


def main():
    folder = sys.argv[1]
    app = QgsApplication([], False)
    app.initQgis()
    polygons = load(os.path.join(folder, 'V1_polys.shp'), QgsFillSymbol.createSimple(
        {'color': '255,200,0,90', 'outline_color': '35,35,35', 'outline_width': '0.26'}))
    points = load(os.path.join(folder, 'V2_points.shp'), QgsMarkerSymbol.createSimple(
        {'name': 'circle', 'size': '2', 'color': '200,30,30', 'outline_color': '35,35,35'}))
    whole = polygons.extent()
    pixel = whole.height() / HEIGHT

    def around(x, y, scale):
        return QgsRectangle(x - WIDTH * scale / 2, y - HEIGHT * scale / 2,
                            x + WIDTH * scale / 2, y + HEIGHT * scale / 2)

    def moved(scale, count):
        centre = whole.center()
        return [around(centre.x() + 7 * i * scale, centre.y(), scale) for i in range(count)]

    report('V1.full', polygons, moved(pixel, 4))
    report('V2.full', points, moved(pixel, 4))
    report('V1.one_to_one', polygons, moved(1.0, 8))
    report('V2.one_to_one', points, moved(1.0, 8))
    os._exit(0)  # leaving by way of its destructors is not measured


main()
