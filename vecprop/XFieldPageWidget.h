#pragma once

#include "foundation/base/XApi.h"
#include "vecprop/XObjectField.h"

#include <QWidget>

#include <functional>

class QHBoxLayout;
class QLabel;
class XObjectEditModel;

/// One page of a dialog's fields: a control for each, the refusals of a row beneath it.
class XAPI XFieldPageWidget : public QWidget
{
public:
    XFieldPageWidget(XObjectEditModel& model, XFieldPage page, QWidget* parent = nullptr);

    int IsEmpty() const { return m_controls.empty(); }
    int HasError() const; ///< a refusal stands on this page
    void FocusFirst();    ///< the first control, its text selected
    void ShowModel();

private:
    struct tagControl
    {
        int index;    // of the field
        QWidget* box; // takes the focus
        std::function<void()> show;
    };
    struct tagRow
    {
        std::vector<int> fields;
        QLabel* error;
    };

    void AddControl(int index);
    tagControl Make(int index);
    tagControl MakeNumber(int index);
    tagControl MakeLength(int index);
    tagControl MakeText(int index);
    tagControl MakeLines(int index);
    tagControl MakeFace(int index);
    tagControl MakeColor(int index);
    tagControl MakeOpacity(int index);
    tagControl MakeChoice(int index);
    tagControl MakeFlag(int index);
    tagControl MakePicture(int index);
    tagControl MakeInfo(int index);
    void ShowExact(int index, QWidget& box); // the tool tip tells digits that the box does not
    int FindOpacity(int colorIndex) const;   // the opacity that goes with a colour, -1 for none

    XObjectEditModel& m_model; // outlives the page
    std::vector<tagControl> m_controls;
    std::vector<tagRow> m_rows;
    QHBoxLayout* m_line = nullptr; // of the row that grows
};
