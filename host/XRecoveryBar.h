#pragma once

#include "host/XOfferBar.h"

enum class XRecoveryAnswer { Restore, NotNow, Discard };

/// The bar that offers unsaved edits of a run that crashed; without an answer the next start offers
/// them again.
class XRecoveryBar : public XAnswerBar<XRecoveryAnswer>
{
public:
    using Answer = XRecoveryAnswer;

    explicit XRecoveryBar(QWidget* parent);
};
