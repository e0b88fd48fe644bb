#pragma once

#include "edit/XCommandManagerBase.h"
#include "foundation/base/XObList.h"
#include "foundation/platform/XMessageWindow.h"
#include "view/XGVMessageManager.h"
#include "view/XGVObjectManager.h"
#include "view/XGVRubberBand.h"
#include "view/XGVSelectedObjs.h"
#include "view/XModeTable.h"
#include "view/XPropButtons.h"
#include "view/XRasterKeeper.h"
#include "view/XToolState.h"
#include "view/XTypingSteps.h"
#include "view/XTypingWatcher.h"
#include "view/XViewBookMark.h"
#include "view/XViewDialogSet.h"
#include "view/XViewFrame.h"
#include "view/XViewInput.h"
#include "view/XViewMapping.h"
#include "view/XViewOverlay.h"
#include "view/XViewReason.h"
#include "view/XViewRenderer.h"
#include "view/XViewReports.h"
#include "view/tools/XToolTarget.h"

#include <QCursor>
#include <QWidget>

#include <atomic>
#include <climits>
#include <memory>

class XDC;
class XDMCompManager;
class XDMComposite;
class XvcLayer;
class XvcPolygon;
class XvcTextBox;

/// The map and image window: a stack of raster composites under vector layers, seen through one
/// mapping between world and window, with the editing state of its user.
///
/// Stages: constructed (no surfaces, no manager yet), created (Create, or the first show, ran
/// OnCreate), destroyed. Everything below but Create and Initialize needs a created view.
///
///     XTQSpaceView* view = new XTQSpaceView(frame);
///     view->Create();
///     view->Initialize(host.GetHWND(), message);
///     view->GetXDMCompManager()->AddXDMComposite(composite);
///     view->UpdateComposites();      // for the first composite: fits the view to it
///     view->InvalidateControl(1);    // for a later one: the view stays where it is
///
/// Pixels are device pixels: (0, 0) is the upper left corner of the window and (width, height) its
/// lower right, so "one to one" is one image pixel a device pixel at any display scale. World y
/// points up. Colours are words with red lowest.
///
/// Owned: composite manager, command manager, inner bases, symbol tables, the dialogs open on it.
/// External bases are lent by the host and must outlive the view or be taken out before.
///
/// Reports to the host are synchronous; a host may open a modal box inside one, and the view then
/// shows its last whole picture. It may also destroy the view inside one, but never inside the two
/// paint reports (41061, 41062), nor in an event loop that it runs there: the toolkit's own paint
/// of the window stands below them on the stack and ends the program. Such a host notes its wish
/// and destroys the view from a message posted to itself, once the report has returned. What a
/// paint report changes and invalidates is drawn at the next turn of the event loop.
///
/// A derived class calls OnDestroy first thing in its own destructor when it overrides anything or
/// owns what its overrides use. A view may go at any moment of its worker's drawing, but for those
/// reports; bands and files that it shows may not: QueCancel, then take them out.
///
/// Threads: user interface only, but for OnPreDraw and Process.
class XAPI XTQSpaceView : public QWidget,
                          public XMessageWindow,
                          public XTypingWatcher,
                          public XPropButtonTarget,
                          private XViewInputTarget,
                          private XToolTarget,
                          private XViewOverlaySteps
{
public:
    explicit XTQSpaceView(QWidget* parent = nullptr);
    ~XTQSpaceView() override;

    /// Makes everything the view needs. A second call changes nothing.
    /// @param parent  null keeps the one that the constructor was given
    /// @return non-zero on success
    int Create(QWidget* parent = nullptr);
    /// Names the window and message that reports go to; none arrives before.
    void Initialize(XHWND hostWindow, unsigned hostMessage);
    static int GetViewCount(); ///< views of the process that are constructed and not destroyed

    // World mapping. Each of the zoom operations repaints and reports.
    void ZoomFit(); ///< fits all composites; without any range, one world unit a pixel
    void ZoomFitRect(double minX, double minY, double maxX, double maxY);
    void ZoomIn();  ///< one full step: half the world length of a pixel
    void ZoomOut(); ///< one full step back
    /// One file pixel of the first composite a device pixel; the centre stays, held within the
    /// range.
    void ZoomOneToOne();
    void ZoomRect(); ///< only sets the mode to 201
    /// Direct access; nothing is repainted until the next invalidation.
    void SetWorldPerPixel(double x, double y) { m_mapping.SetWorldPerPixel(x, y); }
    void SetWorldPerPixelBase(double x, double y) { m_mapping.SetWorldPerPixelBase(x, y); }
    void SetWorldToCenter(double x, double y) { m_mapping.SetWorldToCenter(x, y); }
    /// The world box of the window; mind the order.
    void GetBound(double& minX, double& maxX, double& minY, double& maxY) const;
    /// The extent of the vector bases, the inner and the external ones; minima of 1.7e308 and
    /// maxima of -1.7e308 when there is none. @return 1
    int CalcTotalRange(double& minX, double& minY, double& maxX, double& maxY);
    /// Fits the view when a composite exists.
    /// @return 0 without a composite manager or while its range is not valid
    int UpdateComposites();
    void SetFineZoomStep(double step) { m_fineZoomStep = step; } ///< of the wheel with Ctrl; 0.1
    double GetFineZoomStep() const { return m_fineZoomStep; }

    void SetBookMark(double x, double y, tagXColor color);
    void ClearBookMark();

    // Editing state
    short GetMode() const { return m_messages.GetMode(); }
    /// Also empties the selection and zeroes the working points, but keeps the object under
    /// construction.
    void SetMode(short mode);
    void SetPostMode(short mode) { m_messages.SetPostMode(mode); }
    short GetPostMode() const { return m_messages.GetPostMode(); }
    void SetModeLimit(unsigned short limit) { m_messages.SetModeLimit(limit); }
    unsigned short GetModeLimit() const { return m_messages.GetModeLimit(); }
    XObList* GetSelectedObj() { return m_selection.GetList(); }
    XvcLayer* GetEditLayer() const override { return m_editLayer; }
    void SetEditLayer(XvcLayer* layer); ///< empties the selection; null keeps the layer
    XObList* GetInnBaseList() override { return &m_innerBases; }
    XObList* GetExtBaseList() override { return &m_externalBases; }
    XObList* GetSymbolTableList() { return &m_symbolTables; }
    XDMCompManager* GetXDMCompManager() const { return m_compManager.get(); }
    XCommandManager* GetCommandManager() { return &m_commands; }
    const tagXHitFlag& GetHitFlag() const { return m_tool.hit; } ///< index -1: nothing was hit
    double GetRotationAngle() const { return m_rotationAngle; }  ///< degrees
    /// Minimum x, y, z and maximum x, y, z.
    const double (&GetDefaultRange() const)[6] { return m_defaultRange; }
    /// Styles of new objects, and the object under construction.
    XGVObjectManager& GetObjectManager() override { return m_objects; }
    /// From this many selected objects on they are marked coarsely (XfnRecordManySelected), so that
    /// the marks of a whole layer keep nobody waiting; at first always in full.
    void SetFullMarkCount(int count) { m_fullMarkCount = count; }
    void SetAutoFocus(int isOn) { m_autoFocus = isOn != 0; }
    int GetAutoFocus() const { return m_autoFocus; }

    tagXLineStyle& GetLineStyle() { return m_objects.GetLineStyle(); }
    void SetLineStyle(const tagXLineStyle& style) { m_objects.SetLineStyle(style); }
    tagXFillStyle& GetFillStyle() { return m_objects.GetFillStyle(); }
    void SetFillStyle(const tagXFillStyle& style) { m_objects.SetFillStyle(style); }
    tagXTextStyle& GetTextStyle() { return m_objects.GetTextStyle(); }
    void SetTextStyle(const tagXTextStyle& style) { m_objects.SetTextStyle(style); }
    tagXColor GetXvcForeColor() const { return m_objects.m_foreColor; }
    void SetXvcForeColor(tagXColor color) { m_objects.m_foreColor = color; }
    tagXColor GetXvcBackColor() const { return m_objects.m_backColor; }
    void SetXvcBackColor(tagXColor color) { m_objects.m_backColor = color; }
    tagXColor GetXvcLineColor() const { return m_objects.m_lineColor; }
    void SetXvcLineColor(tagXColor color) { m_objects.m_lineColor = color; }
    /// The back colour too; redraws the main surface at once.
    void SetBackgroundColor(tagXColor color);

    // Edits of the selection; HandleKeyboardMessage has their keys. Those that report tell the host
    // before and after. A gesture in progress is taken back before anything else. Objects of
    // classes that cannot be cloned (XCommandManager::CanClone), and those that lie in no layer,
    // could not be brought back: Delete and Cut leave them where they are, and selected.
    virtual void Delete(); ///< one step of undo
    virtual void Copy();   ///< replaces what the clipboard holds; what cannot be cloned is left out
    /// Adds to what the clipboard holds, then deletes. Nothing is reported, and nothing is
    /// repainted before the next request.
    virtual void Cut();
    /// Puts copies into the edit layer, 10 pixels to the right of the last ones and below, and
    /// selects them. With an empty clipboard it only empties the selection.
    virtual void Paste();
    /// Nothing with limit 4. What came back is selected; steps of layers that are neither in a base
    /// of the view nor the edit layer are forgotten first.
    virtual void Undo();
    virtual void Redo();
    XPtrArray* GetUnDoStack() { return m_commands.GetUndoStack(); } ///< see XCommandManager
    XPtrArray* GetReDoStack() { return m_commands.GetRedoStack(); }
    void StartModify() { m_commands.StartModify(); }
    void EndModify() { m_commands.EndModify(); }
    int RegisterObjBeforeModify(XvcObj* object)
    {
        return m_commands.RegisterObjBeforeModify(object);
    }
    int RegisterObjAfterModify(XvcObj* object) { return m_commands.RegisterObjAfterModify(object); }
    void ClearUndoRedoStack() { m_commands.ClearUndoRedoStack(); }
    /// Makes a step of undo of what is typed into a text box, when its editing ends; off at first,
    /// where typing is no step. Delete, Cut, Undo and Redo then end it before anything else. Such a
    /// step is told by 41079 alone, after the event at hand.
    void SetTypingSteps(int isOn) { m_typing.SetOn(isOn); }
    int EndTyping() { return EndTextEdits(); } ///< of all boxes; non-zero when one was edited
    int HasTyped() const; ///< something was typed into the selected box that will be such a step
    /// To be called before a layer, or a base with its layers, is taken out of the view: nothing of
    /// it is selected any more, its steps are forgotten, and the edit layer becomes another, one
    /// that is seen and not locked if there is one. A dialog that edits an object of it is cancelled.
    void ForgetLayers(XObList& layerOrBase);
    static int GetIndexOfList(const XObList* list, const XObject* object)
    {
        return XCommandManager::GetIndexOfList(list, object);
    }
    /// Adds what lies strictly inside a box (see XfnObjInRect) at the tail of `result`.
    void ObjInRect(XObList* result, const XObList* list, double minX, double minY, double maxX,
                   double maxY) const;
    /// Draws everything anew. A view of this class stays upright: the angle is only counted, and by
    /// the rotate tool (GetRotationAngle).
    /// @param x, y  the centre; 1.7e308: the middle of the view
    virtual void Rotate(double angleDeg, double x, double y);

    // Dialogs. Without a factory bound (XViewDialogFactories) a call does nothing and the question
    // before it answers 0, so that a host can disable its entry.
    int CanShowStretchDlg() const;
    int CanShowColorTable() const;
    int CanShowMeasureDlg() const;
    int CanShowThumbView() const;
    int CanShowMapGridProperty() const;
    virtual void ShowStretchDlg(int show);
    virtual void ShowColorTable(int show);
    virtual void ShowMeasureDlg(int show);
    virtual void ShowThumbView(int show);
    virtual void ShowMapGridProperty(QWidget* parent);
    int IsShowMeasureDlg() const { return m_dialogs.GetMeasure() != nullptr; }
    void ClearMapGrid();
    /// A button at the end of the panel over the picture; the numbers are those of XPropButtons.h.
    void AddPropButton(int id);
    void ShowPropButton(int show);
    // What the buttons do; a derived view may do it in its own way.
    int CanRunPropButton(int id) const override;
    int IsPropButtonOn(int id) const override;
    void RunPropButton(int id) override;
    void RunStretchPreset(int command) override; ///< by EnhanceEx
    int GetLastStretchPreset() const override { return m_lastPreset; }

    /// Sets cut and stretch type, and with the second also the coverage, of all composites that are
    /// shown as rasters (XfnEnhance and XfnEnhanceEx tell which and what), and draws them anew: as
    /// request 19 of a progressive view, or as InvalidateControl(1).
    void Enhance(long cutType, long stretchType);
    void EnhanceEx(int coverage, int cutType, int stretchType);

    /// The values under a device pixel, one a display channel (0 is blue in RGB); kXNoData where
    /// there is none. Real and imaginary part of a complex band in values[0] and values[1].
    /// XPosValue.h tells how each kind of band is read.
    ///
    /// Without a composite to look at, the stack is walked from its bottom, and the first that has
    /// a band is read. A progressive view reads from the bands, past their null values.
    /// @param values     three numbers
    /// @param composite  the one to look at, of this view; null walks the stack
    /// @return 1 when the lookup ran, also when there was nothing to read; 0 where a band does not
    ///         reach (a view that is not progressive says so of complex and filtered bands only), and
    ///         while a pass of a progressive view draws: `values` are then as they were
    int ShowPosValue(int x, int y, double* values, const XDMComposite* composite = nullptr);

    // Progressive drawing: a thread of the view draws it from coarse to fine, and the window shows
    // each picture as it is done; meanwhile the last one, moved or scaled to where the view looks
    // now. Off at first: the window draws itself whenever it is painted.
    int GetProgressiveView() const { return m_renderer.GetWorker().IsProgressive(); }
    void SetProgressiveView(int isOn);
    /// Goes on to the finest level where the plain protocol stops after one coarse picture: at the
    /// first request of all, and whenever the top composite has a single level. Off at first.
    void SetAlwaysRefine(int isOn) { m_renderer.GetWorker().SetAlwaysRefine(isOn); }
    /// Asks for a new picture of what is raised, and stops what draws an older one. Does nothing in
    /// a view that is not progressive, or while the queue is disabled; the flags stay raised then.
    /// @param reason  for traces, see XViewReason; changes nothing
    void Que(int reason);
    /// A barrier: withdraws what waits, stops the drawing, and returns when the worker touches
    /// nothing any more until the next Que. Reports of the worker that wait are dropped. To be
    /// called before composites, bands or files of the view go or change.
    void QueCancel();
    void QueEnable() { m_renderer.GetWorker().QueEnable(); }
    void QueDisable() { m_renderer.GetWorker().QueDisable(); }
    /// Non-zero while a pass is drawn, by the worker or by the view itself: read-outs wait then.
    int IsDrawing() const;
    /// Non-zero from a request to the last picture it leads to: for a busy mark.
    int IsBusy() const;
    /// The worker's thread: serves requests until the view goes.
    static unsigned Process(XTQSpaceView* view);
    /// Draws the pass in hand, on the worker's thread. An override touches nothing of the view.
    virtual void OnPreDraw();

    // Drawing
    /// The mapping of the moment, and the main picture last drawn. In a progressive view that is
    /// another surface than the one of the paint reports, and its pixels may be those of an older
    /// mapping.
    XBackBuffer* GetBackBuffer() { return &m_overlay.GetMainBack(); }
    XVertBuffer* GetVertexBuffer() { return &m_overlay.GetVertex(XViewBuffer::MainVertex); }
    XViewOverlay& GetOverlay() { return m_overlay; } ///< to raise update flags
    /// @param all  non-zero: everything but the measure recording is made anew
    void InvalidateControl(int all);
    /// Brings everything whose update flag is raised up to date and shows it on a device just as
    /// in the window: the main surface as it is, the overlay laid over it. For the window's paint,
    /// for printing and for thumbnails; the picture is as large as the window, and its upper left
    /// corner is the device's.
    ///
    /// While the view draws already (inside a paint report) it updates nothing and shows the last
    /// whole picture. So does a progressive view at any time, moved or scaled to where it looks.
    /// @param dc  null, or without an image: only the updates run
    virtual void OnDraw(XDC* dc);
    void UpdateVertBuffer() override;
    void UpdateVertBufferTemp() override;
    void UpdateVertBufferMeasure() override;
    void UpdateVertBufferBookMark() override;
    /// Draws the main surface whatever its flag says, on the calling thread; a progressive view
    /// stops its worker first and shows the result, coarse where the worker had not come to the
    /// level that the zoom needs; then the flag is raised again, and the next Que refines. Inside a
    /// paint report it only raises the flag.
    void UpdateBackBuffer() override;
    void UpdateBackBufferTemp() override;
    /// Makes of `polygon` the square that marks a control location: 3 pixels to each side, at
    /// height 0. The squares of selected objects follow the table of XSelectionMarks.h.
    void MakeCtrlPoint(const tagXVector3& vector, XvcPolygon& polygon) const;

    // Input, in device pixels of the view; callable by tests and hosts. Every message of the
    // pointer and the keys comes by here first, then the On... operation below that fits sees it.
    /// Runs HandleMessage, whatever it answers, on a message addressed to this view.
    /// @return 1 when the view has gone meanwhile, and 0. An override that answers non-zero keeps
    ///         the message from the On... operations
    int PreTranslateMessage(XHWND window, unsigned message, XWPARAM wParam,
                            XLPARAM lParam) override;
    /// Sorts a message: those of the pointer go to HandleMouseMessage, a key that goes down to
    /// HandleKeyboardMessage. With mode limit bit 1 the view swallows what comes while Ctrl is down
    /// or has the Delete key as its first parameter.
    /// @return 1 for a move, a double click, the wheel, a key and what was swallowed; 0 for presses
    ///         and releases of a button and for every other number
    virtual int HandleMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam);
    /// Calls the operation below that the mode selects (XfnModeTable); a mode without one has no
    /// tool. Then, whatever the mode, sends message 32 to the view, so that the cursor follows.
    virtual void HandleMouseMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam);
    /// The tools, in any mode: the class X...Tool says what each does.
    virtual void HandleMouseNoneMessage(XHWND window, unsigned message, XWPARAM wParam,
                                        XLPARAM lParam);
    virtual void HandleMouseSelectMessage(XHWND window, unsigned message, XWPARAM wParam,
                                          XLPARAM lParam);
    virtual void HandleMousePointMessage(XHWND window, unsigned message, XWPARAM wParam,
                                         XLPARAM lParam);
    virtual void HandleMouseLineMessage(XHWND window, unsigned message, XWPARAM wParam,
                                        XLPARAM lParam);
    virtual void HandleMousePolylineMessage(XHWND window, unsigned message, XWPARAM wParam,
                                            XLPARAM lParam);
    virtual void HandleMouseCurveMessage(XHWND window, unsigned message, XWPARAM wParam,
                                         XLPARAM lParam);
    virtual void HandleMouseRectangleMessage(XHWND window, unsigned message, XWPARAM wParam,
                                             XLPARAM lParam);
    virtual void HandleMouseEllipseMessage(XHWND window, unsigned message, XWPARAM wParam,
                                           XLPARAM lParam);
    virtual void HandleMousePolygonMessage(XHWND window, unsigned message, XWPARAM wParam,
                                           XLPARAM lParam);
    virtual void HandleMouseTextMessage(XHWND window, unsigned message, XWPARAM wParam,
                                        XLPARAM lParam);
    virtual void HandleMouseBitmapMessage(XHWND window, unsigned message, XWPARAM wParam,
                                          XLPARAM lParam);
    virtual void HandleMouseTextBoxMessage(XHWND window, unsigned message, XWPARAM wParam,
                                           XLPARAM lParam);
    virtual void HandleMouseBalloonMessage(XHWND window, unsigned message, XWPARAM wParam,
                                           XLPARAM lParam);
    virtual void HandleMouseArrowMessage(XHWND window, unsigned message, XWPARAM wParam,
                                         XLPARAM lParam);
    virtual void HandleMouseZoomRectMessage(XHWND window, unsigned message, XWPARAM wParam,
                                            XLPARAM lParam);
    virtual void HandleMouseRotateMessage(XHWND window, unsigned message, XWPARAM wParam,
                                          XLPARAM lParam);
    /// Does nothing, and no mode leads here.
    virtual void HandleMouseMapGridMessage(XHWND, unsigned, XWPARAM, XLPARAM) {}
    /// A key went down. Ctrl with C, V, X, Z, Y: Copy, Paste, Cut, Undo, Redo; Delete.
    /// While Escape is down, whichever key this is: ends the editing of the one text box that is
    /// selected; else deletes the object under construction, sets the mode field to the post mode,
    /// repaints and reports 41107.
    virtual void HandleKeyboardMessage(XHWND window, unsigned message, XWPARAM wParam,
                                       XLPARAM lParam);
    void OnLButtonDown(unsigned flags, int x, int y) override;
    void OnLButtonUp(unsigned flags, int x, int y) override;
    void OnLButtonDblClk(unsigned flags, int x, int y) override;
    void OnRButtonDown(unsigned flags, int x, int y) override;
    void OnRButtonUp(unsigned flags, int x, int y) override;
    void OnRButtonDblClk(unsigned flags, int x, int y) override;
    void OnMouseMove(unsigned flags, int x, int y) override;
    /// @param delta    multiples of 120; negative zooms in, unless the user's setting inverts it
    /// @param screenX  device pixels of the screen
    int OnMouseWheel(unsigned flags, int delta, int screenX, int screenY) override;
    void OnKeyDown(unsigned character, unsigned repeat, unsigned flags) override;
    void OnKeyUp(unsigned character, unsigned repeat, unsigned flags) override;
    /// Shows the cursor of the moment; message 32 comes here, after every message of the pointer.
    /// A cursor that someone else gave the view lasts until then.
    /// @return 0 when the mode leaves the choice to the default, which is the parent's cursor
    int OnSetCursor() override;

    XLRESULT OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam) override;
    // What the windows that stand above the view tell it; each answers 0.
    virtual XLRESULT OnStretchApplyMessage(XWPARAM wParam, XLPARAM lParam);          ///< 1324
    virtual XLRESULT OnStretchCoverageChangeMessage(XWPARAM wParam, XLPARAM lParam); ///< 1325
    virtual XLRESULT OnStretchCloseMessage(XWPARAM wParam, XLPARAM lParam);          ///< 1326
    virtual XLRESULT OnPaletteApplyMessage(XWPARAM wParam, XLPARAM lParam);          ///< 1327
    virtual XLRESULT OnPaletteCloseMessage(XWPARAM wParam, XLPARAM lParam);          ///< 1328
    virtual XLRESULT OnMeasureCloseMessage(XWPARAM wParam, XLPARAM lParam);          ///< 1331
    virtual XLRESULT OnThumbViewCloseMessage(XWPARAM wParam, XLPARAM lParam);        ///< 1334

