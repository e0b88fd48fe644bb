#pragma once

#include <QString>

#include <utility>
#include <vector>

class XSpatialReference;
class XvcLayer;
class XvcObj;
struct tagXVectorFile;
struct tagXVectorLayer;

/// What is told of a picked object, names and values; a heading has a null value.
///
/// First what it is, then under a heading each the attributes that its file keeps of it, and how
/// large it is and where.
/// Lengths and areas are those on the ellipsoid wherever the coordinate system is known, in metres
/// and the like, whatever the unit of the coordinates; without one they are those of the plane, in
/// units. The edges of an object count as shortest lines then. Coordinates are followed by the name of
/// the system that they are in.
/// @param world  the view's
std::vector<std::pair<QString, QString>> XfnObjectReport(const XvcObj& object,
                                                         const tagXVectorFile& file,
                                                         const tagXVectorLayer& layer,
                                                         const XSpatialReference& world);

/// The rows as text for the clipboard: a line a row, name and value with a tab between.
QString XfnReportText(const std::vector<std::pair<QString, QString>>& rows);

/// "12.3456 m", "1.23456 km"; "12.3456 m²", "1.23456 ha", "1.23456 km²". Empty for what is no number.
QString XfnLengthText(double metres);
QString XfnAreaText(double squareMetres);

/// "Polygon with parts or holes" for "XvcMPolygon"; the name itself without its beginning for others.
QString XfnClassText(const char* className);

/// What a vector file or one of its layers is, for the panel of the layers.
/// @param layer  null for the whole file
std::vector<std::pair<QString, QString>> XfnVectorReport(const tagXVectorFile& file,
                                                         const XvcLayer* layer);
