#pragma once

#include "host/XBandLabels.h"

class XLayerStack;
class XLayerTree;
class XMainActions;

/// The commands of the Layer menu, on the current row of the tree, and of the Image menu, on the
/// current raster. All parts outlive it.
class XLayerActions
{
public:
    XLayerActions(XLayerTree& tree, XMainActions& actions);
    void EnableActions();

private:
    void ConnectPreset(const char* id, BandPreset preset);

    void MoveBy(int step);
    void EnableLayerMenu();

    XLayerTree& m_tree;
    XLayerStack& m_layers;
    XMainActions& m_actions;
};
