#pragma once

#include <QDialog>

/// The keys of all commands in two columns, with a box that leaves only the rows with its words.
class XKeyMapDialog : public QDialog
{
public:
    explicit XKeyMapDialog(QWidget* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