protected:
    /// Run once by Create. An override calls this first. @return 0, or -1 on failure
    virtual int OnCreate();
    virtual void OnInitialUpdate();
    virtual void OnSize(int width, int height);
    /// The end of the view's life: stops drawing and lets the window handle die, so that no message
    /// reaches the view any more. A second call does nothing. The destructor runs it, too late for
    /// a derived class, whose part has gone by then: one that needs it calls it first in its own.
    void OnDestroy();

    /// The view became busy, or has come to rest with its newest picture. User interface thread.
    virtual void OnBusyChanged(int /*isBusy*/) {}

    /// Which object a press of the selection tool means; see XToolTarget. A host's view may prefer
    /// another one, of the bases of this view.
    XvcObj* FindObject(double worldX, double worldY, double tolerance, tagXHitFlag& hit) override
    {
        return XToolTarget::FindObject(worldX, worldY, tolerance, hit);
    }

    /// The picture of what the tool of mode 109 draws; see XToolTarget. A host's view may ask in its
    /// own way.
    int ChoosePicture(XvcBitmap& picture) override { return XToolTarget::ChoosePicture(picture); }

    using Reason = XViewReason;
    /// The one place that asks for a new picture.
    void Repaint(Reason reason);

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    // what the main surface shows of the recordings, from bottom to top
    static constexpr XViewBuffer kReplayed[] = {XViewBuffer::MainVertex, XViewBuffer::Measure,
                                                XViewBuffer::BookMark};

    XHWND GetInputWindow() const override { return GetHWND(); }
    double GetPixelRatio() const override { return devicePixelRatioF(); }
    QPoint GetScreenOrigin() const override;
    void PanBy(int dx, int dy) override;
    void PanByPart(int partsX, int partsY) override;
    void ZoomByKey(int in) override;
    void ZoomByPinch(int x, int y, double step) override;

    tagXToolState& GetToolState() override { return m_tool; }
    void OnTypingBegun(XvcTextBox& box) override { m_typing.Begin(box); }
    void OnTypingEnded(XvcTextBox& box) override;
    void OnTypingGone(const XvcTextBox* box) override { m_typing.Forget(box); }
    void EndTypingStep();

    XGVMessageManager& GetMessageManager() override { return m_messages; }
    XGVSelectedObjs& GetSelection() override { return m_selection; }
    XViewMapping& GetViewMapping() override { return m_mapping; }
    XGVRubberBand& GetRubberBand() override { return m_rubberBand; }
    void UseEditLayer(XvcLayer* layer) override
    {
        if (layer) m_editLayer = layer;
    }
    XCommandManager& GetCommands() override { return m_commands; }
    XHWND GetOwnerWindow() const override { return GetHWND(); }
    void RotateBy(double angleDeg) override;
    void RaiseFlags(std::initializer_list<XViewBuffer> buffers) override;
    void ShowMoved(XViewReason reason) override;
    XRasterKeeper::tagState GetRasterState() const
    {
        return {m_rasterNumber, m_objects.m_backColor};
    }
    void RepaintFor(XViewReason reason) override { Repaint(reason); }
    void RubberBandChanged() override;
    void Report(XViewReport code, const void* parameter) override;

    QSize GetClientPixels() const;
    void FollowClientSize();
    int IsUpdating() const { return m_isUpdating || m_isDrawingBack; }
    int StartWorker();
    std::shared_ptr<XRenderScene> RecordScene();
    void AdoptPicture();
    std::shared_ptr<tagXViewPicture> MakeOwnPicture();
    void SetPicture(const std::shared_ptr<const tagXViewPicture>& picture);
    void PublishOwn();
    void ShowPicture(XDC& dc) const;
    std::vector<int> GetDirectLevels(const std::vector<XDMComposite*>& stack,
                                     const tagXWorldBox& box, int& isFinest);
    void TellBusy();
    int OnRendererMessage(unsigned message);
    int UpdatePicture();
    int DrawMainBack();
    void DropCurrentObject();
    void EditSelection(void (XCommandManager::*edit)(XObList*));
    void Replay(XPtrArray& stack, XViewReport before, XViewReport after,
                void (XCommandManager::*replay)(XObList*));
    XvcTextBox* GetOnlyTextBox() const;
    int EndTextEdits();
    void EndTypingBeside();
    void PlaceTextEditors();
    void RaiseMapping();
    void ReportMouse(XViewReport code, unsigned flags, int x, int y, int delta = 0);
    int ReportPaint(XViewReport code, unsigned timeoutMs);
    void TakeFocusAt(int x, int y);
    void PickStretchLimits(int x, int y);

    XGVMessageManager m_messages;
    XGVSelectedObjs m_selection;
    XGVObjectManager m_objects;
    XViewReports m_reports;
    XViewOverlay m_overlay;
    XViewMapping m_mapping;
    XViewBookMark m_bookMark;
    XViewFrame m_frame;
    XRasterKeeper m_rasters;          // while something is moved over them in a direct view
    std::uint64_t m_rasterNumber = 0; // rises with every drawing that makes them anew
    int m_recordMs = 0;               // what the last steps of a move took
    int m_moveMs = 0;
    bool m_isMoveAwaited = false; // the layers follow the marks a little later
    XViewInput m_input;
    XViewDialogSet m_dialogs;
    tagXToolState m_tool;
    XToolSet m_tools;
    XGVRubberBand m_rubberBand;
    QRegion m_paintedBand; // as the last change left it
    XObList m_innerBases{10};
    XObList m_externalBases{10};
    XObList m_symbolTables{10};
    std::unique_ptr<XDMCompManager> m_compManager;
    XvcLayer* m_editLayer = nullptr; // lives in its base
    XCommandManagerBase m_commands;  // its clones need no layer to go
    XTypingSteps m_typing{m_commands};
    bool m_isTypingTold = true;
    double m_fineZoomStep = 0.1;
    double m_rotationAngle = 0.0; // degrees
    double m_defaultRange[6] = {0, 0, 0, 100, 100, 0};
    std::atomic<int> m_cancel{0}; // stops a composite in mid-draw
    QSize m_clientSize;           // as last followed, in device pixels
    int m_autoFocus = 1;
    int m_fullMarkCount = INT_MAX;
    int m_lastPreset = 0;
    bool m_isCreated = false;
    bool m_isUpdating = false;    // a paint that strikes now shows the last frame
    bool m_isDrawingBack = false; // and so does one within UpdateBackBuffer
    bool m_isPaintNested = false; // one did strike
    QCursor m_cursor;             // the one last made,
    int m_cursorKey = -2;         // and for what
    XBufferMapping m_queuedAt;    // of the last request
    std::shared_ptr<const tagXViewPicture> m_picture; // of a progressive view
    bool m_isBusyTold = false;
    XViewRenderer m_renderer; // its thread ends before anything above goes
};

/// The view that extended views derive from.
using XTQSpaceViewBase = XTQSpaceView;
