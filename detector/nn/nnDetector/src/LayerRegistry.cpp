#include "BaseLayer.h"
#include "ConcatLayer.h"
#include "ContrastiveLayer.h"
#include "ConvolutionLayer.h"
#include "DataLayer.h"
#include "DeConvolutionLayer.h"
#include "EltwiseLayer.h"
#include "FlattenLayer.h"
#include "HeatMapPosition.h"
#include "InnerProductLayer.h"
#include "KZ_Assert.h"
#include "LinearTransformLayer.h"
#include "LocallyConnectedLayer.h"
#include "PReluLayer.h"
#include "PoolingLayer.h"
#include "PredictBoxLayer.h"
#include "ReluLayer.h"
#include "ReshapeLayer.h"
#include "SigmoidLayer.h"
#include "SliceLayer.h"
#include "SoftmaxLayer.h"
#include "SubtractLayer.h"
#include "TangensLayer.h"

namespace {

using LayerPtr = KZ::SharedPtr<BaseLayer>;

template <typename Layer, typename... Arguments>
LayerPtr make(Arguments... arguments) {
    return LayerPtr(new Layer(arguments...));
}

}  // namespace

LayerPtr BaseLayer::getBaseLayer(const std::string& type, const std::string& name) {
    if (type == "DataLayer") return make<DataLayer>(name);
    if (type == "ConvolutionLayer") return make<ConvolutionLayer>(name);
    if (type == "ConcatLayer") return make<ConcatLayer>(name);
    if (type == "FlattenLayer") return make<FlattenLayer>(name, false);
    if (type == "HeatMapPosition") return make<HeatMapPosition>(name);
    if (type == "InnerProductLayer") return make<InnerProductLayer>(name);
    if (type == "PoolingLayer") return make<PoolingLayer>(name);
    if (type == "ReluLayer") return make<ReluLayer>(name);
    if (type == "PReluLayer") return make<PReluLayer>(name);
    if (type == "ReshapeLayer") return make<ReshapeLayer>(name);
    if (type == "SigmoidLayer") return make<SigmoidLayer>(name);
    if (type == "SliceLayer") return make<SliceLayer>(name, 1);
    if (type == "SoftmaxLayer") return make<SoftmaxLayer>(name, 0.5f);
    if (type == "ContrastiveLayer") return make<ContrastiveLayer>(name);
    if (type == "LinearTransformLayer") return make<LinearTransformLayer>(name);
    if (type == "SubtractLayer") return make<SubtractLayer>(name, KZ::Blob());
    if (type == "TangensLayer") return make<TangensLayer>(name);
    if (type == "LocallyConnectedLayer") return make<LocallyConnectedLayer>(name);
    if (type == "PredictBoxLayer") return make<PredictBoxLayer>(name, 12, 2, 0.6f, false);
    if (type == "DeConvolutionLayer") return make<DeConvolutionLayer>(name);
    if (type == "EltwiseLayer") {
        return make<EltwiseLayer>(name, EltwiseLayer::Operation::SUM, std::vector<float>());
    }
    KZ_ASSERT(0, "Unknown type: " << type);
    return LayerPtr();
}
