#include "foundation/vector/XSymbolSet.h"

#include "foundation/vector/XvcSymbolDef.h"
#include "foundation/vector/XvcSymbolTable.h"

#include <cassert>
#include <memory>
#include <utility>

namespace {

struct tagEntry
{
    int id;
    const char* group;
    const char* name;
    const char* outline;
};

constexpr const char* kGeometric = "Geometric";
constexpr const char* kCrosses = "Crosses";
constexpr const char* kArrows = "Arrows";
constexpr const char* kSurvey = "Survey marks";
constexpr const char* kPlaces = "Points of interest";

// Numbers are those of files: a new symbol gets a new one.
const tagEntry kSymbols[] = {
    {1, kGeometric, "Circle", "fC 0 0 45"},
    {2, kGeometric, "Square", "fP -40 -40 40 -40 40 40 -40 40"},
    {3, kGeometric, "Triangle", "fP -45 -38 45 -38 0 42"},
    {4, kGeometric, "Diamond", "fP 0 -45 40 0 0 45 -40 0"},
    {5, kGeometric, "Pentagon", "fP 0 45 -42.8 13.9 -26.5 -36.4 26.5 -36.4 42.8 13.9"},
    {6, kGeometric, "Hexagon", "fP 45 0 22.5 39 -22.5 39 -45 0 -22.5 -39 22.5 -39"},
    {7, kGeometric, "Star",
     "fP 0 45 -10.1 13.9 -42.8 13.9 -16.4 -5.3 -26.5 -36.4 0 -17.2 26.5 -36.4 16.4 -5.3 42.8 13.9 "
     "10.1 13.9"},
    {8, kGeometric, "Half disc", "bC 0 0 45;kA 0 0 45 90 180"},
    {9, kGeometric, "Target", "sC 0 0 45;sC 0 0 26;kC 0 0 7"},
    {10, kGeometric, "Ellipse", "fE 0 0 46 28"},

    {21, kCrosses, "Upright cross", "sL -45 0 45 0;sL 0 -45 0 45"},
    {22, kCrosses, "Diagonal cross", "sL -40 -40 40 40;sL -40 40 40 -40"},
    {23, kCrosses, "Cross in a circle", "bC 0 0 45;sL -45 0 45 0;sL 0 -45 0 45"},
    {24, kCrosses, "Cross in a square",
     "bP -40 -40 40 -40 40 40 -40 40;sL -40 -40 40 40;sL -40 40 40 -40"},
    {25, kCrosses, "Broad cross",
     "fP -15 -45 15 -45 15 -15 45 -15 45 15 15 15 15 45 -15 45 -15 15 -45 15 -45 -15 -15 -15"},
    {26, kCrosses, "Asterisk", "sL 0 -45 0 45;sL -39 -22.5 39 22.5;sL -39 22.5 39 -22.5"},
    {27, kCrosses, "Cross hair",
     "sL -48 0 -12 0;sL 12 0 48 0;sL 0 -48 0 -12;sL 0 12 0 48;kC 0 0 3"},
    {28, kCrosses, "Long cross",
     "fP -8 -48 8 -48 8 12 32 12 32 28 8 28 8 48 -8 48 -8 28 -32 28 -32 12 -8 12"},

    {41, kArrows, "Broad arrow", "fP -14 -45 14 -45 14 5 36 5 0 46 -36 5 -14 5"},
    {42, kArrows, "Thin arrow", "sL 0 -46 0 46;sL -18 22 0 46 18 22"},
    {43, kArrows, "Double arrow", "sL 0 -46 0 46;sL -18 22 0 46 18 22;sL -18 -22 0 -46 18 -22"},
    {44, kArrows, "Arrow head", "fP -32 -40 0 -22 32 -40 0 46"},
    {45, kArrows, "Turning arrow", "sA 0 0 36 -60 270;kP -26 -44 -2 -36 -24 -16"},
    {46, kArrows, "Bent arrow", "fP -38 -44 -18 -44 -18 4 8 4 8 -14 46 14 8 42 8 24 -38 24"},

    {61, kSurvey, "Triangulation point", "bP -45 -36 45 -36 0 44;kC 0 -9 7"},
    {62, kSurvey, "Bench mark", "sL -40 36 40 36;sL 0 30 0 -44;sL 0 30 -30 -40;sL 0 30 30 -40"},
    {63, kSurvey, "Control point",
     "bC 0 0 44;kP 0 0 44 0 42.5 11.4 38.1 22 31.1 31.1 22 38.1 11.4 42.5 0 44;"
     "kP 0 0 -44 0 -42.5 -11.4 -38.1 -22 -31.1 -31.1 -22 -38.1 -11.4 -42.5 0 -44"},
    {64, kSurvey, "Tie point", "sC 0 0 32;sL -48 0 48 0;sL 0 -48 0 48"},
    {65, kSurvey, "Boundary post", "bP -14 -44 14 -44 14 30 0 46 -14 30;sL -14 10 14 10"},
    {66, kSurvey, "Spot height", "kC 0 0 10;sA 0 0 34 0 180;sL -34 0 34 0"},
    {67, kSurvey, "Satellite station",
     "bP -30 -44 30 -44 0 6;kC 0 6 6;sA 0 6 20 30 120;sA 0 6 36 30 120"},

    {81, kPlaces, "Pin",
     "fP 0 -48 -16 -18 -26 0 -29 16 -25 31 -15 42 0 46 15 42 25 31 29 16 26 0 16 -18;bC 0 17 12"},
    {82, kPlaces, "Flag", "sL -30 -48 -30 46;fP -30 46 38 26 -30 6"},
    {83, kPlaces, "House",
     "fP -34 -44 34 -44 34 6 -34 6;kP -46 6 46 6 0 46;bP -9 -44 9 -44 9 -16 -9 -16"},
    {84, kPlaces, "Airfield",
     "kP 0 48 7 36 7 14 46 -10 46 -20 7 -6 5 -30 17 -40 17 -47 0 -42 -17 -47 -17 -40 -5 -30 -7 -6 "
     "-46 -20 -46 -10 -7 14 -7 36"},
    {85, kPlaces, "Harbour",
     "sC 0 36 9;sL 0 27 0 -44;sL -20 14 20 14;sA 0 -4 40 190 160;kP -48 -2 -30 -6 -44 -22;"
     "kP 48 -2 30 -6 44 -22"},
    {86, kPlaces, "Hospital",
     "bP -44 -44 44 -44 44 44 -44 44;kP -10 -32 10 -32 10 -10 32 -10 32 10 10 10 10 32 -10 32 -10 "
     "10 "
     "-32 10 -32 -10 -10 -10"},
    {87, kPlaces, "Radio mast",
     "sL -20 -46 0 24 20 -46;sL -13 -22 13 -22;sL -7 0 7 0;kC 0 26 6;sA 0 26 20 -45 90;"
     "sA 0 26 20 135 90;sA 0 26 32 -45 90;sA 0 26 32 135 90"},
    {88, kPlaces, "Bridge",
     "sL -48 10 48 10;sL -48 -4 48 -4;sL -40 -34 -40 10;sL 40 -34 40 10;sA 0 -34 30 0 180"},
    {89, kPlaces, "Mine",
     "sL -36 -36 30 30;sL 36 -36 -30 30;kP 16 34 36 14 46 24 26 44;kP -16 34 -36 14 -46 24 -26 44"},
    {90, kPlaces, "Tree", "kP -6 -46 6 -46 6 -24 -6 -24;fP -36 -24 36 -24 0 14;fP -27 2 27 2 0 46"},
    {91, kPlaces, "Camp",
     "fP -46 -36 46 -36 0 40;kP -14 -36 14 -36 0 2;sL 0 40 6 48;sL 0 40 -6 48"},
    {92, kPlaces, "Lighthouse",
     "fP -16 -46 16 -46 10 16 -10 16;kP -13 16 13 16 13 20 -13 20;bP -8 20 8 20 8 34 -8 34;"
     "kP -11 34 11 34 0 46;sL 14 28 46 38;sL 14 26 46 18;sL -14 28 -46 38;sL -14 26 -46 18"},
};

} // namespace

int XfnFillSymbolTable(XvcSymbolTable& table)
{
    int added = 0;
    for (const tagEntry& entry : kSymbols) {
        if (table.Find(entry.id)) continue;
        auto definition = std::make_unique<XvcSymbolDef>();
        definition->SetID(entry.id);
        definition->SetGroup(entry.group);
        definition->SetName(entry.name);
        XString error;
        [[maybe_unused]] const int isGood = definition->SetOutline(entry.outline, error);
        assert(isGood);
        definition->CalcRange();
        added += table.Add(entry.id, std::move(definition));
    }
    return added;
}

const XvcSymbolTable& XfnGetStandardSymbols()
{
    static const std::unique_ptr<const XvcSymbolTable> table = [] {
        auto made = std::make_unique<XvcSymbolTable>();
        XfnFillSymbolTable(*made);
        return made;
    }();
    return *table;
}

const XString& XfnGetPlaceholderOutline()
{
    static const XString outline(
        "sP -50 -50 50 -50 50 50 -50 50;sL -50 -50 50 50;sL -50 50 50 -50");
    return outline;
}
