#pragma once

#include "KZ_BaseState.h"
#include "KZ_StateAggregator.h"

namespace KZ {

/// A state that holds one number. `Tag`, an empty type, tells two states of the same T apart.
template <typename T, typename Tag>
class NumericState : public BaseState {
public:
    T value;

    NumericState() : value(0) {}
    explicit NumericState(T number) : value(number) {}

    static int id() {
        static const int number = StateAggregator::getId();
        return number;
    }

    void reset() override { value = 0; }
    void print(std::ostream& stream) const override {
        stream << tagName(typeid(Tag)) << "(" << +value << ")";
    }
};

}  // namespace KZ
