#include "platform/due_queue.h"

#include <gtest/gtest.h>

#include <thread>

namespace tonvex {
namespace {

Sound_Message Numbered(std::int64_t dueNs, std::int32_t number) {
    Sound_Message message;
    message.dueNs = dueNs;
    message.font = number;
    return message;
}

TEST(Due_Queue, Gives_Out_By_Due_Moment_And_Equals_As_Posted) {
    Due_Queue queue(64);
    const std::int64_t dues[] = {30, 10, 20, 10, 30, 10, -5, 20};
    for (std::int32_t i = 0; i < 8; ++i)
        ASSERT_TRUE(queue.Push(Numbered(dues[i], i)));
    EXPECT_EQ(queue.Next(), nullptr) << "nothing is collected yet";
    queue.Collect();
    for (const std::int32_t expected : {6, 1, 3, 5, 2, 7, 0, 4}) {
        ASSERT_NE(queue.Next(), nullptr);
        EXPECT_EQ(queue.Next()->font, expected);
        queue.Pop();
    }
    EXPECT_TRUE(queue.Empty());
}

TEST(Due_Queue, Drops_And_Counts_What_Finds_No_Room_And_Goes_On) {
    Due_Queue queue(4);
    for (std::int32_t i = 0; i < 4; ++i)
        EXPECT_TRUE(queue.Push(Numbered(i, i)));
    EXPECT_FALSE(queue.Push(Numbered(9, 9)));
    EXPECT_EQ(queue.Dropped_Count(), 1U);
    queue.Collect(); // the store is full now, the ring empty
    EXPECT_TRUE(queue.Push(Numbered(-1, 100)));
    queue.Collect();
    EXPECT_EQ(queue.Next()->font, 0) << "no room in the store: the newest waits in the ring";
    queue.Pop();
    queue.Collect();
    EXPECT_EQ(queue.Next()->font, 100);
}

TEST(Due_Queue, Takes_Back_What_Was_Pushed_Before_And_Is_Due_From_Then_On) {
    Due_Queue queue(8);
    for (std::int32_t i = 0; i < 4; ++i)
        queue.Push(Numbered(10 * i, i));
    queue.Collect();
    queue.Push(Numbered(25, 4)); // still on its way when the call comes
    EXPECT_TRUE(queue.Push_Take_Back(20));
    queue.Push(Numbered(20, 5));
    queue.Collect();
    for (const std::int32_t expected : {0, 1, 5}) {
        ASSERT_NE(queue.Next(), nullptr);
        EXPECT_EQ(queue.Next()->font, expected);
        queue.Pop();
    }
    EXPECT_TRUE(queue.Empty());
    while (queue.Push(Numbered(0, 0))) {
    }
    EXPECT_FALSE(queue.Push_Take_Back(0)) << "no room for it";
}

TEST(Due_Queue, Brings_Each_Item_Once_And_In_Order_Across_Threads) {
    constexpr std::int32_t COUNT = 20000;
    Due_Queue queue(256);
    std::thread sender([&queue] {
        for (std::int32_t i = 0; i < COUNT;)
            if (queue.Push(Numbered(i, i)))
                ++i;
            else
                std::this_thread::yield();
    });
    for (std::int32_t expected = 0; expected < COUNT;) {
        queue.Collect();
        for (; queue.Next() != nullptr; queue.Pop(), ++expected)
            ASSERT_EQ(queue.Next()->font, expected);
        std::this_thread::yield();
    }
    sender.join();
    EXPECT_TRUE(queue.Empty());
}

} // namespace
} // namespace tonvex
