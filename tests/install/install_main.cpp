// The install tests' main: runs the tests, then removes the shared installation.
#include <gtest/gtest.h>

#include "install_support.h"

namespace {
Installation* shared = nullptr;
}

Installation& installation()
{
    if (!shared)
        shared = new Installation;
    return *shared;
}

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    int status = RUN_ALL_TESTS();
    delete shared;
    return status;
}
