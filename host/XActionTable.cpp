#include "host/XActionTable.h"

#include <QKeySequence>

const std::vector<tagXActionRow>& XfnActionTable()
{
    // clang-format off
    static const std::vector<tagXActionRow> rows = {
        {"file.open", "&Open...", {"Ctrl+O"}, {}, Symbol::Open, "Open raster and vector files; the first one fills the view"},
        {"file.clearRecent", "&Clear List", {}, {}, {}, "Forget the files opened before"},
        {"file.save", "&Save", {"Ctrl+S"}, {}, Symbol::Save, "Save the current vector file with its edits; one of another format becomes a file of its own"},
        {"file.close", "&Close Layer", {"Ctrl+W"}, {}, Symbol::Close, "Close the current layer; its file stays as it is"},
        {"file.closeAll", "Close &All", {"Ctrl+Shift+W"}, {}, {}, "Close all layers"},
        {"file.quit", "&Quit", {"Ctrl+Q"}, {}, {}, "Leave the program"},

        {"edit.undo", "&Undo", {"Ctrl+Z"}, {}, Symbol::Undo, "Take back the last change of vector objects"},
        {"edit.redo", "&Redo", {"Ctrl+Shift+Z", "Ctrl+Y"}, {}, Symbol::Redo, "Make the change again that was taken back"},
        {"edit.cut", "Cu&t", {}, {"Ctrl+X"}, {}, "Take the selected objects away and keep them for pasting"},
        {"edit.copy", "Cop&y", {}, {"Ctrl+C"}, {}, "Keep copies of the selected objects for pasting; what is told of one goes to other programs"},
        {"edit.paste", "Pa&ste", {}, {"Ctrl+V"}, {}, "Add what was copied or cut to the current layer"},
        {"edit.duplicate", "&Duplicate", {}, {"Ctrl+D"}, {}, "Copy and paste the selected objects at once"},
        {"edit.delete", "Del&ete", {}, {"Del"}, {}, "Take the selected objects away"},
        {"edit.selectAll", "Select A&ll in Layer", {}, {"Ctrl+A"}, {}, "Select all objects of the current vector layer that are shown"},
        {"edit.properties", "Pr&operties...", {"Alt+Return"}, {"Return", "Enter"}, {}, "Edit colours, styles and places of the selected objects; a double click does so too"},
        {"edit.front", "Bring to &Front", {"Ctrl+Shift+]"}, {}, {}, "Draw the selected objects above all others of their layer"},
        {"edit.forward", "Bring For&ward", {"Ctrl+]"}, {}, {}, "Draw the selected objects one place higher"},
        {"edit.backward", "Send &Backward", {"Ctrl+["}, {}, {}, "Draw the selected objects one place lower"},
        {"edit.back", "Send to Bac&k", {"Ctrl+Shift+["}, {}, {}, "Draw the selected objects below all others of their layer"},

        {"edit.copyPosition", "Copy &Position", {"Ctrl+Shift+C"}, {}, Symbol::CopyPosition, "Copy the position under the pointer, with its coordinate system"},
        {"edit.copyGeographic", "Copy &Geographic Position", {}, {}, {}, "Copy the position under the pointer as latitude and longitude"},

        {"edit.copyAttributes", "Copy &Attributes", {}, {}, Symbol::CopyText, "Copy what is told of the selected object"},
        {"edit.deselect", "Desele&ct", {"Ctrl+Shift+A"}, {}, {}, "Select no object"},

        {"draw.select", "&Select", {}, {"V", "S"}, Symbol::Select, "Select, move and edit vector objects; Esc leads back to looking", true},
        {"draw.point", "&Point", {}, {"P"}, Symbol::Point, "Draw points", true},
        {"draw.line", "&Line", {}, {"L"}, Symbol::Line, "Draw straight lines", true},
        {"draw.arrow", "&Arrow", {}, {"W"}, Symbol::Arrow, "Draw arrows", true},
        {"draw.polyline", "P&olyline", {}, {"O"}, Symbol::Polyline, "Draw lines through points", true},
        {"draw.curve", "&Curve", {}, {"U"}, Symbol::Curve, "Draw smooth lines along points", true},
        {"draw.polygon", "Pol&ygon", {}, {"Y"}, Symbol::Polygon, "Draw areas with corners", true},
        {"draw.rectangle", "&Rectangle", {}, {"R"}, Symbol::Rectangle, "Draw rectangles", true},
        {"draw.ellipse", "&Ellipse", {}, {"E"}, Symbol::Ellipse, "Draw ellipses", true},
        {"draw.text", "&Text", {}, {"X"}, Symbol::Text, "Write a line of text", true},
        {"draw.textBox", "Text &Box", {}, {"B"}, Symbol::TextBox, "Write text in a box", true},
        {"draw.balloon", "Balloo&n", {}, {"K"}, Symbol::Balloon, "Write text in a box with a pointer", true},
        {"draw.picture", "P&icture...", {}, {"I"}, Symbol::Picture, "Place a picture from a file", true},
        {"draw.keep", "&Keep Tool", {}, {}, {}, "Stay with a tool after its object is drawn; Esc leaves it", true},
        {"draw.ask", "Ask &for Properties After Drawing", {}, {}, {}, "Open the properties of each object that was drawn", true},


        {"view.fitAll", "Fit &All", {"Ctrl+0"}, {"3"}, Symbol::FitAll, "Show all layers"},
        {"view.fitLayer", "Fit &Layer", {}, {"2"}, Symbol::FitLayer, "Show the whole current layer"},
        {"view.fitObject", "Fit Selected Ob&ject", {}, {"F"}, {}, "Show the whole selected object"},
        {"view.oneToOne", "One &to One", {"Ctrl+1"}, {"1"}, Symbol::OneToOne, "One image pixel on one screen pixel"},
        {"view.zoomIn", "Zoom &In", {"Ctrl++", "Ctrl+="}, {"+", "="}, Symbol::ZoomIn, "See a smaller area, larger"},
        {"view.zoomOut", "Zoom &Out", {"Ctrl+-"}, {"-"}, Symbol::ZoomOut, "See a larger area, smaller"},
        {"view.zoomRect", "Zoom to &Rectangle", {}, {"Z"}, Symbol::ZoomRect, "Drag a rectangle open to see it as large as the window; Shift and drag does so at once", true},
        {"view.previous", "&Previous View", {"Alt+Left"}, {}, Symbol::Previous, "Go back to the view before"},
        {"view.next", "&Next View", {"Alt+Right"}, {}, Symbol::Next, "Go forward again"},
        {"view.redraw", "Read Again and Re&draw", {"F5"}, {}, {}, "Read all open files again, as they are on the disk now, and draw them"},
        {"view.background", "&Background Colour...", {}, {}, {}, "Choose the colour around the image"},
        {"view.buttons", "Buttons over the I&mage", {}, {}, {}, "Show a small panel of buttons in the corner of the image", true},
        {"view.percent", "Scale in Per &Cent", {}, {}, {}, "Show the scale as image pixels in per cent of screen pixels", true},
        {"view.dms", "Degrees, Minutes, &Seconds", {}, {}, {}, "Show the geographic position in degrees, minutes and seconds", true},
        {"view.wheelIn", "Wheel &Forward Zooms In", {}, {}, {}, "Turn the direction of the mouse wheel", true},
        {"view.overview", "O&verview", {}, {}, {}, "Show the overview window"},
        {"view.progressive", "Dra&w in Steps", {}, {}, {}, "Show large images coarse at once and sharpen them by themselves; the window never waits", true},
        {"view.fullScreen", "F&ull Screen", {"F11"}, {}, Symbol::FullScreen, "Give the whole screen to the window; Esc leaves", true},

        {"layer.visible", "&Visible", {"Ctrl+H"}, {}, {}, "Show or hide the current layer", true},
        {"layer.up", "Move &Up", {"Ctrl+PgUp"}, {}, Symbol::Up, "Move the current layer one place up"},
        {"layer.down", "Move &Down", {"Ctrl+PgDown"}, {}, Symbol::Down, "Move the current layer one place down"},
        {"layer.top", "Move to &Top", {"Ctrl+Home"}, {}, Symbol::Top, "Move the current layer above all others"},
        {"layer.rename", "&Rename", {"F2"}, {}, {}, "Give the current layer another name; its file keeps its own"},
        {"layer.lock", "&Lock", {}, {}, Symbol::Lock, "Keep the current vector layer from being picked and changed", true},
        {"layer.color", "&Colour...", {}, {}, {}, "Choose the colour of the current vector layer"},
        {"layer.table", "&Attribute Table", {"F6"}, {}, {}, "List all objects of the current vector layer with their attributes", true},
        {"layer.save", "&Save As XVC...", {"Ctrl+Shift+S"}, {}, {}, "Keep the current vector file with its names and colours as a file of its own"},
        {"layer.next", "&Next Layer", {"Alt+PgDown"}, {}, {}, "Make the layer below the current one"},
        {"layer.previous", "&Previous Layer", {"Alt+PgUp"}, {}, {}, "Make the layer above the current one"},

        {"image.natural", "&Natural Colours", {}, {}, {}, "Show the bands nearest to red, green and blue light"},
        {"image.falseColour", "&False Colours", {}, {}, {}, "Show near infrared, red and green: vegetation is red"},
        {"image.shortWave", "Short &Wave Colours", {}, {}, {}, "Show short-wave infrared, near infrared and red"},
        {"image.gray", "&Gray", {}, {}, {}, "Show one band of the current layer in gray", true},
        {"image.enhanceAgain", "Enhance Aga&in", {"Ctrl+E"}, {}, Symbol::Enhance, "Show all images as last chosen under Enhance, at first by the central 95 % of what is visible"},
        {"image.defaultStretch", "&Default Stretch", {}, {}, {}, "Show the values of all images as they were shown when opened"},
        {"image.stretch", "&Stretch...", {}, {}, {}, "Choose the stretch of the image"},
        {"image.colorTable", "Colour &Table...", {}, {}, {}, "Colour the topmost gray image by a palette or a table of your own"},

        {"image.pyramid", "Build &Pyramid...", {}, {}, {}, "Make reduced pictures of the current layer, so that it is quick to show at every scale"},
        {"image.statistics", "&Compute Exact Statistics...", {}, {}, {}, "Count every pixel of the current layer and keep the numbers"},

        {"window.reset", "&Reset Layout", {}, {}, {}, "Put panels and toolbars back where they were at first"},

        {"help.keys", "&Key Map", {"F1"}, {}, {}, "List the keys of all commands"},
        {"help.about", "&About tqlview", {}, {}, {}, "Show the version"},
    };
    // clang-format on
    return rows;
}

