#include "host/XLayerActions.h"

#include "host/XLayerTree.h"
#include "host/XMainActions.h"

#include <QAction>

XLayerActions::XLayerActions(XLayerTree& tree, XMainActions& actions)
    : m_tree(tree), m_layers(tree.GetRasters()), m_actions(actions)
{
    m_actions.Connect("layer.visible", [this] {
        m_tree.SetVisible(m_tree.GetCurrent(), m_actions.Get("layer.visible")->isChecked());
    });
    m_actions.Connect("layer.up", [this] { MoveBy(-1); });
    m_actions.Connect("layer.down", [this] { MoveBy(1); });
    m_actions.Connect("layer.top", [this] { m_tree.Move(m_tree.GetCurrent(), 0); });
    m_actions.Connect("layer.next", [this] { m_tree.SetCurrent(m_tree.GetNeighbour(1)); });
    m_actions.Connect("layer.previous", [this] { m_tree.SetCurrent(m_tree.GetNeighbour(-1)); });
    m_actions.Connect("image.gray", [this] {
        const bool isGray = m_actions.Get("image.gray")->isChecked();
        m_layers.ChangeBands(m_layers.GetCurrent(),
                             [isGray](XBandChoice& choice) { choice.SetColourMode(!isGray); });
    });
    ConnectPreset("image.natural", BandPreset::Natural);
    ConnectPreset("image.falseColour", BandPreset::FalseColour);
    ConnectPreset("image.shortWave", BandPreset::ShortWave);
    m_tree.AddObserver([this](LayerChange change) {
        if (change != LayerChange::Closing) EnableActions();
    });
    EnableActions();
}

void XLayerActions::ConnectPreset(const char* id, BandPreset preset)
{
    m_actions.Connect(id, [this, preset] {
        m_layers.ChangeBands(m_layers.GetCurrent(),
                             [preset](XBandChoice& choice) { choice.ApplyPreset(preset); });
    });
}

void XLayerActions::MoveBy(int step)
{
    const tagXTreeNode node = m_tree.GetCurrent();
    m_tree.Move(node, m_tree.GetSiblingIndex(node) + step);
}

void XLayerActions::EnableLayerMenu()
{
    const tagXTreeNode& node = m_tree.GetCurrent();
    const bool isAny = m_tree.IsNode(node);
    const QString none = "Open a file first";
    m_actions.SetEnabled("layer.visible", isAny, none);
    m_actions.SetChecked("layer.visible", isAny && m_tree.IsVisible(node));
    m_actions.SetEnabled("layer.rename", isAny && !m_tree.IsLocked(node),
                         isAny ? QString("The layer is locked") : none);
    const int place = m_tree.GetSiblingIndex(node);
    const QString top = isAny ? "The current layer is the top one of its kind" : none;
    const QString bottom = isAny ? "The current layer is the lowest one of its kind" : none;
    for (const char* id : {"layer.up", "layer.top"})
        m_actions.SetEnabled(id, isAny && place > 0, top);
    m_actions.SetEnabled("layer.down", isAny && place + 1 < m_tree.GetSiblingCount(node), bottom);
    m_actions.SetEnabled("layer.previous", m_tree.IsNode(m_tree.GetNeighbour(-1)),
                         isAny ? QString("The current layer is the first one") : none);
    m_actions.SetEnabled("layer.next", m_tree.IsNode(m_tree.GetNeighbour(1)),
                         isAny ? QString("The current layer is the last one") : none);
}

void XLayerActions::EnableActions()
{
    EnableLayerMenu();
    const int current = m_layers.GetCurrent();
    const tagXLayer* layer = m_layers.GetAt(current);
    const QString noLayer = "Open an image first";
    const bool canChoose = layer && layer->bands->GetBandCount() > 1;
    m_actions.SetEnabled("image.gray", canChoose, layer ? "The image has a single band" : noLayer);
    m_actions.SetChecked("image.gray", layer && !layer->bands->IsColour());
    const std::pair<const char*, BandPreset> presets[] = {
        {"image.natural", BandPreset::Natural},
        {"image.falseColour", BandPreset::FalseColour},
        {"image.shortWave", BandPreset::ShortWave}};
    for (const auto& [id, preset] : presets)
        m_actions.SetEnabled(id, layer && layer->bands->CanPreset(preset),
                             layer ? "The file names no bands of these wavelengths" : noLayer);
}
