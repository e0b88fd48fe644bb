#pragma once

#include "host/XBandLabels.h"

class XLayerStack;
class XMainActions;

/// The commands of the Layer and Image menus, on the current layer. Both parts outlive it.
class XLayerActions
{
public:
    XLayerActions(XLayerStack& layers, XMainActions& actions);
    void EnableActions();

private:
    void ConnectPreset(const char* id, BandPreset preset);

    XLayerStack& m_layers;
    XMainActions& m_actions;
};
