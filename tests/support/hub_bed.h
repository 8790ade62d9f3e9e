#pragma once

#include "support/test_session.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {

inline constexpr std::int32_t CHANNEL = FIRST_ID; ///< the first one, on slot 0
inline constexpr std::int32_t NOBODY = FIRST_ID + 40;
inline constexpr double NAN_ARG = std::numeric_limits<double>::quiet_NaN();

/// A loaded session to which messages are sent, with what it tells and sounds since Fresh.
class Hub_Bed : public testing::Test {
protected:
    Hub_Bed() {
        session.events.Subscribe([this](int msg, std::int32_t param, const std::string& text) {
            told.push_back({msg, param, text});
        });
        Fresh();
    }
    void Fresh() {
        told.clear();
        test.sound.posted.clear();
        test.sound.effectsSet.clear();
        session.project.Modified = false;
    }
    template <typename... Arg>
    void Send(int msg, Arg&&... arg) {
        session.hub->Message(this, msg, std::forward<Arg>(arg)...);
    }
    std::vector<int> Told_Numbers() const {
        std::vector<int> numbers;
        for (const auto& notice : told)
            numbers.push_back(notice.msg);
        return numbers;
    }

    struct Notice {
        int msg;
        std::int32_t param;
        std::string text;
    };
    Test_Session test;
    Session& session = test.Load();
    ChannelClass& store = session.channels->Store(0);
    std::vector<Notice> told;
};

} // namespace tonvex
