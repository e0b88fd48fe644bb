#include "host/XCommandLine.h"

#include <QRegularExpression>

#include <cmath>
#include <optional>

namespace {

// Options that the toolkit takes out of the line for itself; those in the first list have a value.
bool IsToolkitOption(const QString& word, bool& hasValue)
{
    static const QStringList withValue = {
        "platform", "platformpluginpath", "platformtheme", "plugin",  "style",       "stylesheet",
        "display",  "qwindowgeometry",    "qwindowicon",   "session", "qwindowtitle"};
    static const QStringList alone = {"reverse", "sync", "nograb", "dograb", "widgetcount"};
    if (word.size() < 2 || word[0] != '-') return false;
    const QString name = word.mid(word.startsWith("--") ? 2 : 1);
    hasValue = withValue.contains(name);
    return hasValue || alone.contains(name) || name.startsWith("style=") ||
           name.startsWith("stylesheet=");
}

bool ReadCount(const QString& text, int most, int& value)
{
    bool isNumber = false;
    const int n = text.toInt(&isNumber);
    if (!isNumber || n < 1 || n > most) return false;
    value = n;
    return true;
}

bool ReadSize(const QString& text, QSize& size)
{
    const QStringList sides = text.split('x');
    int width = 0;
    int height = 0;
    if (sides.size() != 2 || !ReadCount(sides[0], kMaxRenderSide, width) ||
        !ReadCount(sides[1], kMaxRenderSide, height))
        return false;
    if (1LL * width * height > kMaxRenderPixels) return false;
    size = QSize(width, height);
    return true;
}

bool ReadBands(const QString& text, int (&bands)[3])
{
    const QStringList parts = text.split(',');
    int read[3] = {0, 0, 0};
    if (parts.size() != 1 && parts.size() != 3) return false;
    for (int i = 0; i < 3; ++i)
        if (!ReadCount(parts[parts.size() == 1 ? 0 : i], 1 << 20, read[i])) return false;
    std::copy(std::begin(read), std::end(read), std::begin(bands));
    return true;
}

bool ReadExtent(const QString& text, double (&extent)[4])
{
    const QStringList parts = text.split(',');
    if (parts.size() != 4) return false;
    double read[4] = {0, 0, 0, 0};
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        read[i] = parts[i].trimmed().toDouble(&isNumber); // reads the C locale, always
        if (!isNumber || !std::isfinite(read[i])) return false;
    }
    if (!(read[0] < read[2]) || !(read[1] < read[3])) return false;
    std::copy(std::begin(read), std::end(read), std::begin(extent));
    return true;
}

// The words of one command line, taken one after the other.
class XWordReader
{
public:
    explicit XWordReader(const QStringList& words) : m_words(words) {}

    bool Next(QString& word)
    {
        if (m_next >= m_words.size()) return false;
        word = m_words[m_next++];
        return true;
    }

    // The value of "--name=value" or of "--name value".
    bool Value(const QString& attached, bool isAttached, QString& value)
    {
        if (!isAttached) return Next(value);
        value = attached;
        return true;
    }

private:
    const QStringList& m_words;
    int m_next = 0;
};

tagXCommandLine Wrong(const QString& message)
{
    tagXCommandLine line;
    line.mode = CommandMode::Wrong;
    line.message = message;
    return line;
}

// Takes one option with a value; returns what is wrong with it, or nothing.
std::optional<QString> TakeOption(const QString& name, const QString& value, tagXCommandLine& line)
{
    tagXRenderRequest& render = line.render;
    if (name == "--render") {
        if (value.isEmpty()) return "--render needs the name of a picture.";
        line.mode = CommandMode::Render;
        render.output = value;
    } else if (name == "--convert") {
        if (value.isEmpty()) return "--convert needs the name of a raster file.";
        line.convert.input = value;
    } else if (name == "--size") {
        if (!ReadSize(value, render.size))
            return QString("--size %1 is not a size such as 800x600, of at most %2 a side and %3 "
                           "pixels in all.")
                .arg(value)
                .arg(kMaxRenderSide)
                .arg(kMaxRenderPixels);
    } else if (name == "--bands") {
        if (!ReadBands(value, render.bands))
            return QString("--bands %1 is not a band number or three of them, such as 3,2,1.")
                .arg(value);
        render.hasBands = true;
    } else if (name == "--extent") {
        if (!ReadExtent(value, render.extent))
            return QString("--extent %1 is not minx,miny,maxx,maxy with each minimum below its "
                           "maximum.")
                .arg(value);
        render.hasExtent = true;
    } else if (name == "--geometry") {
        if (!XfnParseGeometry(value, line.windowSize, line.windowPos, line.hasWindowPos))
            return QString("--geometry %1 is not a size such as 1200x800 or 1200x800+40+20.")
                .arg(value);
    }
    return std::nullopt;
}

