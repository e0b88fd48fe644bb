#pragma once

#include <memory>

class OGRGeometry;
class XvcObj;

/// For the sources of this folder only: the object of a geometry; null for one without vertices, and
/// for collections deeper in each other than readers make them.
///
/// Curves become short straight lines; several points XvcPolypoint, several lines XvcMPolyline,
/// areas of several rings XvcMPolygon; surfaces made of faces XvcMPolygon filled by the winding
/// rule, since faces lie over each other seen from above; other collections XvcGroup2, unless only one
/// member is left.
std::unique_ptr<XvcObj> XfnMakeFromOgr(const OGRGeometry& geometry);
