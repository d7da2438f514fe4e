#pragma once

#include <fstream>
#include <ostream>
#include <string>

#include "KZ_BaseState.h"
#include "KZ_SharedPtr.h"

namespace KZ {

/// Slots of an aggregator. The last one stays unused.
constexpr int MAX_NUM_BASE_STATES = 100;

/// The states of one frame, one slot a state type. The driver of the frames owns one; it resets the
/// states, which stay allocated. One thread uses the states of a process.
class StateAggregator {
public:
    StateAggregator() = default;
    ~StateAggregator();
    StateAggregator(const StateAggregator&) = delete;
    StateAggregator& operator=(const StateAggregator&) = delete;

    static SharedPtr<StateAggregator> newDetectorState();

    /// Hands out the next slot number, 0 to 98, for all aggregators of the process. The call after
    /// 98 is an assertion.
    static int getId();

    /// The state of type T, made by `new T` when there is none yet.
    template <typename T>
    T& get() {
        BaseState*& slot = states_[T::id()];
        if (!slot) slot = new T;
        return static_cast<T&>(*slot);
    }

    /// Resets every state there is.
    void reset();

    /// Writes a Graphviz file with this aggregator as its only node. Folders on the way are made; a
    /// file that cannot be opened is an assertion.
    void saveToDot(const std::string& path);
    /// Writes the node of this aggregator, named after its address, to `dotFile()`.
    void saveToDot();
    static std::ostream& dotFile() { return dotFile_; }

    /// Text form "StateAggregator(state, state)".
    friend std::ostream& operator<<(std::ostream& stream, const StateAggregator& aggregator);

private:
    BaseState* states_[MAX_NUM_BASE_STATES] = {};

    static int numBaseStates_;
    static std::ofstream dotFile_;
};

}  // namespace KZ
