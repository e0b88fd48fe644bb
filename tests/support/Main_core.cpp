#include <gmock/gmock.h>

#include <clocale>

int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, ""); // as a host does, so that a comma locale is really in force
    ::testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
