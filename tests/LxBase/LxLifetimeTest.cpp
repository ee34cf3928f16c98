#include "LxBase/LxLifetime.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

TEST(LxLifetime, TellsEveryWatcherOnce)
{
    const int object = 0;
    const int other = 0;
    int first = 0;
    int second = 0;
    int others = 0;
    const auto one = LxLifetime::Watch(&object, [&] { ++first; });
    const auto two = LxLifetime::Watch(&object, [&] { ++second; });
    const auto three = LxLifetime::Watch(&other, [&] { ++others; });
    LxLifetime::End(&object);
    LxLifetime::End(&object);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(others, 0);
    LxLifetime::End(&other);
    EXPECT_EQ(others, 1);
    LxLifetime::End(nullptr);
}

TEST(LxLifetime, AWatchThatWasGivenUpIsNotTold)
{
    const int object = 0;
    int told = 0;
    LxLifetime::Watch(&object, [&] { ++told; }).reset();
    LxLifetime::End(&object);
    EXPECT_EQ(told, 0);
}

TEST(LxLifetime, AWatcherMayWatchAndGiveUpWhileItIsTold)
{
    const int object = 0;
    const int next = 0;
    int told = 0;
    std::shared_ptr<void> watch;
    watch = LxLifetime::Watch(&object, [&] {
        ++told;
        watch = LxLifetime::Watch(&next, [&] { told += 10; });
    });
    LxLifetime::End(&object);
    LxLifetime::End(&next);
    EXPECT_EQ(told, 11);
}

TEST(LxLifetime, ThreadsWatchAndEndAtTheSameTime)
{
    const std::vector<int> objects(4);
    std::atomic<int> told{0};
    std::vector<std::thread> threads;
    for (const int &object : objects) {
        threads.emplace_back([&told, &object] {
            for (int i = 0; i < 500; ++i) {
                const auto watch = LxLifetime::Watch(&object, [&told] { ++told; });
                LxLifetime::End(&object);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(told, 2000);
}
