#include "vecprop/XVertexTableModel.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Write(const XVertexTableModel& model)
{
    return model.Copy(0, model.rowCount() - 1).replace('\t', ' ').replace('\n', ';').toStdString();
}

class XVertexTableModelTest : public ::testing::Test
{
protected:
    XVertexTableModelTest()
    {
        XVertexArray vertices;
        vertices.Add(0.0, 0.0);
        vertices.Add(4.0, 2.0, 6.0);
        model.SetVertices(vertices);
        model.SetRule("vertex", "vertices", 2);
        model.SetChangeHandler([this] { ++changes; });
    }
    XVertexTableModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    int changes = 0;
};

TEST_F(XVertexTableModelTest, RowsComeAndGo)
{
    EXPECT_EQ(model.InsertBehind(0), 1);
    EXPECT_EQ(Write(model), "0 0 0;2 1 3;4 2 6;");
    EXPECT_EQ(model.InsertBehind(2), 3) << "as far on as the last step";
    EXPECT_EQ(Write(model), "0 0 0;2 1 3;4 2 6;6 3 6;");
    EXPECT_EQ(model.InsertBehind(-1), 0);
    model.Remove(1, 3);
    EXPECT_EQ(Write(model), "-2 -1 0;6 3 6;");
    model.Remove(-5, 99);
    EXPECT_STREQ(model.GetError(), "At least 2 vertices are needed.");
    EXPECT_EQ(model.InsertBehind(-1), 0);
    EXPECT_EQ(changes, 6);
}

TEST_F(XVertexTableModelTest, PasteTakesWhatOtherProgramsCopy)
{
    struct Row
    {
        const char* text;
        const char* gives; ///< empty: refused
    };
    const Row rows[] = {
        {"1\t2\t3\n", "1 2 3;"},
        {"1,5\t2,5\r\n3\t4\r\n", "1.5 2.5 0;3 4 0;"},
        {"1,5;2,5;0", "1.5 2.5 0;"},
        {"1.5, 2.5", "1.5 2.5 0;"},
        {"1.5,2.5,3", "1.5 2.5 3;"},
        {"\n\n 7   8 \n", "7 8 0;"},
        {"1 2\n3 x\n", ""},
        {"5", ""},
        {"1 2 3 4", ""},
        {"", ""},
        {"nan 1", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        model.SetVertices({});
        XString error;
        const int count = model.Paste(row.text, -1, error);
        EXPECT_EQ(Write(model), row.gives);
        EXPECT_EQ(count == 0, *row.gives == 0);
        EXPECT_EQ(error.IsEmpty(), *row.gives != 0);
    }
}

TEST_F(XVertexTableModelTest, ARefusedCellKeepsItsTextAndItsRow)
{
    const auto set = [this](int row, int column, const char* text) {
        model.setData(model.index(row, column), text, Qt::EditRole);
    };
    set(1, 0, "4");
    EXPECT_EQ(changes, 0) << "the same text is no change";
    set(1, 0, "4x");
    EXPECT_STREQ(model.GetError(), "Row 2, x: enter a number.");
    model.InsertBehind(0);
    EXPECT_EQ(model.index(2, 0).data(), "4x");
    EXPECT_STREQ(model.GetError(), "Row 3, x: enter a number.");
    set(2, 0, "5,5");
    EXPECT_TRUE(model.GetError().IsEmpty());
    EXPECT_EQ(model.GetVertices().GetAt(2).x, 5.5);
    set(0, 2, "bad");
    model.Remove(0, 0);
    EXPECT_TRUE(model.GetError().IsEmpty()) << "it went with its row";
}

} // namespace
