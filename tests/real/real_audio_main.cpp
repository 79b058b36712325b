#include "real/jack_server.h"

#include <gtest/gtest.h>

int main(int nArguments, char** ppArguments)
{
    velmora::test::isolateAudioServers();
    ::testing::InitGoogleTest(&nArguments, ppArguments);
    return RUN_ALL_TESTS();
}