// What only the whole line tells.
tagXCommandLine Finish(tagXCommandLine line, const QString& renderOnly)
{
    if (!line.convert.input.isEmpty()) {
        if (line.mode == CommandMode::Render)
            return Wrong("--convert and --render cannot be asked for together.");
        if (!renderOnly.isEmpty())
            return Wrong(QString("%1 has a meaning only together with --render.").arg(renderOnly));
        if (line.files.size() != 1 || line.files.first().isEmpty())
            return Wrong("--convert needs exactly two files, what to read and what to write.");
        line.mode = CommandMode::Convert;
        line.convert.output = line.files.first();
    } else if (line.mode == CommandMode::Render) {
        if (line.files.size() != 1) return Wrong("--render needs exactly one raster file.");
        line.render.file = line.files.first();
    } else if (!renderOnly.isEmpty()) {
        return Wrong(QString("%1 has a meaning only together with --render.").arg(renderOnly));
    }
    return line;
}

} // namespace

tagXCommandLine XfnParseCommandLine(const QStringList& words)
{
    static const QStringList known = {"--render", "--convert", "--size",
                                      "--bands",  "--extent",  "--geometry"};
    tagXCommandLine line;
    QString renderOnly;
    XWordReader reader(words);
    QString word;
    bool optionsEnded = false;
    std::optional<QString> trouble;
    while (reader.Next(word)) {
        QString value;
        bool hasValue = false;
        if (optionsEnded || !word.startsWith('-') || word == "-") {
            line.files.append(word);
        } else if (word == "--") {
            optionsEnded = true;
        } else if (word == "--help" || word == "-h") {
            line.mode = CommandMode::Help;
            return line;
        } else if (word == "--version" || word == "-v") {
            line.mode = CommandMode::Version;
            return line;
        } else if (IsToolkitOption(word, hasValue)) {
            if (hasValue) reader.Next(value);
        } else {
            const QString name = word.section('=', 0, 0);
            if (!known.contains(name)) {
                if (!trouble) trouble = QString("%1 is not an option of tqlview.").arg(word);
                continue;
            }
            const bool isAttached = word.contains('=');
            if (!reader.Value(word.section('=', 1), isAttached, value)) {
                if (!trouble) trouble = QString("%1 needs a value.").arg(name);
                continue;
            }
            if ((name == "--size" || name == "--bands" || name == "--extent") &&
                renderOnly.isEmpty())
                renderOnly = name;
            const std::optional<QString> wrong = TakeOption(name, value, line);
            if (wrong && !trouble) trouble = wrong;
        }
    }
    // reported last, so that --help is answered however wrong the rest of the line is
    if (trouble) return Wrong(*trouble);
    return Finish(line, renderOnly);
}

bool XfnParseGeometry(const QString& text, QSize& size, QPoint& pos, bool& hasPos)
{
    static const QRegularExpression pattern(
        "^(\\d{1,5})x(\\d{1,5})(?:([+-]\\d{1,5})([+-]\\d{1,5}))?$");
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch()) return false;
    int width = 0;
    int height = 0;
    if (!ReadCount(match.captured(1), 32767, width) || !ReadCount(match.captured(2), 32767, height))
        return false;
    size = QSize(width, height);
    hasPos = !match.captured(3).isEmpty();
    if (hasPos) pos = QPoint(match.captured(3).toInt(), match.captured(4).toInt());
    return true;
}

QString XfnHelpText()
{
    return "Usage: tqlview [OPTION]... [FILE]...\n"
           "       tqlview --render PICTURE [--size WxH] [--bands R,G,B] [--extent X0,Y0,X1,Y1] "
           "FILE\n"
           "       tqlview --convert IN OUT\n"
           "Looks at remote-sensing imagery; with --render draws it into a picture file instead,\n"
           "with --convert writes it as a file of another format.\n"
           "\n"
           "      --geometry WxH[+X+Y]  size and place of the window\n"
           "      --render PICTURE      write PICTURE (png, jpg, bmp) and end; needs no display\n"
           "      --size WxH            size of the picture in pixels\n"
           "      --bands R,G,B         band numbers, counted from 1; a single number is gray\n"
           "      --extent X0,Y0,X1,Y1  area in world units: minimum x, y, maximum x, y\n"
           "      --convert IN OUT      write the raster IN as OUT (xdm, tif, img, ...) and end; "
           "the\n"
           "                            suffix of OUT chooses the format; needs no display\n"
           "  -h, --help                show this text and end\n"
           "  -v, --version             show the version and end\n"
           "\n"
           "Exit status: 0 success, 1 a file could not be read or written, 2 wrong usage.\n";
}
