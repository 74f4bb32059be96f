#pragma once

namespace Kit {

/// What can be drawn larger as a whole, in a large window. Its owner enlarges the sizes that are fixed.
class Growing {
public:
    Growing() = default;
    virtual ~Growing() = default;
    Growing(const Growing&) = delete;
    Growing& operator=(const Growing&) = delete;

    virtual void setGrowth(double factor) = 0;
};

}  // namespace Kit
