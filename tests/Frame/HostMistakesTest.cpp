// What a host gets that does it wrong, with each of the windows. Every mistake is made in a process of its own, which
// is this program again: it must end by itself, say what it is to say, and answer with the codes that are promised.

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "HostMistakes.h"

extern char **environ;

namespace
{

std::string sProgram;

std::vector<Mistake> Mistakes()
{
    std::vector<Mistake> all;
    for (const auto &some : {ApplicationMistakes(), ThreadMistakes(), LifetimeMistakes(), DeviceMistakes()}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

// In the child.
int Make(const std::string &aMistake, const std::string &aKind)
{
    for (const Mistake &mistake : Mistakes()) {
        if (aMistake != mistake.mName) {
            continue;
        }
        for (const Kind &kind : Kinds()) {
            if (aKind == "all" || aKind == kind.mName) {
                std::fprintf(stderr, "%s\n", kind.mName);
                mistake.mMake(kind);
                if (mistake.mIsForAll) {
                    break;
                }
            }
        }
        return 0;
    }
    return 4;
}

// Runs a child and gives what it says on its error output.
std::string RunChild(std::string aMistake, std::string aKind, bool aMayLeak, int &aStatus)
{
    int output[2] = {};
    EXPECT_EQ(pipe(output), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDERR_FILENO);
    posix_spawn_file_actions_addclose(&actions, output[0]);
    // nobody cleans up after an application that the host took away or put another in the place of
    const char *const sanitizer = getenv("ASAN_OPTIONS");
    std::string options = std::string("ASAN_OPTIONS=") + (sanitizer ? sanitizer : "") + ":detect_leaks=0";
    std::vector<char *> environment;
    for (char **variable = environ; *variable; ++variable) {
        if (!aMayLeak || std::string(*variable).rfind("ASAN_OPTIONS=", 0) != 0) {
            environment.push_back(*variable);
        }
    }
    if (aMayLeak) {
        environment.push_back(options.data());
    }
    environment.push_back(nullptr);
    char option[] = "--mistake";
    char *arguments[] = {sProgram.data(), option, aMistake.data(), aKind.data(), nullptr};
    pid_t child = -1;
    EXPECT_EQ(posix_spawn(&child, sProgram.c_str(), &actions, nullptr, arguments, environment.data()), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    std::string said;
    char buffer[4096];
    for (ssize_t count = 0; (count = read(output[0], buffer, sizeof buffer)) > 0;) {
        said.append(buffer, static_cast<size_t>(count));
    }
    close(output[0]);
    EXPECT_EQ(waitpid(child, &aStatus, 0), child);
    return said;
}

class HostMistakes : public testing::TestWithParam<Mistake>
{
};

}  // namespace

TEST_P(HostMistakes, AreAnsweredAndSurvived)
{
    std::vector<std::string> kinds = {"all"};
    if (GetParam().mIsAlone && !GetParam().mIsForAll) {
        kinds.clear();
        for (const Kind &kind : Kinds()) {
            kinds.emplace_back(kind.mName);
        }
    }
    for (const std::string &kind : kinds) {
        int status = 0;
        const std::string said = RunChild(GetParam().mName, kind, GetParam().mIsAlone, status);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status << "\n" << said;
        const std::string expected = GetParam().mSays;
        if (expected.empty()) {
            EXPECT_EQ(said.find("LxGUI:"), std::string::npos) << said;
        }
        else {
            EXPECT_NE(said.find("LxGUI: "), std::string::npos) << said;
            EXPECT_NE(said.find(expected), std::string::npos) << said;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, HostMistakes, testing::ValuesIn(Mistakes()),
                         [](const testing::TestParamInfo<Mistake> &aInfo) { return std::string(aInfo.param.mName); });

int main(int argc, char **argv)
{
    if (argc == 4 && std::string(argv[1]) == "--mistake") {
        return Make(argv[2], argv[3]);
    }
    sProgram = argv[0];
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
