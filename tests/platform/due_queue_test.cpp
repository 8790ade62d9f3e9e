#include "platform/due_queue.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace tonvex {
namespace {

Sound_Message Numbered(std::int64_t dueNs, std::uint32_t number) {
    Sound_Message message;
    message.dueNs = dueNs;
    message.generation = number;
    return message;
}

TEST(Due_Queue, Gives_Out_By_Due_Moment_And_Equals_As_Posted) {
    Due_Queue queue(64);
    const std::int64_t dues[] = {30, 10, 20, 10, 30, 10, -5, 20};
    for (std::uint32_t i = 0; i < 8; ++i)
        ASSERT_TRUE(queue.Push(Numbered(dues[i], i)));
    EXPECT_EQ(queue.Next(), nullptr) << "nothing is collected yet";
    queue.Collect();
    for (const std::uint32_t expected : {6U, 1U, 3U, 5U, 2U, 7U, 0U, 4U}) {
        ASSERT_NE(queue.Next(), nullptr);
        EXPECT_EQ(queue.Next()->generation, expected);
        queue.Pop();
    }
    EXPECT_TRUE(queue.Empty());
}

TEST(Due_Queue, Drops_And_Counts_What_Finds_No_Room_And_Goes_On) {
    Due_Queue queue(4);
    for (std::uint32_t i = 0; i < 4; ++i)
        EXPECT_TRUE(queue.Push(Numbered(i, i)));
    EXPECT_FALSE(queue.Push(Numbered(9, 9)));
    EXPECT_EQ(queue.Dropped_Count(), 1U);
    queue.Collect(); // the store is full now, the ring empty
    EXPECT_TRUE(queue.Push(Numbered(-1, 100)));
    queue.Collect();
    EXPECT_EQ(queue.Next()->generation, 0U) << "no room in the store: the newest waits in the ring";
    queue.Pop();
    queue.Collect();
    EXPECT_EQ(queue.Next()->generation, 100U);
}

TEST(Due_Queue, Brings_Each_Item_Once_And_In_Order_Across_Threads) {
    constexpr std::uint32_t COUNT = 20000;
    Due_Queue queue(256);
    std::thread sender([&queue] {
        for (std::uint32_t i = 0; i < COUNT;)
            if (queue.Push(Numbered(i, i)))
                ++i;
            else
                std::this_thread::yield();
    });
    for (std::uint32_t expected = 0; expected < COUNT;) {
        queue.Collect();
        for (; queue.Next() != nullptr; queue.Pop(), ++expected)
            ASSERT_EQ(queue.Next()->generation, expected);
        std::this_thread::yield();
    }
    sender.join();
    EXPECT_TRUE(queue.Empty());
}

} // namespace
} // namespace tonvex
