#pragma once

struct PJconsts;

/// For the sources of this folder only: a system taken apart.
struct tagXLvcParts
{
    int gcsCode = 0; // of the system itself, or of the one below a projected one
    int ellipsoidCode = 0;
    int method = 0;
    double parameters[7] = {}; // degrees, metres, plain numbers
};

/// Method and parameters of a projected system; 0 when it is not projected or the method is unknown.
int XfnReadProjection(const PJconsts* system, tagXLvcParts& parts);

/// Geographic system and ellipsoid; codes that are not stated are looked for in the database.
int XfnReadGeography(const PJconsts* system, tagXLvcParts& parts);
