#include "host/XBandLabels.h"

#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace {

QString WavelengthText(double nm)
{
    if (nm > 10000.0) return QString::number(nm / 1000.0, 'f', 2) + " um";
    const bool isWhole = std::fabs(nm - std::round(nm)) < 0.05;
    return QString::number(nm, 'f', isWhole ? 0 : 1) + " nm";
}

int NearestBand(double nm, const std::vector<tagXBandLabel>& labels)
{
    int best = -1;
    double bestGap = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (!(labels[i].wavelengthNm > 0)) continue;
        const double gap = std::fabs(labels[i].wavelengthNm - nm);
        if (gap < bestGap) {
            bestGap = gap;
            best = static_cast<int>(i);
        }
    }
    return best;
}

} // namespace

QString XfnBandLabelText(int index, const tagXBandLabel& label)
{
    QString text = QString::number(index + 1);
    const QString name = label.name.trimmed();
    if (!name.isEmpty()) text += " - " + name;
    if (label.wavelengthNm > 0) {
        const QString wavelength = WavelengthText(label.wavelengthNm);
        // many files name a band by its wavelength: do not say it twice
        if (name.isEmpty())
            text += " - " + wavelength;
        else if (!name.contains(QString::number(std::floor(label.wavelengthNm), 'f', 0)))
            text += ", " + wavelength;
    }
    return text;
}

int XfnFindBand(const QString& text, const std::vector<tagXBandLabel>& labels)
{
    const QString wanted = text.trimmed();
    const int count = static_cast<int>(labels.size());
    for (int i = 0; i < count; ++i)
        if (wanted == XfnBandLabelText(i, labels[static_cast<std::size_t>(i)])) return i;
    bool isNumber = false;
    const int number = wanted.toInt(&isNumber);
    if (isNumber) return number >= 1 && number <= count ? number - 1 : -1;
    static const QRegularExpression pattern(
        QString("^(\\d+(?:[.,]\\d*)?)\\s*(nm|um|%1m|%2m)$").arg(QChar(0x00B5)).arg(QChar(0x03BC)));
    const QRegularExpressionMatch match = pattern.match(wanted);
    if (match.hasMatch()) {
        const double value = match.captured(1).replace(',', '.').toDouble();
        return NearestBand(match.captured(2) == "nm" ? value : value * 1000.0, labels);
    }
    if (wanted.isEmpty()) return -1;
    for (int i = 0; i < count; ++i)
        if (wanted.compare(labels[static_cast<std::size_t>(i)].name.trimmed(),
                           Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

bool XfnPresetBands(BandPreset preset, const std::vector<tagXBandLabel>& labels, int (&rgb)[3])
{
    struct tagXWanted
    {
        double nm;
        double tolerance;
    };
    static const tagXWanted wanted[3][3] = {
        {{660, 60}, {550, 60}, {470, 60}},
        {{840, 60}, {660, 60}, {550, 60}},
        {{1650, 150}, {840, 60}, {660, 60}},
    };
    int found[3] = {-1, -1, -1};
    for (int i = 0; i < 3; ++i) {
        const tagXWanted& want = wanted[static_cast<int>(preset)][i];
        found[i] = NearestBand(want.nm, labels);
        if (found[i] < 0) return false;
        const double centre = labels[static_cast<std::size_t>(found[i])].wavelengthNm;
        if (std::fabs(centre - want.nm) > want.tolerance) return false;
    }
    if (found[0] == found[1] || found[1] == found[2] || found[0] == found[2]) return false;
    for (int i = 0; i < 3; ++i)
        rgb[i] = found[i];
    return true;
}
