#include "foundation/base/XWarp2D.h"
#include "foundation/vector/XSymbolSet.h"
#include "foundation/vector/XvcEMF.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcSymbolDef.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "tests/support/XVectorSamples.h"

#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <set>

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();

// The vertices of all that is recorded, rounded to a thousandth.
std::string Outline(XvcObj& object, const XWarp2D* warp = nullptr)
{
    const auto recording = RecordObject(object, warp);
    std::string text;
    for (const auto& command : recording->GetCommands()) {
        const double* at = recording->GetVertices(command.first);
        for (std::size_t i = 0; i < 2 * command.count; ++i)
            text += std::to_string(std::lround(at[i] * 1000.0)) + " ";
        text += "/ ";
    }
    return text;
}

TEST(VectorSymbols, TheSetThatComesWithTheLibrary)
{
    XvcSymbolTable table;
    table.Add(41, std::make_unique<XvcSymbolDef>()); // a host's own stays
    const int added = XfnFillSymbolTable(table);
    EXPECT_GE(added, 24);
    EXPECT_EQ(table.GetCount(), added + 1);
    EXPECT_EQ(XfnFillSymbolTable(table), 0);

    std::map<std::string, int> groups;
    std::set<std::string> pictures, names;
    for (int id = 1; id <= 100; ++id) {
        auto* definition = static_cast<XvcSymbolDef*>(XfnGetStandardSymbols().Find(id));
        if (!definition) continue;
        SCOPED_TRACE(definition->GetName().GetString());
        EXPECT_EQ(definition->GetID(), id);
        ++groups[definition->GetGroup().GetString()];
        names.insert(definition->GetName().GetString());
        pictures.insert(Outline(*definition));
        const tagXVectorRange& range = definition->GetRange(); // fills its square and stays in it
        EXPECT_GE(range.minX, -0.5);
        EXPECT_LE(range.maxX, 0.5);
        EXPECT_GE(range.minY, -0.5);
        EXPECT_LE(range.maxY, 0.5);
        EXPECT_GT(std::max(range.maxX - range.minX, range.maxY - range.minY), 0.6);
    }
    EXPECT_EQ(names.size(), static_cast<std::size_t>(added + 1));
    EXPECT_EQ(pictures.size(), names.size()); // no two look alike
    EXPECT_EQ(groups.size(), 5u);
}

TEST(VectorSymbols, OutlineTexts)
{
    std::vector<std::pair<const char*, int>> rows = {{"", 0},
                                                     {" ; ;", 0},
                                                     {"sL 0 0 10 10", 1},
                                                     {"sL0,0,10,10; fP 0 0 1 0 0 1;", 2},
                                                     {"kA 0 0 10 90 -360;bE 0 0 10 5;bC 0 0 1", 3}};
    for (const char* refused :
         {"sL 0 0 10", "sL 0 0", "fP 0 0 1 1", "sC 0 0 0", "sC 0 0 nan", "sC 0 0 1 1",
          "sA 0 0 1 0 361", "sL 0 0 1 1e9", "sL 0 0 1 1x", "sQ 0 0", "xL 0 0 1 1", "s"})
        rows.emplace_back(refused, -1);
    for (const auto& [text, parts] : rows) {
        SCOPED_TRACE(text);
        XvcSymbolDef definition;
        XString error;
        ASSERT_TRUE(definition.SetOutline("sC 0 0 1", error));
        EXPECT_EQ(definition.SetOutline(text, error) != 0, parts >= 0);
        EXPECT_EQ(error.IsEmpty() != 0, parts >= 0);
        EXPECT_EQ(definition.GetOutline().GetText(), parts >= 0 ? text : "sC 0 0 1");
        EXPECT_EQ(RecordObject(definition)->GetCommands().size(),
                  static_cast<std::size_t>(parts >= 0 ? parts : 1));
    }
}

