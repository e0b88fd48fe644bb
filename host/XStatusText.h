#pragma once

#include <QString>

/// Texts of the read-outs, without any control. Reals have a point in every locale.

/// How the geographic position is written.
enum class GeoFormat { Decimal, Dms };

/// How the scale is written.
enum class ZoomFormat { Ratio, Percent };

/// What a world length is measured in.
enum class WorldUnit { Pixel, Linear, Degree, Unknown };

/// One sample: an integer as it is, a real with 7 significant digits, "no data" for the no-data and
/// not-set marks, "NaN" and "Inf" as such.
QString XfnSampleText(double value);

/// A name with its middle replaced by dots where it has more letters: both ends tell files apart.
QString XfnShortName(const QString& name, int letters);

/// The samples under the pointer: "123" for one channel, "R 12  G 34  B 56" for three.
/// @param values  red, green, blue; only the first counts when `isColour` is false
QString XfnSamplesText(const double (&values)[3], bool isColour);

/// A complex sample: "re 3  im -4.5"; "no data" where either part is none.
QString XfnComplexText(double real, double imaginary);

/// "288776.25  9110743.75" with the digits that suit the unit: 2 for lengths, 6 for degrees; a
/// raster without coordinates gives "column 12  row 34", counted from 0 at the pixel's centre.
QString XfnPositionText(double x, double y, WorldUnit unit);

/// One coordinate with the digits that suit the unit, never with an exponent where a place can be.
QString XfnNumberText(double value, WorldUnit unit);

/// "8.041670 S  34.900000 W" or "8°02'30.01"S  34°54'00.00"W". Not finite, a latitude beyond 90 or a
/// longitude beyond 360: empty.
QString XfnGeographicText(double latDeg, double lonDeg, GeoFormat format);

/// The scale of the view.
/// @param worldPerPixel     world length of a screen pixel
/// @param metresPerWorld    metres in one world unit; 0 when unknown, then a percentage is given
/// @param rasterPixelSize   world length of a raster pixel; 100 % is one raster pixel a screen pixel
/// @param screenDpi         dots per inch of the screen
QString XfnZoomText(double worldPerPixel, double metresPerWorld, double rasterPixelSize,
                    double screenDpi, ZoomFormat format);

/// Metres in a degree of longitude at that latitude, on a sphere of 6371008.8 m: good to 0.5 %,
/// which is what a scale read-out needs. Never below a millionth of that at the equator.
double XfnMetresPerDegree(double latDeg);

/// The position as it goes to the clipboard, naming its system, so that it can be pasted anywhere:
/// "288776.2500 9110743.7500 EPSG:31985 (SIRGAS 2000 / UTM zone 25S)", geographic
/// "lat -8.04167000 lon -34.90000000 EPSG:4326 (WGS 84)", and "column 12.5 row 30.5 (no coordinate
/// system)".
/// @param code  EPSG code, 0 when unknown
QString XfnCoordinateForClipboard(double x, double y, WorldUnit unit, int code,
                                  const QString& name);
