#pragma once

/// The public headers that a host starts from; each class's own header is its manual.

#include "wnd/XViewDialogBinding.h"

#include "enhance/XPaletteDlg.h"

#include "dialogs/XQtPromptsDialog.h"

#include "view/XTQSpaceView.h"
#include "view/XViewDialogs.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDefaultDisplay.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"

#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcSymbolTable.h"

#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XSpatialReference.h"

#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"

#include "foundation/platform/XMessageWindow.h"
#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XUserSettings.h"
#include "foundation/platform/XWindowMessages.h"

#include "foundation/base/XSentinels.h"
#include "foundation/base/XString.h"
