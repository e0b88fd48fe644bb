#pragma once

#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"
#include "view/XViewDialogs.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

/// What the fake windows were told, in order, over all windows of one test.
struct XFakeDialogLog
{
    std::vector<std::string> calls;
    int living = 0;

    int Count(const std::string& call) const
    {
        return static_cast<int>(std::count(calls.begin(), calls.end(), call));
    }
};

/// The part that every fake window shares. Close buttons are played by sending the message.
template <class Interface>
class XFakeWindow : public Interface
{
public:
    XFakeWindow(XFakeDialogLog& log, std::string name) : m_log(log), m_name(std::move(name))
    {
        ++m_log.living;
    }
    ~XFakeWindow() override { --m_log.living; }
    void Release() override
    {
        Note("release");
        delete this;
    }
    int Create(QWidget*, XHWND window) override
    {
        m_window = window;
        Note("create");
        return 1;
    }
    void Show() override { Note("show"); }

protected:
    void Note(const char* call) { m_log.calls.push_back(m_name + " " + call); }

    XFakeDialogLog& m_log;
    std::string m_name;
    XHWND m_window = 0;
};

class XFakeStretchDlg : public XFakeWindow<XViewStretchDlg>
{
public:
    explicit XFakeStretchDlg(XFakeDialogLog& log) : XFakeWindow(log, "stretch") {}
    void SetXDMCompManager(XDMCompManager* manager) override { m_manager = manager; }
    void SetCurXDMComposite(XDMComposite* composite) override { m_composite = composite; }
    XDMComposite* GetCurXDMComposite() const override { return m_composite; }
    void Update() override { Note("update"); }
    void ClearFirstShow() override { Note("clear"); }
    void DestroyWindow() override { Note("destroy"); }
    int GetSelectMinMaxMode() const override { return m_mode; }
    void SetCutMin(double value, int ch) override { m_min[ch] = value; }
    void SetCutMax(double value, int ch) override { m_max[ch] = value; }
    void UpdateSelectMinMax() override { Note("picked"); }

    XDMCompManager* m_manager = nullptr;
    XDMComposite* m_composite = nullptr;
    int m_mode = -1;
    double m_min[3] = {-1, -1, -1};
    double m_max[3] = {-1, -1, -1};
};

class XFakePaletteDlg : public XFakeWindow<XViewPaletteDlg>
{
public:
    explicit XFakePaletteDlg(XFakeDialogLog& log) : XFakeWindow(log, "palette") {}
    void SetXDMComposite(XDMComposite* composite) override { m_composite = composite; }
    XDMComposite* GetXDMComposite() const override { return m_composite; }
    void SetValueRange(double low, double high, int dataType) override
    {
        Note("range");
        m_low = low;
        m_high = high;
        m_dataType = dataType;
    }
    void SetColorTable(const unsigned char* red, const unsigned char* green,
                       const unsigned char* blue, const int* anchors) override
    {
        m_last[0] = red[255];
        m_last[1] = green[255];
        m_last[2] = blue[255];
        m_anchors = static_cast<int>(std::count(anchors, anchors + 256, 1));
    }
    void DestroyWindow() override { Note("destroy"); }

    XDMComposite* m_composite = nullptr;
    double m_low = -1;
    double m_high = -1;
    int m_dataType = 0;
    int m_last[3] = {};
    int m_anchors = -1;
};

class XFakeMeasureDlg : public XFakeWindow<XViewMeasureDlg>
{
public:
    explicit XFakeMeasureDlg(XFakeDialogLog& log) : XFakeWindow(log, "measure") {}
    void SetSR(const XSpatialReference*) override { Note("reference"); }
    int IsUnderMeasuring() const override { return m_running; }
    void StartMeasure() override
    {
        m_points.clear();
        m_running = 1;
    }
    void StopMeasure() override { m_running = 0; }
    int GetMeasureType() const override { return m_type; }
    void AddMeasurePoint(double x, double y, int replace) override
    {
        if (replace && m_points.size() > 1) m_points.pop_back();
        m_points.emplace_back(x, y);
    }
    void GetFirstMeasurePoint(double& x, double& y) const override
    {
        x = m_points.empty() ? 1.7e308 : m_points.front().first;
        y = m_points.empty() ? 1.7e308 : m_points.front().second;
    }
    void ShowMeasure() override { Note("measured"); }
    void Draw(XVertBuffer& buffer, int) override
    {
        Note("draw");
        std::vector<tagXVector3> line;
        for (const auto& [x, y] : m_points)
            line.emplace_back(x, y);
        tagXVertLine style;
        style.colour = 0xFFFF00FFu;
        if (line.size() > 1) buffer.AddPolyline(line.data(), line.size(), style);
    }

    int m_type = 1;
    int m_running = 0;
    std::vector<std::pair<double, double>> m_points;
};

class XFakeThumbDlg : public XFakeWindow<XViewThumbDlg>
{
public:
    explicit XFakeThumbDlg(XFakeDialogLog& log) : XFakeWindow(log, "thumb") {}
    void SetXDMCompManager(XDMCompManager*) override {}
    void SetVisibleBox(double minX, double minY, double maxX, double maxY) override
    {
        const double box[] = {minX, minY, maxX, maxY};
        std::copy_n(box, 4, m_box);
        Note("box");
    }
    void MoveToCorner(int right, int bottom) override
    {
        Note(right == 0 && bottom == 30 ? "corner" : "elsewhere");
    }

    double m_box[4] = {};
};

class XFakeMapGrid : public XFakeWindow<XViewMapGrid>
{
public:
    explicit XFakeMapGrid(XFakeDialogLog& log) : XFakeWindow(log, "grid") {}
    int IsShown() const override { return m_shown; }
    void CalcMapGridProperty(XBackBuffer*) override { Note("calc"); }
    void DrawMapGrid(int, XBackBuffer* buffer) override
    {
        Note("draw");
        buffer->GetImage().setPixel(1, 1, buffer->GetImage().pixel(1, 1) + 16);
    }
    int RunPropertyDlg(QWidget*) override
    {
        Note("run");
        m_shown = 1;
        return 2;
    }

    int m_shown = 0;
};

class XFakeButtonPanel : public XFakeWindow<XViewButtonPanel>
{
public:
    explicit XFakeButtonPanel(XFakeDialogLog& log) : XFakeWindow(log, "panel") {}
    void AddButton(int id) override { Note(id == 24 ? "add" : "add another"); }
    void SetVisible(int visible) override { Note(visible ? "visible" : "hidden"); }
    int HasWindow() const override { return 1; }
    void Invalidate() override { Note("invalidate"); }
    void OwnerResized() override { Note("resized"); }
};
