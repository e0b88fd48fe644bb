#include "tests/support/TestSettings.h"

#include <gmock/gmock.h>

#include <QApplication>

#include <clocale>

int main(int argc, char** argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    const XTestSettings settings;   // no test reads or writes the user's own settings
    std::setlocale(LC_NUMERIC, ""); // the toolkit resets it; a host may set it again
    return RUN_ALL_TESTS();
}
