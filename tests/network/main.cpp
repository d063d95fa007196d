// The tests run beside the server, which gives its ports: see server.py.
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

int main(int count, char** words)
{
    testing::InitGoogleTest(&count, words);
    if (!std::getenv("VHRT_HTTP_PORT")) {
        std::fprintf(stderr, "no server: run this through tests/network/server.py\n");
        return 2;
    }
    return RUN_ALL_TESTS();
}