const std::vector<tagXMenuRow>& XfnMenuTable()
{
    static const std::vector<tagXMenuRow> rows = {
        {"&File",
         {"file.open", "@recent", "-", "file.save", "-", "file.close", "file.closeAll", "-",
          "file.quit"}},
        {"&Edit",
         {"edit.undo",
          "edit.redo",
          "-",
          "edit.cut",
          "edit.copy",
          "edit.paste",
          "edit.duplicate",
          "edit.delete",
          "-",
          "edit.selectAll",
          "edit.deselect",
          "-",
          "edit.properties",
          "edit.front",
          "edit.forward",
          "edit.backward",
          "edit.back",
          "-",
          "edit.copyAttributes",
          "edit.copyPosition",
          "edit.copyGeographic"}},
        {"&View",
         {"view.fitAll",
          "view.fitLayer",
          "view.fitObject",
          "view.oneToOne",
          "view.zoomIn",
          "view.zoomOut",
          "view.zoomRect",
          "view.previous",
          "view.next",
          "-",
          "view.redraw",
          "view.background",
          "-",
          "view.overview",
          "view.buttons",
          "-",
          "view.percent",
          "view.dms",
          "view.wheelIn",
          "view.progressive",
          "-",
          "@panels",
          "view.fullScreen"}},
        {"&Draw",
         {"draw.select", "-", "draw.point", "draw.line", "draw.arrow", "draw.polyline",
          "draw.curve", "draw.polygon", "draw.rectangle", "draw.ellipse", "-", "draw.text",
          "draw.textBox", "draw.balloon", "draw.picture", "-", "draw.keep", "draw.ask"}},
        {"&Layer",
         {"layer.visible", "layer.lock", "layer.rename", "layer.color", "-", "layer.up",
          "layer.down", "layer.top", "-", "layer.previous", "layer.next", "-", "layer.table",
          "layer.save"}},
        {"&Image",
         {"@enhance", "image.enhanceAgain", "image.defaultStretch", "image.stretch",
          "image.colorTable", "-", "image.gray", "-", "image.natural", "image.falseColour",
          "image.shortWave", "-", "image.statistics", "image.pyramid"}},
        {"&Window", {"window.reset"}},
        {"&Help", {"help.keys", "-", "help.about"}},
    };
    return rows;
}

