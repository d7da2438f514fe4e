#pragma once

#include <map>
#include <string>

#include "BaseDetector.h"
#include "DetectorResult.h"

/// Keeps results of a chain's stages in one table of the process, so that a later stage sees what
/// an earlier one said after the running result has been overwritten. The table outlives `reset`.
class ResultKeeper : public BaseDetector {
public:
    enum Type {
        SAVE = 0,  ///< stores the running result under the key
        LOAD = 1,  ///< replaces the running result; a key never saved gives the default result
        CLEAR = 2  ///< empties the whole table, whatever the key
    };

    /// `name` is the key.
    ResultKeeper(Type type, const std::string& name) : type_(type), name_(name) {}

    void detect(DetectorData& data, const KZ::DetectRegion& region,
                DetectorResult& result) override;
    std::string name() override { return "ResultKeeper"; }

private:
    Type type_;
    std::string name_;
    static std::map<std::string, DetectorResult> results_;
};
