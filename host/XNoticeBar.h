#pragma once

#include <QFrame>
#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

class QLabel;

/// The bar above the image for what went wrong with a file that is shown. It takes no focus and stops
/// nothing; it stands until it is dismissed or the files it is about are closed. Of many lines the
/// first ones show, and the tool tip has them all.
class XNoticeBar : public QFrame
{
public:
    static constexpr int kMostLines = 5;

    explicit XNoticeBar(QWidget* parent);

    /// Adds a line about a file. A file has one line in all, even after that was dismissed.
    void Tell(const QString& path, const QString& text);
    /// Tells of something new about a file, in place of what its line said before.
    void TellAnew(const QString& path, const QString& text);
    /// Forgets the files that are not among these: opened again, they are told of again.
    void KeepOnly(const QStringList& paths);

private:
    void ShowLines();

    QLabel* m_text;
    QList<std::pair<QString, QString>> m_lines; // path and text, empty once dismissed
};
