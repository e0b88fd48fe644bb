#include "host/XLevelBar.h"

XLevelBar::XLevelBar(QWidget* parent)
    : XAnswerBar(parent, "levels", "Pyramid",
                 {{"build", "&Build", static_cast<int>(Answer::Build)},
                  {"notNow", "Not No&w", static_cast<int>(Answer::NotNow)},
                  {"never", "&Never for This File", static_cast<int>(Answer::Never)}})
{}
