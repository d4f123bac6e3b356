// The test programs' entry: a crash ends the program instead of asking what to do.
#include <gtest/gtest.h>
#include <windows.h>

int main(int count, char** arguments) {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
