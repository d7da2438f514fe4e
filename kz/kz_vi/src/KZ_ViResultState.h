#pragma once

#include "KZ_BaseState.h"
#include "KZ_ViResult.h"

namespace KZ {

/// Marks the frame's result as present in a state registry. The result itself is one per process
/// and belongs to whoever processes a frame, who also resets it.
class ViResultState : public BaseState {
public:
    static ViResult viResult;

    static int id();

    void reset() override {}
    void print(std::ostream& stream) const override;
    /// A row with one table that has a row for each list that is not empty; images are left out.
    void saveToDot(std::ostream& stream);
    void saveToDot(std::ostream& stream, StateAggregator* aggregator) override;
};

}  // namespace KZ
