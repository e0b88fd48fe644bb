#pragma once

#include "vecprop/XNumberWidget.h"

#include <QWidget>

class QComboBox;

/// A size and its unit: world units (0) or pixels (1).
class XAPI XLengthWidget : public QWidget
{
public:
    explicit XLengthWidget(const QString& name, QWidget* parent = nullptr); ///< for screen readers

    XNumberWidget& GetNumber() { return *m_number; }
    QComboBox& GetUnit() { return *m_unit; }
    void SetUnitHandler(std::function<void(int isPixels)> handler);
    void SetUnitNames(const QString& world, const QString& pixels);
    void ShowLength(const QString& text, bool isMixed, int isPixels, const QString& whenEmpty = {});

private:
    XNumberWidget* m_number;
    QComboBox* m_unit;
};
