#include "app/model/property.hpp"

#include <gtest/gtest.h>

#include <functional>

#include <memory>
#include <string>
#include <vector>

using Corvane::Property;
using Corvane::watch;

TEST(PropertyTest, AWatcherFollowsWhatItReadLastAndNothingElse) {
    Property<bool> chooses(true);
    Property<int> left(1);
    Property<int> right(10);
    int runs = 0;
    std::vector<int> shown;
    const auto watcher = watch(
        [&] {
            ++runs;
            return chooses.value() ? left.value() : right.value();
        },
        [&shown](int value) { shown.push_back(value); });
    right = 11;  // not read yet
    left = 1;    // no change
    EXPECT_EQ(runs, 1);
    left = 2;
    chooses = false;
    left = 3;  // not read any more
    right = 12;
    EXPECT_EQ(runs, 4);
    EXPECT_EQ(shown, (std::vector<int>{1, 2, 11, 12}));
}

// What a page reads of one speaker: many fields, again and again, through two levels.
TEST(PropertyTest, ManyReadsOfManyPropertiesAreFollowedForLong) {
    std::vector<std::unique_ptr<Property<int>>> fields;
    for (int i = 0; i < 40; ++i)
        fields.push_back(std::make_unique<Property<int>>(0));
    int sum = -1;
    const auto watcher = watch(
        [&fields] {
            int total = 0;
            for (int round = 0; round < 3; ++round)
                for (const auto& field : fields)
                    total += field->value();
            return total;
        },
        [&sum](int total) { sum = total; });
    for (int i = 1; i <= 1000; ++i) {
        *fields[i % 40] = i;
        int expected = 0;
        for (const auto& field : fields)
            expected += 3 * field->value();
        ASSERT_EQ(sum, expected);
    }
}

TEST(PropertyTest, WatchersAndPropertiesMayComeAndGoInTheMidstOfAChange) {
    auto field = std::make_unique<Property<int>>(0);
    std::vector<std::string> calls;
    std::vector<std::shared_ptr<Corvane::Watcher>> watchers;
    const auto add = [&](const std::string& name, std::function<void(int)> act) {
        watchers.push_back(watch([&field] { return field->value(); },
                                 [&calls, name, act = std::move(act)](int value) {
                                     calls.push_back(name + std::to_string(value));
                                     act(value);
                                 }));
    };
    add("dropping", [&](int value) {
        if (value == 1) watchers[1].reset();
    });
    add("dropped", [](int) {});
    add("adding", [&](int value) {
        if (value == 1) add("added", [](int) {});
    });
    add("changing", [&](int value) {
        if (value == 1) *field = 2;
    });
    calls.clear();
    *field = 1;
    EXPECT_EQ(calls, (std::vector<std::string>{"dropping1", "adding1", "added1", "changing1", "dropping2",
                                               "adding2", "added2", "changing2"}));

    // A property that ends while it tells of its change, as a speaker that a new list drops.
    watchers.clear();
    add("ending", [&](int value) {
        if (value == 3) field = std::make_unique<Property<int>>(9);
    });
    calls.clear();
    *field = 3;
    *field = 4;
    EXPECT_EQ(calls, (std::vector<std::string>{"ending3"}));
}
