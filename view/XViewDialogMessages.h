#pragma once

/// What the windows that stand above a view send to it: plain messages without parameters, answered
/// with 0. 1329, 1330, 1332 and 1333 belong to windows that tell a host.
enum XViewDialogMessage : unsigned {
    kMsgStretchApply = 1324,
    kMsgStretchCoverageChange = 1325,
    kMsgStretchClose = 1326,
    kMsgPaletteApply = 1327,
    kMsgPaletteClose = 1328,
    kMsgMeasureClose = 1331, ///< the dialog destroys itself
    kMsgThumbViewClose = 1334
};
