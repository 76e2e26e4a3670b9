#include "support/ChildProcess.h"
#include "support/HostProgram.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string_view>

// The program runs under a desktop shell that passes on neither its output nor its exit status: --log=FILE
// takes the output, and the closing line says that the run came to its end.
int main(int count, char** arguments) {
    if (support::RunAsChild(count, arguments))
        return 0;
    int status = 0;
    if (support::RunAsHostProgram(count, arguments, status))
        return status;
    constexpr std::string_view kLog = "--log=";
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument.starts_with(kLog) && !std::freopen(argument.substr(kLog.size()).data(), "w", stdout))
            return 2;
    }
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    testing::InitGoogleTest(&count, arguments);
    const int result = RUN_ALL_TESTS();
    std::printf("test program ended with %d\n", result);
    return result;
}
