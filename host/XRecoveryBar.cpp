#include "host/XRecoveryBar.h"

XRecoveryBar::XRecoveryBar(QWidget* parent)
    : XAnswerBar(parent, "recovery", "Unsaved edits",
                 {{"restore", "Re&store", static_cast<int>(Answer::Restore)},
                  {"notNow", "Not Now", static_cast<int>(Answer::NotNow)},
                  {"discard", "Disc&ard", static_cast<int>(Answer::Discard)}})
{}
