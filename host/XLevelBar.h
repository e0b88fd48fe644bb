#pragma once

#include "host/XOfferBar.h"

enum class XLevelAnswer { Build, NotNow, Never };

/// The bar that offers to build a pyramid.
class XLevelBar : public XAnswerBar<XLevelAnswer>
{
public:
    using Answer = XLevelAnswer;

    explicit XLevelBar(QWidget* parent);
};
