#include <gmock/gmock.h>

#include <QGuiApplication>

#include <clocale>

int main(int argc, char** argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    QGuiApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, ""); // the toolkit resets it; a host may set it again
    return RUN_ALL_TESTS();
}
