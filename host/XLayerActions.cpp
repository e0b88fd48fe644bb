#include "host/XLayerActions.h"

#include "host/XLayerStack.h"
#include "host/XMainActions.h"

#include <QAction>

XLayerActions::XLayerActions(XLayerStack& layers, XMainActions& actions)
    : m_layers(layers), m_actions(actions)
{
    m_actions.Connect("layer.visible", [this] {
        m_layers.SetVisible(m_layers.GetCurrent(), m_actions.Get("layer.visible")->isChecked());
    });
    m_actions.Connect("layer.up",
                      [this] { m_layers.Move(m_layers.GetCurrent(), m_layers.GetCurrent() - 1); });
    m_actions.Connect("layer.down",
                      [this] { m_layers.Move(m_layers.GetCurrent(), m_layers.GetCurrent() + 1); });
    m_actions.Connect("layer.top", [this] { m_layers.Move(m_layers.GetCurrent(), 0); });
    m_actions.Connect("layer.next", [this] { m_layers.SetCurrent(m_layers.GetCurrent() + 1); });
    m_actions.Connect("layer.previous", [this] { m_layers.SetCurrent(m_layers.GetCurrent() - 1); });
    m_actions.Connect("image.gray", [this] {
        const bool isGray = m_actions.Get("image.gray")->isChecked();
        m_layers.ChangeBands(m_layers.GetCurrent(),
                             [isGray](XBandChoice& choice) { choice.SetColourMode(!isGray); });
    });
    ConnectPreset("image.natural", BandPreset::Natural);
    ConnectPreset("image.falseColour", BandPreset::FalseColour);
    ConnectPreset("image.shortWave", BandPreset::ShortWave);
    m_layers.AddObserver([this](LayerChange) { EnableActions(); });
    EnableActions();
}

void XLayerActions::ConnectPreset(const char* id, BandPreset preset)
{
    m_actions.Connect(id, [this, preset] {
        m_layers.ChangeBands(m_layers.GetCurrent(),
                             [preset](XBandChoice& choice) { choice.ApplyPreset(preset); });
    });
}

void XLayerActions::EnableActions()
{
    const int current = m_layers.GetCurrent();
    const int count = m_layers.GetCount();
    const tagXLayer* layer = m_layers.GetAt(current);
    const QString noLayer = "Open an image first";
    m_actions.SetEnabled("layer.visible", layer, noLayer);
    m_actions.SetChecked("layer.visible", layer && m_layers.IsVisible(current));
    const QString top = layer ? "The current layer is the top one" : noLayer;
    const QString bottom = layer ? "The current layer is the lowest one" : noLayer;
    for (const char* id : {"layer.up", "layer.top", "layer.previous"})
        m_actions.SetEnabled(id, current > 0, top);
    for (const char* id : {"layer.down", "layer.next"})
        m_actions.SetEnabled(id, layer && current + 1 < count, bottom);

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
