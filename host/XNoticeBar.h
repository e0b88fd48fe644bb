#pragma once

#include <QFrame>
#include <QList>
#include <QString>
#include <QStringList>

class QLabel;

/// The bar above the image for what went wrong with a file that is shown. It takes no focus and stops
/// nothing; it stands until it is dismissed or the files it is about are closed. Of many lines the
/// first ones show, and the tool tip has them all.
class XNoticeBar : public QFrame
{
public:
    static constexpr int kMostLines = 5;

    /// What a line is about.
    enum class Topic { Reading, Place };

    explicit XNoticeBar(QWidget* parent);

    /// Adds a line about a file. A file has one line a topic, even after that was dismissed.
    void Tell(const QString& path, const QString& text, Topic topic = Topic::Reading);
    /// Tells of something new about a file, in place of what its lines said before.
    void TellAnew(const QString& path, const QString& text);
    /// Forgets the files that are not among these: opened again, they are told of again.
    void KeepOnly(const QStringList& paths);

private:
    void ShowLines();

    QLabel* m_text;
    struct tagLine
    {
        QString path;
        QString text; // empty once dismissed
        Topic topic;
    };
    QList<tagLine> m_lines;
};
