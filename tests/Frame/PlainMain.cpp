#include <gmock/gmock.h>

// A test program without an application, like a host without Qt.
int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
