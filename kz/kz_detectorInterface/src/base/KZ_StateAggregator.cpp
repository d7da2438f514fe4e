#include "KZ_StateAggregator.h"

#include <sstream>

#include "KZ_Assert.h"
#include "KZ_FileUtils.h"

namespace KZ {

namespace {

// Follows the two numbers of the check.
const char* const LIMIT_MESSAGE =
    " Exceeded limit of MAX_NUM_BASE_STATES. Consider increase or search for bug";

}  // namespace

int StateAggregator::numBaseStates_ = 0;
std::ofstream StateAggregator::dotFile_;

StateAggregator::~StateAggregator() {
    for (int i = 0; i < numBaseStates_; ++i) delete states_[i];
}

SharedPtr<StateAggregator> StateAggregator::newDetectorState() {
    return SharedPtr<StateAggregator>(new StateAggregator);
}

void StateAggregator::reset() {
    for (BaseState* state : states_)
        if (state) state->reset();
}

std::ostream& operator<<(std::ostream& stream, const StateAggregator& aggregator) {
    stream << "StateAggregator(";
    const char* separator = "";
    for (const BaseState* state : aggregator.states_) {
        if (!state) continue;
        stream << separator << *state;
        separator = ", ";
    }
    return stream << ")";
}

void StateAggregator::saveToDot() {
    std::ostringstream node;
    node << '"' << static_cast<const void*>(this) << '"'
         << "[shape=plaintext label = <<table border=\"0\" cellspacing=\"0\">";
    for (BaseState* state : states_)
        if (state) state->saveToDot(node, this);
    node << "</table>>]\n";
    dotFile_ << node.str();
}

// The check keeps the last slot free; numbers that were handed out are never taken back, so that
// they hold for every aggregator of the process.
int StateAggregator::getId() {
    const int next = numBaseStates_ + 1;
    if (next >= (MAX_NUM_BASE_STATES)) {
        KZ_FAIL_("(numBaseStates_ + 1) < (MAX_NUM_BASE_STATES)",
                 next << " >= " << MAX_NUM_BASE_STATES << LIMIT_MESSAGE);
    }
    numBaseStates_ = next;
    return next - 1;
}

void StateAggregator::saveToDot(const std::string& path) {
    createParentDirectories(path);
    dotFile_.open(path);
    KZ_ASSERT(dotFile_.is_open(), path);
    dotFile_ << "digraph {\n"
             << "rankdir=LR\n"
             << "node[fontname=\"monospace\"]\n";
    saveToDot();
    dotFile_ << "}\n\n";
    dotFile_.close();
}

}  // namespace KZ
