#pragma once

#include <QFrame>

#include <functional>

class QLabel;

/// The bar above the image that offers unsaved edits of a run that crashed. It takes no focus and
/// stops nothing; without an answer the next start offers them again.
class XRecoveryBar : public QFrame
{
public:
    enum class Answer { Restore, Discard, NotNow };

    explicit XRecoveryBar(QWidget* parent);
    void SetAnswered(std::function<void(Answer)> answered) { m_answered = std::move(answered); }
    void Offer(const QString& text, const QString& detail);

private:
    QLabel* m_text;
    std::function<void(Answer)> m_answered;
};
