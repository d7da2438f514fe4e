#include "ResultKeeper.h"

std::map<std::string, DetectorResult> ResultKeeper::results_;

void ResultKeeper::detect(DetectorData&, const KZ::DetectRegion&, DetectorResult& result) {
    switch (type_) {
        case SAVE:
            results_[name_] = result;
            break;
        case LOAD:
            result = results_[name_];
            break;
        case CLEAR:
            results_.clear();
            break;
    }
}
