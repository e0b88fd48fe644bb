#include "host/XRecoveryBar.h"

XRecoveryBar::XRecoveryBar(QWidget* parent)
    : XAnswerBar(parent, "recovery", "Unsaved edits",
                 {{"restore", "&Restore", static_cast<int>(Answer::Restore)},
                  {"notNow", "Not No&w", static_cast<int>(Answer::NotNow)},
                  {"discard", "Dis&card", static_cast<int>(Answer::Discard)}})
{}
