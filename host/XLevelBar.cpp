#include "host/XLevelBar.h"

XLevelBar::XLevelBar(QWidget* parent)
    : XAnswerBar(parent, "levels", "Pyramid",
                 {{"build", "B&uild", static_cast<int>(Answer::Build)},
                  {"notNow", "No&t Now", static_cast<int>(Answer::NotNow)},
                  {"never", "Never for This File", static_cast<int>(Answer::Never)}})
{}
