#include "ContrastiveLayer.h"

#include <cmath>

#include "KZ_Assert.h"

void ContrastiveLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 2);
    const KZ::Blob& bottom0 = bottomBlob(0);
    const KZ::Blob& bottom1 = bottomBlob(1);
    KZ_ASSERT_EQ(bottom0.num(), bottom1.num());
    // The second may hold fewer elements per item.
    KZ_ASSERT_GE(bottom0.size(), bottom0.num());
    KZ_ASSERT_GE(bottom1.size(), bottom0.num());
    top_.init(1, 1, 1, 1);
    double sum = 0;
    for (int i = 0; i < bottom0.num(); ++i) {
        const double difference = bottom0.data()[i] - bottom1.data()[i];
        sum += difference * difference;
    }
    top_.data()[0] = static_cast<float>(std::sqrt(sum));
}

void ContrastiveLayer::saveToCpp(std::ostream& stream, const std::string& functionName) const {
    stream << "ContrastiveLayer& " << functionName
           << "()\n{\n    static ContrastiveLayer ContrastiveLayer(\"" << name()
           << "\");\n    return ContrastiveLayer;\n}\n\n";
}
