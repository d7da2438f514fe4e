#pragma once

#include "BaseLayer.h"

/// Boxes from a map of scores: bottom 0 has the scores of two classes per cell, bottom 1, where
/// there is one, four regression values, bottom 2, where there is one, the scale of each cell. The
/// top holds one item of (x, y, width, height, score) per box, in scan order.
class PredictBoxLayer : public BaseLayer {
public:
    /// `variant`: the regression offsets come as (y, x), and the sizes as factors exp(value).
    PredictBoxLayer(const std::string& name, int cellSize, int stride, float threshold,
                    bool variant)
        : BaseLayer(name),
          cellSize_(cellSize),
          stride_(stride),
          threshold_(threshold),
          variant_(variant) {}

    void forward() override;
    std::string type() const override { return "PredictBoxLayer"; }
    void serialize(KZ::ArchiveO& archive) const override;
    void serialize(KZ::ArchiveI& archive) override;
    void saveToCpp(std::ostream& stream, const std::string& functionName) const override;
    KZ::SharedPtr<BaseLayer> clone() const override;
    bool compare(const BaseLayer& other) const override;

private:
    bool predict(int n, int y, int x);
    void correct(const KZ::Blob& regression, int n, int y, int x, float scale);
    void compact();

    int cellSize_;
    int stride_;
    float threshold_;
    bool variant_;
    KZ::Blob boxes_;           ///< (num, 5, height, width): x, y, width, height, score
    std::vector<int> passed_;  ///< cells with a box, in scan order
};
