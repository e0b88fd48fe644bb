#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"
#include "foundation/vector/XVertexArray.h"

#include <QAbstractTableModel>
#include <QString>

#include <functional>
#include <map>
#include <utility>

/// Vertices as a table to edit: a row a vertex, its x, y and z.
///
/// A cell takes a number as number boxes do. What is no number stays in its cell with a reason until
/// it is mended; the vertex keeps its last coordinate meanwhile. Vertices are copied and pasted as
/// lines of text with a tab between the numbers.
/// Every change that was made is told to the handler. User interface thread only.
class XAPI XVertexTableModel : public QAbstractTableModel
{
public:
    enum Column { kX, kY, kZ, kColumnCount };

    explicit XVertexTableModel(QObject* parent = nullptr);

    void SetVertices(const XVertexArray& vertices);
    const XVertexArray& GetVertices() const { return m_vertices; }
    /// @param noun, plural  what a row is called
    /// @param least         fewer rows are refused
    void SetRule(const char* noun, const char* plural, int least);
    /// Of the numbers shown; a cell that is edited shows all digits, and the tool tip does.
    /// @param places  digits behind the point at most; below 0 (at first): all
    void SetPlaces(int places) { m_places = places; }
    void SetChangeHandler(std::function<void()> handler) { m_handler = std::move(handler); }

    int IsTouched() const { return m_isTouched; }
    /// Says what keeps the vertices from being taken; empty when nothing does.
    XString GetError() const;

    /// A new row behind `row`: halfway to the next, or as far on as the last step went; a first one
    /// at the origin. @return the new row
    int InsertBehind(int row);
    void Remove(int first, int last); ///< both included
    /// One vertex a line: two or three numbers with tabs, semicolons or blanks, or commas, between.
    /// They come behind `row`; -1 puts them first.
    /// @return how many there were; 0 with a sentence in `error`, then nothing has changed
    int Paste(const QString& text, int row, XString& error);
    QString Copy(int first, int last) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    void Changed();
    void ShiftRefused(int row, int count);

    XVertexArray m_vertices;
    std::map<std::pair<int, int>, QString> m_refused; // row and column: what was typed
    std::function<void()> m_handler;
    XString m_noun = "vertex";
    XString m_plural = "vertices";
    int m_least = 0;
    int m_places = -1;
    int m_isTouched = 0;
};