TEST(VectorSymbols, PlaceTurnAndScale)
{
    XvcSymbolTable table;
    auto definition = std::make_unique<XvcSymbolDef>();
    XString error;
    ASSERT_TRUE(definition->SetOutline("sL -50 0 50 25", error));
    table.Add(7, std::move(definition));
    const struct
    {
        const char* what;
        std::function<void(XvcSymbol&)> change;
        const char* outline;
    } cases[] = {
        {"about its centre", [](XvcSymbol&) {}, "9500 20000 10500 20250 / "},
        {"an own size on each axis", [](XvcSymbol& s) { s.SetScale(4, 8); },
         "8000 20000 12000 22000 / "},
        {"mirrored", [](XvcSymbol& s) { s.SetScaleX(-1); }, "10500 20000 9500 20250 / "},
        {"turned to the left", [](XvcSymbol& s) { s.SetRotate(90); }, "10000 19500 9750 20500 / "},
        {"carried around", [](XvcSymbol& s) { s.RotateObject(0, 20, 180); },
         "-9500 20000 -10500 19750 / "},
        {"moved by its vertex", [](XvcSymbol& s) { s.MoveVertex(0, 1, 2, 0); },
         "10500 22000 11500 22250 / "},
        {"into a box", [](XvcSymbol& s) { s.Normalize(0, 0, 100, 200); }, "95 100 105 101 / "},
        {"what is no number is ignored",
         [](XvcSymbol& s) {
             s.SetScale(kNan, kXNotSet);
             s.SetRotate(kNan);
             s.RotateObject(kNan);
             s.MoveObject(kNan, 1, 0);
         },
         "9500 20000 10500 20250 / "},
        {"no place", [](XvcSymbol& s) { s.SetCenter(kXNotSet, 1); }, ""},
        {"an empty symbol in it", [](XvcSymbol& s) { s.SetScale(0); },
         "10000 20000 10000 20000 / "},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        XvcSymbol symbol(7, 10, 20);
        symbol.SetSymbolTable(&table);
        row.change(symbol);
        EXPECT_EQ(Outline(symbol), row.outline);
    }
    XvcLayer layer; // keeps what it recorded
    layer.AddTail(new XvcSymbol(7, 10, 20));
    static_cast<XvcSymbol*>(layer.GetHead())->SetSymbolTable(&table);
    const auto count = [&] { return RecordObject(layer)->GetPart(0)->GetVertexCount(); };
    EXPECT_EQ(count(), 2u);
    XvcSymbolDef bent;
    ASSERT_TRUE(bent.SetOutline("sL -50 0 50 25 0 0", error));
    static_cast<XvcSymbolDef&>(*table.Find(7)) = bent;
    EXPECT_EQ(count(), 3u);
    XvcSymbol unknown(9999, 0, 0);
    EXPECT_EQ(unknown.GetDefinition(), nullptr);
    EXPECT_EQ(RecordObject(unknown)->GetCommands().size(), 3u); // a box with a cross
    XvcSymbol lent(1, 0, 0);
    lent.SetSymbolTable(&table); // has no number 1
    EXPECT_EQ(lent.GetDefinition(), XfnGetStandardSymbols().Find(1));

    XvcSymbol turned(1, 10, 20);
    turned.SetScale(10, 2);
    turned.SetRotate(90);
    turned.CalcRange();
    EXPECT_NEAR(turned.GetRange().minX, 9, 1e-12);
    EXPECT_NEAR(turned.GetRange().maxY, 25, 1e-12);
    tagXHitFlag flag;
    EXPECT_TRUE(turned.HitTest({10.1, 20}, 0.2, flag) && flag.kind == tagXHitFlag::kVertex);
    EXPECT_TRUE(turned.HitTest({10.9, 24.9}, 0.2, flag) && flag.kind == tagXHitFlag::kBody);
    EXPECT_FALSE(turned.HitTest({12, 20}, 0.2, flag));
    XWarp2D there = turned.CalcWarpCoeff(0), back = turned.CalcWarpCoeff(1);
    double x = 0.25, y = -0.5;
    there.Warp(x, y);
    back.Warp(x, y);
    EXPECT_NEAR(x, 0.25, 1e-12);
    EXPECT_NEAR(y, -0.5, 1e-12);
    turned.SetScale(0);
    EXPECT_FALSE(turned.CalcWarpCoeff(1).IsValid());
}

TEST(VectorSymbols, SizesOfDrawingsInPixels)
{
    XvcEMF drawing;
    drawing.SetCenter(10, 20);
    drawing.SetWorldPerPixel(0.5);
    drawing.SetSize(8, 4);
    drawing.CalcRange();
    EXPECT_EQ(drawing.GetRange().minX, 8);
    EXPECT_EQ(drawing.GetRange().maxY, 21);
    XString error;
    ASSERT_TRUE(drawing.SetOutline("sL -50 -50 50 50", error));
    EXPECT_EQ(Outline(drawing), "8000 19000 12000 21000 / ");
    drawing.MoveVertex(6, 1, 0, 0);
    EXPECT_EQ(drawing.GetWidth(), 10);
    drawing.SetWorldPerPixel(1); // pixels stay
    EXPECT_EQ(drawing.GetWidth(), 10);
    drawing.SetHeight(1 << 30);
    EXPECT_EQ(drawing.GetHeight(), XvcEMF::kMaxPixels);
    drawing.SetWorldPerPixel(kNan);
    EXPECT_EQ(drawing.GetWorldPerPixel(), 1);
    drawing.SetOriginalSize(30, 20);
    EXPECT_EQ(drawing.GetWidth(), 30);
    EXPECT_EQ(drawing.GetCenter().x, 10.5);
}

TEST(VectorSymbols, ManyAsOne)
{
    XvcMSymbol many;
    many.SetLineColor(0xFF0000FFu);
    many.AddSymbol(1, 0, 0);
    many.AddSymbol(XvcSymbol(2, 10, 0, 3));
    many.AddSymbol(3, kXNotSet, 0);
    many.SetScale(2);
    many.CalcRange();
    EXPECT_EQ(many.GetRange().maxX, 11);
    EXPECT_EQ(many.GetSymbolObjAt(0)->GetLineColor(), 0xFF0000FFu);
    EXPECT_EQ(many.GetSymbolObjAt(2)->GetID(), 3);
    EXPECT_EQ(many.GetSymbolObjAt(3), nullptr);
    EXPECT_EQ(many.ExportToWkt(), "MULTIPOINT Z ((0 0 0), (10 0 3))");
}

} // namespace
