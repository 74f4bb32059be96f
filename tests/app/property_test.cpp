#include "app/model/property.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>

namespace Tests {
namespace {

using Corvane::Property;
using Corvane::watch;

TEST(PropertyTest, AWatchShowsEachResultOfWhatItReadLast) {
    Property<bool> chooses(true);
    Property<std::optional<int>> left;
    Property<std::optional<int>> right(10);
    int runs = 0;
    std::vector<std::optional<int>> shown;
    const auto watcher = watch([&] { return ++runs, chooses.value() ? left.value() : right.value(); },
                               [&shown](std::optional<int> value) { shown.push_back(value); });
    right = 11;           // not read yet
    left = std::nullopt;  // no change
    left.update([](std::optional<int>&) { return false; });
    EXPECT_EQ(runs, 1);
    left.update([](std::optional<int>& value) { return value.emplace(2); });
    chooses = false;
    left = 3;  // not read any more
    right = 12;
    EXPECT_EQ(runs, 4);
    EXPECT_EQ(shown, (std::vector<std::optional<int>>{std::nullopt, 2, 11, 12}));
}

// By `==` NaN over NaN would count as a change each time. Nor may a NaN hide a change beside it.
TEST(PropertyTest, NaNOverNaNIsNoChange) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    Property<std::vector<float>> levels(std::vector<float>{nan, 1});
    int first = 0;
    int all = 0;
    const auto ofFirst = watch([&] { return levels.value()[0]; }, [&](float) { ++first; });
    const auto ofAll = watch([&] { return levels.value().size() + ++all; }, [](std::size_t) {});
    const struct {
        float levels[2];
        int first, all;
    } steps[] = {{{nan, 1}, 1, 1}, {{nan, 2}, 1, 2}, {{3, 2}, 2, 3}, {{nan, 2}, 3, 4}};
    for (const auto& step : steps) {
        levels = std::vector<float>(step.levels, step.levels + 2);
        EXPECT_EQ(first, step.first) << step.levels[0] << " " << step.levels[1];
        EXPECT_EQ(all, step.all) << step.levels[0] << " " << step.levels[1];
    }
}

// As a page reads one speaker: many watches, many fields, several times in one reading.
TEST(PropertyTest, ManyWatchesFollowManyPropertiesThatTheyReadManyTimes) {
    Property<int> fields[40];
    const auto total = [&fields] {
        int sum = 0;
        for (int i = 0; i < 120; ++i)
            sum += fields[i % 40].value();
        return sum;
    };
    std::vector<int> shown(20);
    std::vector<std::shared_ptr<Corvane::Watcher>> watches;
    for (int& mine : shown)
        watches.push_back(watch(total, [&mine](int sum) { mine = sum; }));
    for (int i = 1; i <= 200; ++i) {
        fields[i % 40] = i;
        ASSERT_EQ(shown, std::vector<int>(20, total()));
    }
}

TEST(PropertyTest, WatchesAndPropertiesMayBeginAndEndDuringANotification) {
    auto field = std::make_unique<Property<int>>(0);
    std::string calls;
    std::vector<std::shared_ptr<Corvane::Watcher>> watches;
    const auto add = [&](const std::string& name, const std::function<void(int)>& act) {
        watches.push_back(watch([&field] { return field->value(); },
                                [&calls, name, act](int value) {
                                    calls += name + std::to_string(value) + " ";
                                    act(value);
                                }));
    };
    add("dropping", [&](int value) {
        if (value == 1) watches[1].reset();
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
    EXPECT_EQ(calls, "dropping1 adding1 added1 changing1 dropping2 adding2 added2 changing2 ");

    // A property that ends during its notification, as those of a speaker which a new list drops.
    watches.clear();
    add("ending", [&](int value) {
        if (value == 3) field = std::make_unique<Property<int>>(9);
    });
    calls.clear();
    *field = 3;
    *field = 4;
    EXPECT_EQ(calls, "ending3 ");
}

}  // namespace
}  // namespace Tests
