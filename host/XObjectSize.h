#pragma once

class XSpatialReference;
class XvcObj;

/// How large an object of points, lines or areas is.
struct tagXObjectSize
{
    bool isMetric = false; ///< metres and square metres on the ellipsoid; else units of the plane
    bool hasLength = false;
    bool hasArea = false;
    double length = 0; ///< of lines, or around areas and their holes
    double area = 0;   ///< without holes
    int parts = 0;     ///< points, lines and rings
    int vertices = 0;
};

/// Measures an object; what has a shape of its own, such as a text or an arc, has neither length nor
/// area here. On the ellipsoid edges are shortest lines (XGeodesy.h). What is no number is left out.
/// @param world  that the coordinates are in; when empty, or when they cannot be carried over, the
///               object is measured in the plane
tagXObjectSize XfnMeasureObject(const XvcObj& object, const XSpatialReference& world);