const std::vector<tagXToolBarRow>& XfnToolBarTable()
{
    static const std::vector<tagXToolBarRow> rows = {
        {"Tools",
         "toolbar.main",
         false,
         {"file.open",
          "file.save",
          "-",
          "edit.undo",
          "edit.redo",
          "-",
          "view.fitAll",
          "view.fitLayer",
          "view.oneToOne",
          "view.zoomIn",
          "view.zoomOut",
          "view.zoomRect",
          "-",
          "view.previous",
          "view.next",
          "-",
          "image.enhanceAgain",
          "-",
          "edit.copyPosition",
          "view.fullScreen"}},
        {"Draw",
         "toolbar.draw",
         true,
         {"draw.select", "-", "draw.point", "draw.line", "draw.arrow", "draw.polyline",
          "draw.curve", "draw.polygon", "draw.rectangle", "draw.ellipse", "-", "draw.text",
          "draw.textBox", "draw.balloon", "draw.picture"}},
    };
    return rows;
}

QList<std::pair<QString, QString>> XfnKeyMap()
{
    QList<std::pair<QString, QString>> rows;
    for (const tagXActionRow& row : XfnActionTable()) {
        QStringList keys;
        for (const auto* some : {&row.keys, &row.imageKeys})
            for (const char* key : *some)
                keys.append(QKeySequence(QString(key), QKeySequence::PortableText)
                                .toString(QKeySequence::NativeText));
        if (!keys.isEmpty())
            rows.append({QString(row.text).remove('&').remove("..."), keys.join("   ")});
    }
    constexpr const char* kOfTheImage[][2] = {
        {"Move the view",
         "arrows, Ctrl and arrows by a pixel; right or middle button, Space and drag"},
        {"Zoom", "wheel, with Ctrl finely"},
        {"Zoom to a rectangle", "Shift and drag"},
        {"Select objects", "click; while selecting, with Ctrl one more, drag for a box"},
        {"Select by a box that begins on an object", "Shift and drag, while selecting"},
        {"Select the object below", "click once more at the same place"},
        {"Select the next object, the one before", "Tab, Shift+Tab, while selecting"},
        {"Edit an object", "double click, while selecting"},
        {"Move objects and vertices", "drag, while selecting"},
        {"Move selected objects by a pixel, by ten", "arrows, Shift and arrows, while selecting"},
        {"Insert or remove a vertex", "Ctrl and double click on an edge or vertex"},
        {"End a line or area", "double click, Enter"},
        {"Step back in a line or area", "right click, Backspace, Ctrl+Z"},
        {"Move a layer in the list", "Alt+Up, Alt+Down"},
        {"Leave a tool, stop a job, deselect, leave full screen", "Esc"},
    };
    for (const auto& [what, keys] : kOfTheImage)
        rows.emplaceBack(what, keys);
    return rows;
}
