#pragma once

// The loops over the 256 entries of a stretch. All arrays have 256 entries and are apart.

/// Display levels along a curve in 0..1: low + span * curve[i], rounded. They lie in 0..255.
void XfnCurveToLevels(const double* curve, double low, double span, unsigned char* lut);

/// The mass above bin 0 up to each bin, negative counts taken as 0, each sum rounded to double.
/// @return the last of them; when it is 0 there is no mass
double XfnSumMass(const long long* histogram, double* sums);

/// XfnCurveToLevels along the shares sums[i] / total.
void XfnSharesToLevels(const double* sums, double total, double low, double span,
                       unsigned char* lut);

/// XfnCurveToLevels along a function of these shares that is straight between samples at
/// i / cells and rises by at most 50 a unit.
/// @param samples  cells + 2 values; the one behind the last is read where the share is 1
void XfnMatchedSharesToLevels(const double* sums, double total, const double* samples, int cells,
                              double low, double span, unsigned char* lut);

/// The levels from + slope * i for i below `count`, rounded. They lie in 0..255.
void XfnFillLine(double from, double slope, int count, unsigned char* levels);

/// The bins from `low` to `high`, each assigned to its place when they are spread over 0..255;
/// the other entries become 0.
void XfnSpreadBins(const long long* source, int low, int high, long long* applied);

/// The sum of in[i] over all i whose lut[i] is a level, for each level.
void XfnSendThroughTable(const long long* in, const unsigned char* lut, long long* out);
