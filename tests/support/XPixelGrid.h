#pragma once

#include <QImage>

#include <initializer_list>
#include <string>
#include <vector>

/// A picture as text, one letter a pixel: '.' black, 'W' white, 'R' 'G' 'B' 'Y' 'C' 'M' the full
/// colours, '#' mid grey, '?' any other. Lines end with a line feed.
inline std::string XfnPixelGrid(const QImage& image)
{
    std::string text;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            switch (image.pixel(x, y) & 0x00FFFFFFu) {
            case 0x000000:
                text += '.';
                break;
            case 0xFFFFFF:
                text += 'W';
                break;
            case 0xFF0000:
                text += 'R';
                break;
            case 0x00FF00:
                text += 'G';
                break;
            case 0x0000FF:
                text += 'B';
                break;
            case 0xFFFF00:
                text += 'Y';
                break;
            case 0x00FFFF:
                text += 'C';
                break;
            case 0xFF00FF:
                text += 'M';
                break;
            case 0x808080:
                text += '#';
                break;
            default:
                text += '?';
                break;
            }
        }
        text += '\n';
    }
    return text;
}

/// The text of a grid written as rows.
inline std::string XfnRows(std::initializer_list<const char*> rows)
{
    std::string text;
    for (const char* row : rows)
        text = text + row + '\n';
    return text;
}

/// The picture of such a text; letters as above, others black.
inline QImage XfnMakePicture(std::initializer_list<const char*> rows)
{
    const std::vector<std::string> lines(rows.begin(), rows.end());
    QImage image(static_cast<int>(lines[0].size()), static_cast<int>(lines.size()),
                 QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QRgb word = 0xFF000000u;
            switch (lines[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)]) {
            case 'W':
                word = 0xFFFFFFFFu;
                break;
            case 'R':
                word = 0xFFFF0000u;
                break;
            case 'G':
                word = 0xFF00FF00u;
                break;
            case 'B':
                word = 0xFF0000FFu;
                break;
            case 'Y':
                word = 0xFFFFFF00u;
                break;
            case 'C':
                word = 0xFF00FFFFu;
                break;
            case 'M':
                word = 0xFFFF00FFu;
                break;
            case '#':
                word = 0xFF808080u;
                break;
            default:
                break;
            }
            image.setPixel(x, y, word);
        }
    }
    return image;
}
