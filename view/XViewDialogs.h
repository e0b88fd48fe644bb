#pragma once

#include "foundation/base/XApi.h"
#include "foundation/platform/XWindowMessages.h"

#include <functional>
#include <memory>

class QWidget;
class XBackBuffer;
class XDMCompManager;
class XDMComposite;
class XSpatialReference;
class XVertBuffer;

/// What a view asks of the windows that it opens and that stand above it, and a factory for each.
///
/// The view owns what a factory hands out and gives it up by Release. It does so from within the
/// window's own message (its close button tells the view, the view lets go), so Release must not
/// destroy at once what is still on the stack.
class XAPI XViewWindow
{
public:
    /// Closes the window, if there is one, and destroys the object now or soon. Sends no message.
    virtual void Release() = 0;
    /// @param owner   the view as a widget; the window lies over it
    /// @param window  the view as a message window: the receiver of Apply and Close
    virtual int Create(QWidget* owner, XHWND window) = 0;
    virtual void Show() = 0;

protected:
    virtual ~XViewWindow() = default;
};

class XAPI XViewStretchDlg : public XViewWindow
{
public:
    virtual void SetXDMCompManager(XDMCompManager* manager) = 0;
    virtual void SetCurXDMComposite(XDMComposite* composite) = 0;
    virtual XDMComposite* GetCurXDMComposite() const = 0;
    virtual void Update() = 0;
    virtual void ClearFirstShow() = 0;
    /// Closes the window; the dialog then sends the close message, on which the view lets it go.
    virtual void DestroyWindow() = 0;
    /// -1 none, 0 the next pixel picked becomes the cut minimum, 1 the cut maximum.
    virtual int GetSelectMinMaxMode() const = 0;
    virtual void SetCutMin(double value, int channel) = 0;
    virtual void SetCutMax(double value, int channel) = 0;
    virtual void UpdateSelectMinMax() = 0;
};

class XAPI XViewPaletteDlg : public XViewWindow
{
public:
    virtual void SetXDMComposite(XDMComposite* composite) = 0;
    virtual XDMComposite* GetXDMComposite() const = 0;
    /// @param dataType  the band's data type code
    virtual void SetValueRange(double low, double high, int dataType) = 0;
    /// 256 bytes a colour and 256 anchor flags, copied.
    virtual void SetColorTable(const unsigned char* red, const unsigned char* green,
                               const unsigned char* blue, const int* anchors) = 0;
    virtual void DestroyWindow() = 0; ///< as in the stretch dialog
};

class XAPI XViewMeasureDlg : public XViewWindow
{
public:
    virtual void SetSR(const XSpatialReference* reference) = 0;
    virtual int IsUnderMeasuring() const = 0;
    virtual void StartMeasure() = 0;
    virtual void StopMeasure() = 0;
    virtual int GetMeasureType() const = 0; ///< 1 distance, 2 area, 3 range
    virtual void AddMeasurePoint(double worldX, double worldY, int replace) = 0;
    virtual void GetFirstMeasurePoint(double& worldX, double& worldY) const = 0; ///< 1.7e308: none
    virtual void ShowMeasure() = 0;
    virtual void Draw(XVertBuffer& buffer, int isMeasuring) = 0;
};

class XAPI XViewThumbDlg : public XViewWindow
{
public:
    virtual void SetXDMCompManager(XDMCompManager* manager) = 0;
    /// The world box that the view shows.
    virtual void SetVisibleBox(double minX, double minY, double maxX, double maxY) = 0;
    /// Places the window's lower right corner `fromRight` and `fromBottom` Qt units from the
    /// owner's.
    virtual void MoveToCorner(int fromRight, int fromBottom) = 0;
};

class XAPI XViewMapGrid : public XViewWindow
{
public:
    virtual int IsShown() const = 0;
    virtual void CalcMapGridProperty(XBackBuffer* buffer) = 0;
    virtual void DrawMapGrid(int isGeographic, XBackBuffer* buffer) = 0;
    /// Runs the grid's property dialog. @return 1 for OK, 2 for Cancel
    virtual int RunPropertyDlg(QWidget* parent) = 0;
};

class XAPI XViewButtonPanel : public XViewWindow
{
public:
    virtual void AddButton(int id) = 0;
    virtual void SetVisible(int visible) = 0;
    virtual int HasWindow() const = 0;
    virtual void Invalidate() = 0; ///< repaint soon
    virtual void OwnerResized() = 0;
};

struct XViewWindowRelease
{
    void operator()(XViewWindow* window) const { window->Release(); }
};

template <class T>
using XViewWindowPtr = std::unique_ptr<T, XViewWindowRelease>;

/// One factory for each window; an empty one means that nothing is bound, and the view then leaves
/// the entry disabled. Bind before the first view is created; user interface thread only.
struct XAPI XViewDialogFactories
{
    std::function<XViewWindowPtr<XViewStretchDlg>()> stretch;
    std::function<XViewWindowPtr<XViewPaletteDlg>()> palette;
    std::function<XViewWindowPtr<XViewMeasureDlg>()> measure;
    std::function<XViewWindowPtr<XViewThumbDlg>()> thumb;
    std::function<XViewWindowPtr<XViewMapGrid>()> mapGrid;
    std::function<XViewWindowPtr<XViewButtonPanel>()> buttonPanel;

    /// The factories of the process.
    static XViewDialogFactories& Get();
};
