#pragma once

#include "foundation/raster/XDMBand.h"

class GDALDataset;
class GDALRasterBand;

/// For the sources of this folder only: everything about a band of a file but its pixels.

/// Name, null value, role, class table, wavelength, gain and the like.
void XfnDescribeGdalBand(GDALRasterBand* band, int bandNumber, XDMBand& out);

/// The statistics that the file stores, when they are exact. @return 0 when there are none
int XfnReadGdalStatistics(GDALRasterBand* band, tagXBandStatistics& statistics);

/// Geometry and reference of the whole file. `notes` gets a sentence for what makes no sense.
void XfnReadGdalGeometry(GDALDataset* dataset, XBandGeometry& geometry, XSpatialReference& sr,
                         XString& notes);

/// The control points of the file, centre based; their reference in `sr`.
std::vector<tagXGCP> XfnReadGdalPoints(GDALDataset* dataset, XSpatialReference& sr);

/// The bands for red, green and blue that an ENVI header names. @return 0 when it names none
int XfnReadGdalHeaderBands(GDALDataset* dataset, int (&rgb)[3]);
