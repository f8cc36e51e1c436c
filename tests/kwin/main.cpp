#include "testing/kwin/PrivateKWin.h"

#include <gtest/gtest.h>

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    support::PrivateKWin::becomeOrdinaryUser();
    return RUN_ALL_TESTS();
}
