#pragma once

#include <ostream>
#include <string>
#include <typeinfo>

namespace KZ {

class StateAggregator;

/// A typed value that one part publishes for a frame and any other may read. Every state class has
/// a static `int id()`, its slot in a StateAggregator.
class BaseState {
public:
    virtual ~BaseState() = default;
    /// Back to the type's default.
    virtual void reset() = 0;
    /// Text of the form "Name(value)".
    virtual void print(std::ostream& stream) const = 0;
    /// Writes one row of a Graphviz table, the name beside the value, made from the text of
    /// `print`. `aggregator` is the one that holds the state.
    virtual void saveToDot(std::ostream& stream, StateAggregator* aggregator);

protected:
    BaseState() = default;
    BaseState(const BaseState&) = default;
    BaseState& operator=(const BaseState&) = default;
};

std::ostream& operator<<(std::ostream& stream, const BaseState& state);

/// Unqualified name of a tag type without its leading underscore: "FrameNumState" for
/// `_FrameNumState`, wherever the tag is declared.
std::string tagName(const std::type_info& tag);

}  // namespace KZ
