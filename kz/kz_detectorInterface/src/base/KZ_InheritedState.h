#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "KZ_BasePoint.h"
#include "KZ_BaseState.h"
#include "KZ_StateAggregator.h"

namespace KZ {

/// Text of a state's value: the value's own text form, for containers that of StreamO.
template <typename T>
void printValue(std::ostream& stream, const T& value) {
    stream << value;
}
void printValue(std::ostream& stream, const std::vector<float>& values);
void printValue(std::ostream& stream, const std::vector<PointF>& points);
void printValue(std::ostream& stream, const std::map<std::string, std::string>& entries);

/// A state that is its value: what T offers is read and called directly. `Tag`, an empty type,
/// tells two states of the same T apart.
template <typename T, typename Tag>
class InheritedState : public BaseState, public T {
public:
    InheritedState() = default;
    InheritedState(const T& value) : T(value) {}

    InheritedState& operator=(const T& value) {
        T::operator=(value);
        return *this;
    }

    static int id() {
        static const int number = StateAggregator::getId();
        return number;
    }

    void reset() override { T::operator=(T()); }
    void print(std::ostream& stream) const override {
        stream << tagName(typeid(Tag)) << "(";
        printValue(stream, static_cast<const T&>(*this));
        stream << ")";
    }
};

/// T has a text form of its own as a rule: this one settles which of the two is meant.
template <typename T, typename Tag>
std::ostream& operator<<(std::ostream& stream, const InheritedState<T, Tag>& state) {
    state.print(stream);
    return stream;
}

}  // namespace KZ
