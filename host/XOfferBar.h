#pragma once

#include <QFrame>

#include <functional>
#include <initializer_list>
#include <utility>

class QLabel;

/// A bar above the image with an offer and a button for each answer; an answer hides it. It takes
/// no focus and stops nothing.
class XOfferBar : public QFrame
{
public:
    void Offer(const QString& text, const QString& detail = QString());

protected:
    struct tagChoice
    {
        const char* name; ///< of the button, behind that of the bar
        const char* text;
        int answer;
    };

    XOfferBar(QWidget* parent, const QString& name, const QString& accessibleName,
              std::initializer_list<tagChoice> choices);

    std::function<void(int answer)> m_chosen;

private:
    QLabel* m_text;
};

/// The same with answers of a type of their own.
template <class Answer>
class XAnswerBar : public XOfferBar
{
public:
    void SetAnswered(std::function<void(Answer)> answered)
    {
        m_chosen = [answered = std::move(answered)](int answer) {
            answered(static_cast<Answer>(answer));
        };
    }

protected:
    using XOfferBar::XOfferBar;
};
