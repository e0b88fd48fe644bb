#pragma once

#include <QFrame>

#include <functional>

class QLabel;

/// The bar above the image that offers to build a pyramid. It takes no focus and stops nothing.
class XLevelBar : public QFrame
{
public:
    enum class Answer { Build, NotNow, Never };

    explicit XLevelBar(QWidget* parent);
    void SetAnswered(std::function<void(Answer)> answered) { m_answered = std::move(answered); }
    void Offer(const QString& text);

private:
    QLabel* m_text;
    std::function<void(Answer)> m_answered;
};
